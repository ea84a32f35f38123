#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "library/json/place.h"

namespace tavrolib {

// Where the checks of a document tell what they find: the first finding is thrown, or all of them
// are collected. So one piece of code serves who needs to know whether a document is right, and who
// wants to know all that is wrong with it.
class Findings {
  public:
    // What is found is thrown.
    Findings() = default;
    // What is found is appended to `collected`, which outlives the findings.
    explicit Findings(std::vector<ShapeError>& collected) : collected_(&collected) {}

    bool AreCollected() const { return collected_ != nullptr; }

    void Add(const Place& place, const std::string& reason) { Add(ShapeError(place, reason)); }

    // Throws the finding, or notes it, unless it is about what could not be read anyway.
    void Add(const ShapeError& error) {
        if (collected_ == nullptr) {
            throw error;
        }
        if (!IsUnreadable(error.PlaceText())) {
            collected_->push_back(error);
        }
    }

    // There is no value at the place that could be looked at any further: what is found there or
    // below is no finding of its own.
    void MarkUnreadable(const Place& place) {
        if (collected_ != nullptr) {
            unreadable_.insert(place.Text());
        }
    }

    // Whether nothing of the value at the place is marked: neither the value, nor what it lies in,
    // nor what lies in it. Only then does it say something about other values.
    bool IsReadable(const Place& place) const {
        if (unreadable_.empty()) {
            return true;
        }
        const std::string text = place.Text();
        if (text.empty() || IsUnreadable(text)) {
            return false;
        }
        const auto holdsAfter = [&](char separator) {
            const std::string start = text + separator;
            const auto next = unreadable_.lower_bound(start);
            return next != unreadable_.end() && next->starts_with(start);
        };
        return !holdsAfter('.') && !holdsAfter('[');
    }

    // Whether `check` comes to its end. A ShapeError that it throws is a finding.
    template <class Check>
    bool Pass(Check&& check) {
        try {
            std::forward<Check>(check)();
            return true;
        } catch (const ShapeError& error) {
            Add(error);
            return false;
        }
    }

    // The same for what reads the value at the place.
    template <class Read>
    bool PassReading(const Place& place, Read&& read) {
        const bool passed = Pass(std::forward<Read>(read));
        if (!passed) {
            MarkUnreadable(place);
        }
        return passed;
    }

  private:
    bool IsUnreadable(std::string_view place) const {
        if (unreadable_.empty()) {
            return false;
        }
        for (std::size_t end = 0; end < place.size(); ++end) {
            if ((end == 0 || place[end] == '.' || place[end] == '[') &&
                unreadable_.contains(place.substr(0, end))) {
                return true;
            }
        }
        return unreadable_.contains(place);
    }

    std::vector<ShapeError>* collected_ = nullptr;
    std::set<std::string, std::less<>> unreadable_;
};

}  // namespace tavrolib
