#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tavrolib {

// Where in a JSON document something stands, such as "adapters[1].ports[0].name". A place keeps a
// reference to the one that it lies in, so it is made on the stack on the way down and turned to
// text only on failure.
class Place {
  public:
    // The whole document.
    Place() = default;
    // The member `name` of the object at `parent`.
    Place(const Place& parent, std::string_view name) : parent_(&parent), name_(name) {}
    // The element `index` of the array at `parent`.
    Place(const Place& parent, std::size_t index) : parent_(&parent), index_(index) {}

    std::string Text() const {
        if (parent_ == nullptr) {
            return {};
        }
        std::string text = parent_->Text();
        if (name_.data() == nullptr) {
            return text + '[' + std::to_string(index_) + ']';
        }
        if (!text.empty()) {
            text += '.';
        }
        return text.append(name_);
    }

  private:
    const Place* parent_ = nullptr;
    std::string_view name_;
    std::size_t index_ = 0;
};

// Thrown where a JSON document is not of the wanted shape; `what()` is "<place>: <reason>".
class ShapeError : public std::runtime_error {
  public:
    ShapeError(const Place& place, const std::string& reason) : ShapeError(place.Text(), reason) {}
    // About a place that is told in words, such as "line 3, column 5".
    ShapeError(const std::string& place, const std::string& reason)
        : std::runtime_error(place.empty() ? reason : place + ": " + reason),
          placeSize_(place.size()) {}
    explicit ShapeError(const std::string& reason) : std::runtime_error(reason) {}

    // The place in words, empty for the whole document.
    std::string PlaceText() const { return std::string(what(), placeSize_); }

    // What is wrong there.
    std::string Reason() const { return what() + (placeSize_ == 0 ? 0 : placeSize_ + 2); }

  private:
    std::size_t placeSize_ = 0;
};

}  // namespace tavrolib
