#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>

#include "library/json/json.h"
#include "simulator/host/host_file.h"
#include "twin/capture/model.h"
#include "twin/capture/walk.h"
#include "unit/twin/host_library.h"

namespace tavrohost_test {

// All answers of a library, without secrets.
inline tavrolib::Json AnswersOf(tavrohost::LibraryCaller& library) {
    return tavrohost::CaptureAnswers(library, tavrolib::Secrets::LeftOut,
                                     [](std::size_t, std::size_t, const std::string&) {});
}

inline tavrolib::Json AnswersOf(tavrosim::Host& host) {
    HostLibrary library(host);
    return AnswersOf(library);
}

// The twin that a document made of the answers holds.
inline tavrosim::Host TwinOf(const tavrolib::Json& answers) {
    const tavrohost::CapturedModel model = tavrohost::ModelFrom(tavrohost::Told(answers));
    const tavrosim::Host captured = tavrosim::CapturedHost(model.host, answers);
    return tavrosim::HostFromText(tavrosim::TextFromHost(captured));
}

}  // namespace tavrohost_test
