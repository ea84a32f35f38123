#include "adapters/partition_queries.h"

#include "mgmt/operation.h"
#include "tavroapi/entry_points.h"

namespace tavro {

namespace {

template <class Entry, class Answer>
std::optional<Answer> Query(std::string identifier) {
    auto* const query = ResolveEntryPoint<Entry>();
    if (query == nullptr) {
        return std::nullopt;
    }
    Answer answer{};
    CallLibrary(query, &identifier, &answer);
    return answer;
}

// The library is not asked for anything when what follows the question cannot be done.
template <class Entry, class Answer>
std::optional<Answer> QueryBeforeOperation(const std::string& identifier) {
    return CanDoOperation() ? Query<Entry, Answer>(identifier) : std::nullopt;
}

}  // namespace

std::optional<std::uint32_t> GetPartitionState(const std::string& portIdentifier) {
    return QueryBeforeOperation<tavroapi::GetPartitionStateEntry, std::uint32_t>(portIdentifier);
}

std::optional<std::uint32_t> GetPartitionStateAlone(const std::string& portIdentifier) {
    return Query<tavroapi::GetPartitionStateEntry, std::uint32_t>(portIdentifier);
}

std::optional<std::string> GetAdapterType(const std::string& mac) {
    return QueryBeforeOperation<tavroapi::GetAdapterTypeEntry, std::string>(mac);
}

std::optional<std::uint32_t> GetAdapterPortNumber(const std::string& mac) {
    return QueryBeforeOperation<tavroapi::GetAdapterPortNumberEntry, std::uint32_t>(mac);
}

}  // namespace tavro
