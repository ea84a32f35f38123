#include "simulator/model/system_interface.h"

#include "library/text/identifier.h"

namespace tavrosim {
namespace {

bool IsOfSystem(const Function& function) {
    const TcpIp* const settings = TcpIpOf(function);
    return settings != nullptr && settings->vlanPriority.empty();
}

}  // namespace

const TcpIp* TcpIpOf(const Function& function) {
    return function.ethernet ? &function.ethernet->tcpIp
           : function.iscsi  ? &function.iscsi->tcpIp
                             : nullptr;
}

bool IsSameInterface(const Function& one, const Function& other) {
    return IsOfSystem(one) && IsOfSystem(other) &&
           tavrolib::NormalIdentifier(one.mac) == tavrolib::NormalIdentifier(other.mac);
}

}  // namespace tavrosim
