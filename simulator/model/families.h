#pragma once

#include <span>

#include "simulator/model/model.h"

/// The rows of each family of operations.
namespace tavrosim {

std::span<const OperationModel> AdapterOperations();
std::span<const OperationModel> InitiatorOperations();
std::span<const OperationModel> TcpIpOperations();

}  // namespace tavrosim
