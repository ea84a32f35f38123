#include "library/json/json.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>
#include <vector>

namespace tavrolib {
namespace {

// Deeper than anything that is read here; what is built of a document is walked by recursion.
constexpr std::size_t DeepestNesting = 64;

std::string LineAndColumn(std::string_view text, std::size_t byte) {
    const std::string_view before = text.substr(0, std::min(byte == 0 ? 0 : byte - 1, text.size()));
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    const std::size_t lineStart = before.rfind('\n');
    const std::size_t column =
        lineStart == std::string_view::npos ? before.size() + 1 : before.size() - lineStart;
    return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

std::string KindOf(const Json& json) {
    switch (json.type()) {
        case Json::value_t::null:
            return "null";
        case Json::value_t::boolean:
            return "true or false";
        case Json::value_t::string:
            return "a text";
        case Json::value_t::array:
            return "an array";
        case Json::value_t::object:
            return "an object";
        default:
            return "a number";
    }
}

// Walks the text for the parser, and tells how far that has come.
class Cursor {
  public:
    // NOLINTBEGIN(readability-identifier-naming): the standard names them.
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;
    // NOLINTEND(readability-identifier-naming)

    Cursor(const char* position, const char*& furthest)
        : position_(position), furthest_(&furthest) {}
    reference operator*() const { return *position_; }
    Cursor& operator++() {
        *furthest_ = ++position_;
        return *this;
    }
    bool operator==(const Cursor& other) const { return position_ == other.position_; }

  private:
    const char* position_;
    const char** furthest_;
};

// Makes the document of what the parser finds. What is refused is told by its place alone: the
// parser's own words would quote the text.
class Builder : public Json::json_sax_t {
  public:
    Builder(std::string_view text, const char*& furthest) : text_(text), furthest_(furthest) {}

    Json TakeDocument() { return std::move(document_); }

    bool null() override { return Put(nullptr); }
    bool boolean(bool value) override { return Put(value); }
    bool number_integer(number_integer_t value) override { return Put(value); }
    bool number_unsigned(number_unsigned_t value) override { return Put(value); }
    bool number_float(number_float_t value, const string_t& /*text*/) override {
        return Put(value);
    }
    bool string(string_t& value) override { return Put(std::move(value)); }
    bool binary(binary_t& value) override { return Put(std::move(value)); }
    bool start_object(std::size_t /*elements*/) override {
        names_.emplace_back();
        return Open(Json::object());
    }
    bool key(string_t& name) override {
        if (!names_.back().insert(name).second) {
            RefuseAt(Reached(), "this member stands twice in its object");
        }
        name_ = std::move(name);
        return true;
    }
    bool end_object() override {
        names_.pop_back();
        return Close();
    }
    bool start_array(std::size_t /*elements*/) override { return Open(Json::array()); }
    bool end_array() override { return Close(); }
    bool parse_error(std::size_t position, const std::string& /*token*/,
                     const Json::exception& error) override {
        constexpr int NumberOverflow = 406;
        RefuseAt(position, error.id == NumberOverflow ? "the number is too large"
                           : position > text_.size()  ? "the text ends too early"
                                                      : "a syntax error");
    }

  private:
    [[noreturn]] void RefuseAt(std::size_t byte, const char* reason) const {
        throw ShapeError(LineAndColumn(text_, byte), reason);
    }
    std::size_t Reached() const { return static_cast<std::size_t>(furthest_ - text_.data()); }

    // The value in its place, the end of what is open.
    Json& Add(Json value) {
        if (open_.empty()) {
            return document_ = std::move(value);
        }
        if (open_.back()->is_array()) {
            return open_.back()->get_ref<Json::array_t&>().emplace_back(std::move(value));
        }
        // The name is known to be new, so that it need not be looked for.
        auto& members = open_.back()->get_ref<Json::object_t&>();
        members.emplace_back(std::move(name_), std::move(value));
        return members.back().second;
    }
    bool Put(Json value) {
        Add(std::move(value));
        return true;
    }
    bool Open(Json container) {
        if (open_.size() == DeepestNesting) {
            RefuseAt(Reached(), "nested too deeply");
        }
        open_.push_back(&Add(std::move(container)));
        return true;
    }
    bool Close() {
        open_.pop_back();
        return true;
    }

    std::string_view text_;
    const char*& furthest_;
    Json document_;
    std::vector<Json*> open_;
    std::vector<std::set<std::string>> names_;  // of the objects that are open
    std::string name_;
};

[[noreturn]] void Refuse(const std::string& wanted, const Json& json, const Place& place) {
    throw ShapeError(place, wanted + " is wanted, not " + KindOf(json));
}

}  // namespace

Json ParseJson(std::string_view text) {
    const char* furthest = text.data();
    Builder builder(text, furthest);
    Json::sax_parse(Cursor(text.data(), furthest), Cursor(text.data() + text.size(), furthest),
                    &builder);
    return builder.TakeDocument();
}

std::string LineOf(const Json& json) {
    return json.dump();
}

const std::string& TextAt(const Json& json, const Place& place) {
    if (!json.is_string()) {
        Refuse("a text", json, place);
    }
    return json.get_ref<const std::string&>();
}

std::int64_t NumberAt(const Json& json, std::int64_t lowest, std::int64_t highest,
                      const Place& place) {
    if (!json.is_number()) {
        Refuse("a number", json, place);
    }
    const bool tooLarge = json.is_number_unsigned() &&
                          json.get<std::uint64_t>() > static_cast<std::uint64_t>(INT64_MAX);
    if (!json.is_number_integer() || tooLarge || json.get<std::int64_t>() < lowest ||
        json.get<std::int64_t>() > highest) {
        throw ShapeError(place, "a whole number from " + std::to_string(lowest) + " to " +
                                    std::to_string(highest) + " is wanted");
    }
    return json.get<std::int64_t>();
}

std::size_t SizeAt(const Json& json, std::size_t most, const Place& place) {
    if (!json.is_array()) {
        Refuse("an array", json, place);
    }
    if (json.size() > most) {
        throw ShapeError(place, "at most " + std::to_string(most) + " elements are wanted, not " +
                                    std::to_string(json.size()));
    }
    return json.size();
}

void WantObject(const Json& json, const Place& place) {
    if (!json.is_object()) {
        Refuse("an object", json, place);
    }
}

void RefuseUnknownMembers(const Json& json, const std::function<bool(std::string_view)>& isKnown,
                          const Place& place) {
    WantObject(json, place);
    Findings first;
    CheckMembers(json, isKnown, place, first);
}

void CheckMembers(const Json& json, const std::function<bool(std::string_view)>& isKnown,
                  const Place& place, Findings& findings) {
    std::size_t number = 0;
    for (const auto& item : json.items()) {
        ++number;
        if (!isKnown(item.key())) {
            findings.Add(place, "member " + std::to_string(number) + " is unknown");
        }
    }
}

bool TruthAt(const Json& json, const Place& place) {
    if (!json.is_boolean()) {
        Refuse("true or false", json, place);
    }
    return json.get<bool>();
}

}  // namespace tavrolib
