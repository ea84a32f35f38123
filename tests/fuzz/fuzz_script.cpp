// Feeds arbitrary texts to the reader of the simulator's scripts. Of one that is read, each answer
// is taken by the calls that it is for, first come first served and as often as it says; then
// commands run with it.
#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/json_mutation.h"
#include "fuzz/played_run.h"
#include "fuzz/require.h"
#include "library/calls/call.h"
#include "library/json/json.h"
#include "library/text/text.h"
#include "simulator/script/script.h"

namespace {

using tavrolib::Json;
using tavrosim::Script;

std::optional<Script> Read(std::string_view text) {
    try {
        return Script::FromText(text);
    } catch (const tavrolib::ShapeError& error) {
        Require(error.what()[0] != '\0');
        return std::nullopt;
    }
}

// What an answer says of the calls that it is for.
struct Wanted {
    std::string call;
    std::array<std::optional<Json>, 4> texts;  // operation, request, adapter, port
    std::uint64_t times;
    std::uint32_t status;
};

constexpr std::array TextKeys{"operation", "request", "adapter", "port"};
constexpr std::uint64_t Endless = ~std::uint64_t{0};

std::vector<Wanted> WantedBy(const Json& script) {
    std::vector<Wanted> all;
    for (const Json& answer : script.value("answers", Json::array())) {
        Wanted& wanted = all.emplace_back();
        wanted.call = answer.at("call").get<std::string>();
        for (std::size_t i = 0; i < TextKeys.size(); ++i) {
            if (answer.contains(TextKeys[i])) {
                wanted.texts[i] = answer.at(TextKeys[i]);
            }
        }
        wanted.times = answer.value("times", Endless);
        wanted.status = answer.value("status", std::uint32_t{0});
    }
    return all;
}

// The call that just this answer is for, without records to fill in.
tavrolib::Call CallFor(const Wanted& wanted) {
    tavrolib::Call call;
    call.entryPoint = tavrolib::FindEntryPoint(wanted.call)->entryPoint;
    const auto text = [&](std::size_t index) {
        const auto& value = wanted.texts[index];
        return value ? std::optional(tavrolib::BytesFromUtf8(value->get<std::string>()))
                     : std::nullopt;
    };
    if (wanted.texts[0]) {
        call.operation = wanted.texts[0]->get<std::uint32_t>();
    }
    call.request = text(1);
    call.adapter = text(2);
    call.port = text(3);
    return call;
}

// The status that the first answer gives to the call of `asked` and is not used up.
std::optional<std::uint32_t> TakeFirst(std::vector<Wanted>& all, const Wanted& asked) {
    const auto first = std::ranges::find_if(all, [&](const Wanted& wanted) {
        bool fits = wanted.call == asked.call && wanted.times != 0;
        for (std::size_t i = 0; i < TextKeys.size(); ++i) {
            fits = fits && (!wanted.texts[i] || wanted.texts[i] == asked.texts[i]);
        }
        return fits;
    });
    if (first == all.end()) {
        return std::nullopt;
    }
    first->times -= first->times == Endless ? 0 : 1;
    return first->status;
}

void RequireTaken(Script& script, const Json& json) {
    constexpr std::size_t MostAnswers = 50;
    std::vector<Wanted> all = WantedBy(json);
    for (std::size_t i = 0; i < 2 * std::min(all.size(), MostAnswers); ++i) {
        const Wanted asked = all[i % all.size()];
        const auto expected = TakeFirst(all, asked);
        const auto outcome = script.Take(CallFor(asked));
        Require(expected.has_value() == outcome.has_value());
        Require(!expected || *expected == outcome->status);
    }
}

const std::vector<std::string> Words{"messages",
                                     "model",
                                     "answers",
                                     "call",
                                     "operation",
                                     "request",
                                     "adapter",
                                     "port",
                                     "status",
                                     "output",
                                     "result",
                                     "error",
                                     "times",
                                     "comment",
                                     "code",
                                     "message",
                                     "action",
                                     "additional",
                                     "details",
                                     "input",
                                     "debug",
                                     "locale",
                                     "DoOperation",
                                     "Initialize",
                                     "Uninitialize",
                                     "GetHostName",
                                     "GetDiscoveredAdapters",
                                     "GetPortWWNs",
                                     "GetPartitionState",
                                     "GetAdapterType",
                                     "GetAdapterPortNumber",
                                     "GetLocalizeMessage",
                                     "GetLastErrorMessage",
                                     "numbers",
                                     "words",
                                     "Port 1",
                                     "Tavro CNA 4610K"};

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t mostSize, unsigned seed) {
    return tavro_fuzz::MutateJsonText(data, size, mostSize, seed, Words);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = BytesOf(data, size);
    std::optional<Script> script = Read(text);
    if (!script) {
        return 0;
    }
    RequireTaken(*script, tavrolib::ParseJson(text));
    const std::vector<std::string> commands[] = {
        {"-showadapter"},
        {"-iscsi", "02-00-5E-10-00-02", "-target", "-listall"},
        {"-fcoe", "10:00:02:00:5E:10:00:04", "-portinfo"},
        {"-npar", "02-00-5E-10-00-00", "-set"}};
    for (const auto& command : commands) {
        Script fresh = Script::FromText(text);
        tavrosim::Host host = tavro_fuzz::BuiltInHost();
        tavro_fuzz::Play({.arguments = command, .typed = "1\ny\n2\n", .script = &fresh}, host);
    }
    return 0;
}
