#pragma once

#include <string>

#include "library/calls/call.h"
#include "tavroapi/operation_code.h"

namespace tavrohost {

// A call of that operation, still without its records.
inline tavrolib::Call OperationCall(tavroapi::OperationCode code, const std::string& request) {
    tavrolib::Call call;
    call.entryPoint = tavrolib::EntryPoint::DoOperation;
    call.operation = static_cast<std::uint32_t>(code);
    call.described = tavrolib::FindOperation(*call.operation);
    call.request = request;
    return call;
}

// A query that concerns the function with that identifier; the entry point is still to be told.
inline tavrolib::Call FunctionQuery(const std::string& request) {
    tavrolib::Call call;
    call.request = request;
    return call;
}

// A query that concerns a port of an adapter.
inline tavrolib::Call PortQuery(const std::string& adapter, const std::string& port) {
    tavrolib::Call call;
    call.adapter = adapter;
    call.port = port;
    return call;
}

}  // namespace tavrohost
