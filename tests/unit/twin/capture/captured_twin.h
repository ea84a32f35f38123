#pragma once

#include <nlohmann/json.hpp>

#include "library/json/json.h"
#include "simulator/host/host_file.h"
#include "twin/capture/capture_host.h"
#include "twin/capture/walk.h"
#include "unit/twin/host_library.h"

namespace tavrohost_test {

// All answers of a library, without secrets.
inline tavrolib::Json AnswersOf(tavrohost::LibraryCaller& library) {
    return tavrohost::CaptureAnswers(library, tavrolib::Secrets::LeftOut, {});
}

inline tavrolib::Json AnswersOf(tavrosim::Host& host) {
    HostLibrary library(host);
    return AnswersOf(library);
}

// The twin that a document made of the answers holds.
inline tavrosim::Host TwinOf(const tavrolib::Json& answers) {
    return tavrosim::HostFromText(tavrosim::TextFromHost(tavrohost::CaptureFrom(answers).host));
}

}  // namespace tavrohost_test
