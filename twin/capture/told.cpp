#include "twin/capture/told.h"

#include <nlohmann/json.hpp>

#include "library/records/record_json.h"
#include "library/text/identifier.h"
#include "library/text/text.h"

namespace tavrohost {
namespace {

using tavrolib::Json;
using tavrolib::NormalText;

Json WithoutHost(const Json& answers) {
    Json captured = Json::object();
    captured["answers"] = answers;
    captured["host"] = Json::object();
    return captured;
}

}  // namespace

Told::Told(const Json& answers) : answers_(WithoutHost(answers)) {
    for (const Json& answer : answers) {
        const auto operation = answer.find("operation");
        if (operation != answer.end() &&
            *operation == static_cast<std::uint32_t>(tavroapi::OperationCode::ReadSession) &&
            answer.value("status", 0) == 0) {
            const std::string request =
                tavrolib::BytesFromUtf8(answer.value("request", std::string()));
            tavrolib::FillFromJson(answer.at("output"),
                                   sessions_[NormalText(request)].emplace_back(), {});
        }
    }
}

const std::list<tavroapi::SessionRecord>& Told::Sessions(const std::string& request) const {
    static const std::list<tavroapi::SessionRecord> None;
    const auto found = sessions_.find(NormalText(request));
    return found == sessions_.end() ? None : found->second;
}

}  // namespace tavrohost
