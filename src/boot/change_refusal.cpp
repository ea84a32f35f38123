#include "boot/change_refusal.h"

#include "adapters/partition_queries.h"
#include "tavroapi/codes.h"

namespace tavro {

std::optional<MessageId> BootChangeRefusal(const std::string& portIdentifier) {
    switch (GetPartitionStateAlone(portIdentifier).value_or(0)) {
        case tavroapi::NotPartitioned:
        case tavroapi::Partitioned:
            return std::nullopt;
        case tavroapi::PartitionedForGood:
            return MessageId::BootOfPartitionedPort;
        default:
            return MessageId::BootInUnknownPartitionState;
    }
}

}  // namespace tavro
