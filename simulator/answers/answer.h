#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "library/calls/call.h"
#include "library/calls/outcome.h"
#include "library/json/json.h"

// The answer to a call as JSON, in the shape of a trace's line.
namespace tavrosim {

// One answer: the call that it is for, as far as that is told, and what the call gives back.
struct Answer {
    const tavrolib::EntryPointRow* entryPoint = nullptr;  // never null once it is read
    std::optional<std::uint32_t> operation;
    std::optional<std::string> request;
    std::optional<std::string> adapter;
    std::optional<std::string> port;
    std::optional<tavrolib::Json> input;
    std::uint32_t status = 0;
    std::optional<tavrolib::Json> output;
    std::optional<tavroapi::ErrorRecord> error;
    std::optional<std::int64_t> result;
    std::optional<std::uint64_t> times;
    std::string place;  // where it stands, for errors

    // The status, and the error that is the last one from then on.
    tavrolib::Outcome AsOutcome() const;

    // Fills a result record of that type, where the answer has an output. Null is the type of a
    // record that nobody knows. Throws ShapeError, naming the answer's place, when the output does
    // not fit; the record is then partly filled.
    void FillOutput(const tavrolib::RecordType* type, void* record) const;
};

// Reads an answer. Throws ShapeError that names the place of an unknown member, of one of the wrong
// shape, or of an output or result that the call's records cannot take. Records are held against
// the call only when the answer tells the operation.
Answer ReadAnswer(const tavrolib::Json& json, const tavrolib::Place& place);

}  // namespace tavrosim
