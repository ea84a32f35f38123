#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "library/json/json.h"

namespace tavrohost {

// Something that is wrong with a host file.
struct HostFinding {
    enum class Severity {
        Error,    // the library refuses the file
        Warning,  // the library loads it, but no host can be so
    };
    Severity severity = Severity::Error;
    std::string place;  // such as "adapters[1].name" or "line 3, column 5"; empty: the whole file
    std::string text;   // what is wrong there; nothing that stands in the file is quoted
};

// All that is wrong with the text of a host file: errors, first the one that the library tells,
// then warnings, else in no particular order. Of a syntax error and of a newer format, nothing
// else; of an answer that was captured, the first error. The model as it was captured is held to
// errors only.
std::vector<HostFinding> FindingsIn(std::string_view text);

// For people: "<name>: <place>: <text>", a line for each; warnings say that they are. `name` is the
// file's.
std::string TextOfFindings(const std::vector<HostFinding>& findings, const std::string& name);

// The document of docs/findings.schema.json.
tavrolib::Json JsonOfFindings(const std::vector<HostFinding>& findings);

}  // namespace tavrohost
