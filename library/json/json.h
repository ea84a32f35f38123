#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

#include "library/json/findings.h"
#include "library/json/place.h"

// Reading JSON documents with errors that a person can act on. An error tells the place, and what
// is wanted there, but nothing that stands in the document: that may be a secret, or of any length.
namespace tavrolib {

// Objects keep the order of their members, so that files stay as their writer arranged them.
using Json = nlohmann::ordered_json;

// Parses a whole document. Throws ShapeError that names line and column of a syntax error, of the
// name of a member that stands twice in one object, and of what is nested too deeply.
Json ParseJson(std::string_view text);

// One document on a single line.
std::string LineOf(const Json& json);

// The text at `place`; throws ShapeError when `json` is no text. The result lives as long as
// `json`.
const std::string& TextAt(const Json& json, const Place& place);

// The whole number at `place`; throws ShapeError when `json` is no whole number from `lowest` to
// `highest`.
std::int64_t NumberAt(const Json& json, std::int64_t lowest, std::int64_t highest,
                      const Place& place);

// The number of elements of the array at `place`; throws ShapeError when `json` is no array or has
// more than `most` elements.
std::size_t SizeAt(const Json& json, std::size_t most, const Place& place);

// Throws ShapeError unless `json` is an object.
void WantObject(const Json& json, const Place& place);

// Throws ShapeError unless `json` is an object whose members are all known; it tells the unknown
// one by its number in the object.
void RefuseUnknownMembers(const Json& json, const std::function<bool(std::string_view)>& isKnown,
                          const Place& place);

// Tells `findings` of every member of the object that is not known, by its number in the object.
void CheckMembers(const Json& json, const std::function<bool(std::string_view)>& isKnown,
                  const Place& place, Findings& findings);

// Throws ShapeError unless `json` is true or false.
bool TruthAt(const Json& json, const Place& place);

}  // namespace tavrolib
