#pragma once

#include "tavroapi/boot_records.h"
#include "tavroapi/dcb_records.h"
#include "tavroapi/ethernet_records.h"
#include "tavroapi/fcoe_records.h"
#include "tavroapi/iscsi_records.h"
#include "tavroapi/iscsi_storage_records.h"
#include "tavroapi/operations.h"
#include "tavroapi/partition_records.h"
#include "tavroapi/tcpip_records.h"

namespace tavroapi {

namespace detail {

template <class... Lists>
struct Joined;

template <OperationCode... Codes>
struct Joined<OperationList<Codes...>> {
    using Type = OperationList<Codes...>;
};

template <OperationCode... First, OperationCode... Second, class... Rest>
struct Joined<OperationList<First...>, OperationList<Second...>, Rest...>
    : Joined<OperationList<First..., Second...>, Rest...> {};

}  // namespace detail

// Every operation whose records are described, so that code can be made for each of them.
using DescribedOperations =
    detail::Joined<AdapterOperations, InitiatorOperations, TcpIpOperations, IscsiStorageOperations,
                   FcoeOperations, DcbOperations, BootOperations, PartitionOperations,
                   EthernetOperations>::Type;

}  // namespace tavroapi
