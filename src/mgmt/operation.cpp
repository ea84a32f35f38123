#include "mgmt/operation.h"

namespace tavro {

std::uint32_t LastStatus = 0;

namespace detail {

CallOutcome DoOperation(tavroapi::OperationCode code, const std::string& request, void* input,
                        void* output, StatusUse statusUse) {
    auto* const entry = ResolveEntryPoint<tavroapi::DoOperationEntry>();
    if (entry == nullptr) {
        return CallOutcome::NotResolved;
    }
    std::string requestText = request;
    const std::uint32_t status =
        CallLibrary(entry, static_cast<std::uint32_t>(code), &requestText, input, output);
    if (statusUse == StatusUse::Store) {
        LastStatus = status;
    }
    return status == 0 ? CallOutcome::Done : CallOutcome::Failed;
}

}  // namespace detail

}  // namespace tavro
