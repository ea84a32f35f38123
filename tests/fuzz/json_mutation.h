#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <random>
#include <span>
#include <string>

#include "library/json/json.h"

// Mutations that keep a JSON document a document, so that the fuzzer gets past its syntax.
namespace tavro_fuzz {

// Changes one value somewhere in the document: a member or an element goes, comes, is copied from
// elsewhere or changes places, or a text or a number becomes another one. `words` are names of
// members and texts that matter; there may be none.
void MutateJson(tavrolib::Json& document, std::span<const std::string> words, std::mt19937& random);

// The same, but only texts and numbers become others: the document keeps its shape.
void MutateJsonValues(tavrolib::Json& document, std::mt19937& random);

// What LLVMFuzzerCustomMutator does with a JSON text: some mutations of the document, or, where it
// is none and every few times, of its bytes. Returns the new size, at most `mostSize`.
std::size_t MutateJsonText(std::uint8_t* data, std::size_t size, std::size_t mostSize,
                           unsigned seed, std::span<const std::string> words);

}  // namespace tavro_fuzz
