#include "fuzz/json_mutation.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>
#include <vector>

#include "fuzz/mutation.h"

namespace tavro_fuzz {
namespace {

using tavrolib::Json;

constexpr const char* OddTexts[] = {"",
                                    " ",
                                    "0",
                                    "-1",
                                    "4294967295",
                                    "99999999999999999999",
                                    "y",
                                    "%s%n",
                                    "\x1B[2J",
                                    "\xC2\x9B[31m",
                                    "\xEF\x9E\x80",  // stands for a byte
                                    "two\nlines",
                                    "\xE6\x97\xA5\xE6\x9C\xAC",
                                    "02-00-5E-10-00-02",
                                    "10:00:02:00:5E:10:00:04",
                                    "192.0.2.20",
                                    "2001:db8::20"};

constexpr std::int64_t OddNumbers[] = {0,
                                       1,
                                       -1,
                                       2,
                                       8,
                                       255,
                                       65536,
                                       std::numeric_limits<std::int32_t>::min(),
                                       std::numeric_limits<std::int32_t>::max(),
                                       std::numeric_limits<std::uint32_t>::max(),
                                       1LL << 32,
                                       std::numeric_limits<std::int64_t>::min(),
                                       std::numeric_limits<std::int64_t>::max()};

void Collect(Json& value, std::vector<Json*>& values) {
    values.push_back(&value);
    if (value.is_structured()) {
        for (Json& inner : value) {
            Collect(inner, values);
        }
    }
}

Json& AnyOf(const std::vector<Json*>& values, std::mt19937& random) {
    return *values[Below(values.size(), random)];
}

std::string NewText(const std::string& text, std::span<const std::string> words,
                    std::mt19937& random) {
    switch (Below(4, random)) {
        case 0:
            return MutatedBytes(text);
        case 1:
            return words.empty() ? text + text : words[Below(words.size(), random)];
        case 2: {
            // One place of it is another digit.
            std::string changed = text;
            if (!changed.empty()) {
                constexpr std::string_view Digits = "0123456789ABCDEF-:.";
                changed[Below(changed.size(), random)] = Digits[Below(Digits.size(), random)];
            }
            return changed;
        }
        default:
            return OddTexts[Below(std::size(OddTexts), random)];
    }
}

std::int64_t NewNumber(const Json& number, std::mt19937& random) {
    const auto distance = static_cast<std::int64_t>(Below(5, random)) - 2;
    if (Below(2, random) == 0 && number.is_number_integer() && number < 1000000 &&
        number > -1000000) {
        return number.get<std::int64_t>() + distance;
    }
    return OddNumbers[Below(std::size(OddNumbers), random)];
}

Json NewScalar(const Json& value, std::span<const std::string> words, std::mt19937& random) {
    if (value.is_string()) {
        return NewText(value.get_ref<const std::string&>(), words, random);
    }
    if (value.is_number()) {
        return NewNumber(value, random);
    }
    return !(value.is_boolean() && value.get<bool>());
}

Json AnyScalar(std::span<const std::string> words, std::mt19937& random) {
    const Json kinds[] = {"", 0, true, nullptr, Json::array(), Json::object(), 0.5};
    const Json& kind = kinds[Below(std::size(kinds), random)];
    return kind.is_string() || kind.is_number_integer() ? NewScalar(kind, words, random) : kind;
}

// `other` is a value from anywhere in the document.
void MutateArray(Json& array, const Json& other, std::mt19937& random) {
    const auto at = [&](std::size_t count) {
        return array.begin() + static_cast<std::ptrdiff_t>(Below(count, random));
    };
    const std::size_t choice = array.empty() ? 0 : Below(4, random);
    if (choice == 0) {
        array.insert(at(array.size() + 1), other);
    } else if (choice == 1) {
        array.erase(at(array.size()));
    } else if (choice == 2) {
        const Json copy = *at(array.size());
        array.insert(at(array.size() + 1), copy);
    } else {
        std::swap(*at(array.size()), *at(array.size()));
    }
}

void MutateObject(Json& object, const Json& other, std::span<const std::string> words,
                  std::mt19937& random) {
    const auto anyMember = [&] {
        return std::next(object.begin(), static_cast<std::ptrdiff_t>(Below(object.size(), random)));
    };
    const std::size_t choice = object.empty() ? 0 : Below(4, random);
    if (choice <= 1 && !words.empty()) {
        object[words[Below(words.size(), random)]] = other;
    } else if (choice == 2 && !object.empty()) {
        object.erase(anyMember());
    } else if (!object.empty()) {
        anyMember().value() = other;
    }
}

}  // namespace

void MutateJson(Json& document, std::span<const std::string> words, std::mt19937& random) {
    std::vector<Json*> values;
    Collect(document, values);
    Json other = Below(3, random) == 0 ? AnyScalar(words, random) : AnyOf(values, random);
    Json& value = AnyOf(values, random);
    if (Below(8, random) == 0) {
        value = std::move(other);
    } else if (value.is_array()) {
        MutateArray(value, other, random);
    } else if (value.is_object()) {
        MutateObject(value, other, words, random);
    } else {
        value = NewScalar(value, words, random);
    }
}

void MutateJsonValues(Json& document, std::mt19937& random) {
    std::vector<Json*> values;
    Collect(document, values);
    std::erase_if(values, [](const Json* value) { return value->is_structured(); });
    if (!values.empty()) {
        Json& value = AnyOf(values, random);
        value = NewScalar(value, {}, random);
    }
}

std::size_t MutateJsonText(std::uint8_t* data, std::size_t size, std::size_t mostSize,
                           unsigned seed, std::span<const std::string> words) {
    std::mt19937 random(seed);
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    Json document = Json::parse(text, nullptr, false);
    if (document.is_discarded() || Below(16, random) == 0) {
        return LLVMFuzzerMutate(data, size, mostSize);
    }
    for (std::size_t count = 1 + Below(3, random); count > 0; --count) {
        MutateJson(document, words, random);
    }
    const std::string mutated = document.dump(-1, ' ', false, Json::error_handler_t::replace);
    return mutated.size() > mostSize ? LLVMFuzzerMutate(data, size, mostSize)
                                     : PutInto(data, mostSize, mutated);
}

}  // namespace tavro_fuzz
