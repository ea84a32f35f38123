#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "library/json/json.h"
#include "library/records/secrets.h"
#include "twin/capture/library_caller.h"

namespace tavrohost {

// The most targets of one function that are asked for their details; the others are only listed.
inline constexpr std::size_t MostTargets = 4096;

// What is called before a function is asked: its place among all functions from 1, how many there
// are, and the text that it is addressed by. May be empty.
using CaptureProgress =
    std::function<void(std::size_t place, std::size_t count, const std::string& key)>;

// Asks the library all that reading operations tell of the host: its adapters and ports, and every
// function in all families. Nothing is changed, pinged or exported. The requests and inputs are
// those that tavrocli sends, each call is made once, with fresh records.
//
// Returns a JSON array of answers, one object for each call, in the shape of a trace's line with
// outputs: a refusal is an answer too, with the library's error. A call whose entry point the
// library lacks, or which does not return, is left out. Secrets in records stand as `secrets` says.
tavrolib::Json CaptureAnswers(LibraryCaller& library, tavrolib::Secrets secrets,
                              const CaptureProgress& progress);

}  // namespace tavrohost
