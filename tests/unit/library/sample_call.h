#pragma once

#include "library/calls/call.h"
#include "library/records/record_type_of.h"
#include "unit/library/sample_records.h"

namespace tavrolib_test {

// A described operation whose input and result are both the sample record.
inline constexpr tavrolib::Operation SampleOperation{static_cast<tavroapi::OperationCode>(999),
                                                     "Sample", tavrolib::RecordTypeOf<Outer>(),
                                                     tavrolib::RecordTypeOf<Outer>()};

// A call of it; the records may be null.
inline tavrolib::Call SampleCall(Outer* input, Outer* output, const char* request = "key") {
    tavrolib::Call call;
    call.entryPoint = tavrolib::EntryPoint::DoOperation;
    call.operation = 999;
    call.described = &SampleOperation;
    call.request = request;
    call.input = input;
    call.output = output;
    return call;
}

}  // namespace tavrolib_test
