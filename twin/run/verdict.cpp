#include "twin/run/verdict.h"

#include <algorithm>

#include "tavroapi/codes.h"

namespace tavrohost {
namespace {

using tavro::DecidingCall;
using tavro::Decision;

bool Is(const WatchedCall& call, const DecidingCall& deciding) {
    const bool isEntryPoint = deciding.entryPoint.ends_with("_" + call.entryPoint);
    const bool isOperation = deciding.entryPoint == tavroapi::DoOperationEntry::Name;
    return isEntryPoint &&
           (!isOperation || call.operation == static_cast<std::uint32_t>(deciding.operation));
}

bool Succeeded(const WatchedCall& call) {
    return call.status &&
           tavrohost::Succeeded(*call.status, call.completionCode, call.isIncomplete);
}

bool WasMade(std::span<const WatchedCall> calls, const DecidingCall& deciding) {
    return std::ranges::any_of(calls, [&](const WatchedCall& call) { return Is(call, deciding); });
}

bool IsInitialization(const WatchedCall& call) {
    return Is(call, tavroapi::InitializeEntry::Name);
}

bool WasInitialized(std::span<const WatchedCall> calls) {
    return std::ranges::any_of(
        calls, [](const WatchedCall& call) { return IsInitialization(call) && call.status == 0U; });
}

// Whether those calls came that the rule wants.
bool CameAsWanted(const Decision& decision, std::span<const WatchedCall> calls) {
    const auto wasMade = [&](const DecidingCall& deciding) { return WasMade(calls, deciding); };
    const auto isOperation = [](const DecidingCall& deciding) {
        return deciding.entryPoint == tavroapi::DoOperationEntry::Name;
    };
    switch (decision.HowToDecide()) {
        case Decision::Rule::Never:
            return false;
        case Decision::Rule::Always:
            return true;
        case Decision::Rule::EachOf:
            return std::ranges::all_of(decision.Calls(), wasMade);
        case Decision::Rule::SomeOf:
            return std::ranges::any_of(decision.Calls(), [&](const DecidingCall& deciding) {
                return isOperation(deciding) && wasMade(deciding);
            });
    }
    return false;
}

}  // namespace

bool Succeeded(std::uint32_t status, std::optional<std::int64_t> completionCode,
               bool isIncomplete) {
    const std::int64_t code = completionCode.value_or(0);
    return status == 0 && !isIncomplete && (code == 0 || code == tavroapi::AppliedAtRestart);
}

Verdict Judge(const Decision& decision, std::span<const WatchedCall> calls) {
    Verdict verdict{.isDone = WasInitialized(calls) && CameAsWanted(decision, calls)};
    for (std::size_t place = 0; place < calls.size(); ++place) {
        const WatchedCall& call = calls[place];
        const bool decides = std::ranges::any_of(
            decision.Calls(), [&](const DecidingCall& deciding) { return Is(call, deciding); });
        if ((decides || IsInitialization(call)) && !Succeeded(call)) {
            verdict.lastFailure = place;
        }
        if (decides) {
            verdict.isDone = verdict.isDone && Succeeded(call);
            verdict.restartRequired =
                verdict.restartRequired ||
                (call.status == 0U && call.completionCode == tavroapi::AppliedAtRestart);
        }
    }
    return verdict;
}

}  // namespace tavrohost
