#include "twin/check/check.h"

#include <nlohmann/json.hpp>

#include "simulator/host/host_file.h"
#include "twin/check/contradictions.h"

namespace tavrohost {
namespace {

using tavrolib::Json;
using Severity = HostFinding::Severity;

constexpr int FindingsFormat = 1;

const char* NameOf(Severity severity) {
    return severity == Severity::Error ? "error" : "warning";
}

}  // namespace

std::vector<HostFinding> FindingsIn(std::string_view text) {
    std::vector<tavrolib::ShapeError> collected;
    Findings findings(collected);
    const auto host = tavrosim::HostFromText(text, findings);
    const std::size_t errors = collected.size();
    if (host) {
        const Place root;
        for (const auto check : {CheckAdapters, CheckAddresses, CheckIscsiStorage, CheckFcoe}) {
            check(*host, root, findings);
        }
    }
    std::vector<HostFinding> found;
    found.reserve(collected.size());
    for (const tavrolib::ShapeError& each : collected) {
        found.push_back({.severity = found.size() < errors ? Severity::Error : Severity::Warning,
                         .place = each.PlaceText(),
                         .text = each.Reason()});
    }
    return found;
}

std::string TextOfFindings(const std::vector<HostFinding>& findings, const std::string& name) {
    std::string text;
    for (const HostFinding& finding : findings) {
        text += name + ": " + (finding.place.empty() ? "" : finding.place + ": ") +
                (finding.severity == Severity::Warning ? "warning: " : "") + finding.text + '\n';
    }
    return text;
}

Json JsonOfFindings(const std::vector<HostFinding>& findings) {
    Json list = Json::array();
    for (const HostFinding& finding : findings) {
        list.push_back({{"place", finding.place},
                        {"severity", NameOf(finding.severity)},
                        {"text", finding.text}});
    }
    return {{"format", FindingsFormat}, {"findings", std::move(list)}};
}

}  // namespace tavrohost
