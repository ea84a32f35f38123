#include "adapters/partition_queries.h"

#include "mgmt/library.h"
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
    query(&identifier, &answer);
    return answer;
}

}  // namespace

std::optional<std::uint32_t> GetPartitionState(const std::string& portIdentifier) {
    return Query<tavroapi::GetPartitionStateEntry, std::uint32_t>(portIdentifier);
}

std::optional<std::string> GetAdapterType(const std::string& mac) {
    return Query<tavroapi::GetAdapterTypeEntry, std::string>(mac);
}

std::optional<std::uint32_t> GetAdapterPortNumber(const std::string& mac) {
    return Query<tavroapi::GetAdapterPortNumberEntry, std::uint32_t>(mac);
}

std::optional<MessageId> BootChangeRefusal(const std::string& portIdentifier) {
    switch (GetPartitionState(portIdentifier).value_or(0)) {
        case 1:
        case 3:
            return std::nullopt;
        case 2:
            return MessageId::BootOfPartitionedPort;
        default:
            return MessageId::BootInUnknownPartitionState;
    }
}

}  // namespace tavro
