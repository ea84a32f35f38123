#include "partition/ports.h"

#include <algorithm>
#include <string>
#include <tuple>

#include "console/console.h"
#include "tavroapi/partition_records.h"

namespace tavro {

namespace {

constexpr std::size_t MostShownPorts = 64;
constexpr std::size_t FlowControlCount =
    std::tuple_size_v<decltype(tavroapi::PartitionConfig::flowControl)>;
constexpr std::size_t FunctionCount =
    std::tuple_size_v<decltype(tavroapi::PartitionConfig::functions)>;

std::size_t AtMost(std::size_t most, std::int32_t portCount) {
    return std::min(static_cast<std::size_t>(std::max(portCount, 0)), most);
}

}  // namespace

std::size_t PortsWithFlowControl(std::int32_t portCount) {
    return AtMost(FlowControlCount, portCount);
}

std::size_t ShownPorts(std::int32_t portCount) {
    return AtMost(MostShownPorts, portCount);
}

std::vector<std::size_t> FunctionsOfPort(std::size_t port, std::int32_t portCount) {
    const auto step = static_cast<std::size_t>(std::max(portCount, 1));
    std::vector<std::size_t> functions;
    for (std::size_t function = port; function < FunctionCount; function += step) {
        functions.push_back(function);
    }
    return functions;
}

void PrintPortHeading(std::size_t port) {
    console::PrintLine(L"\t[Port " + std::to_wstring(port + 1) + L"]");
}

}  // namespace tavro
