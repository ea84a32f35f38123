#pragma once

#include <span>

#include "simulator/model/model.h"

// The rows of each family of operations.
namespace tavrosim {

std::span<const OperationModel> AdapterOperations();
std::span<const OperationModel> InitiatorOperations();
std::span<const OperationModel> TcpIpOperations();
std::span<const OperationModel> IscsiPortInfoOperations();
std::span<const OperationModel> IscsiPortalOperations();
std::span<const OperationModel> IscsiTargetOperations();
std::span<const OperationModel> IscsiSessionOperations();
std::span<const OperationModel> FcoePortOperations();
std::span<const OperationModel> FcoeTargetOperations();
std::span<const OperationModel> FcoePingOperations();
std::span<const OperationModel> VirtualPortOperations();
std::span<const OperationModel> DcbOperations();
std::span<const OperationModel> BootOperations();
std::span<const OperationModel> PartitionOperations();
std::span<const OperationModel> EthernetPortOperations();
std::span<const OperationModel> EthernetStatisticsOperations();
std::span<const OperationModel> AdapterSettingsOperations();

}  // namespace tavrosim
