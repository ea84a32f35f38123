#pragma once

#include "sample_records.h"
#include "simulator/call.h"
#include "simulator/record_type_of.h"

namespace tavrosim_test {

/// A described operation whose input and result are both the sample record.
inline constexpr tavrosim::Operation SampleOperation{static_cast<tavroapi::OperationCode>(999),
                                                     "Sample", tavrosim::RecordTypeOf<Outer>(),
                                                     tavrosim::RecordTypeOf<Outer>()};

/// A call of it; the records may be null.
inline tavrosim::Call SampleCall(Outer* input, Outer* output, const char* request = "key") {
    tavrosim::Call call;
    call.entryPoint = tavrosim::EntryPoint::DoOperation;
    call.operation = 999;
    call.described = &SampleOperation;
    call.request = request;
    call.input = input;
    call.output = output;
    return call;
}

}  // namespace tavrosim_test
