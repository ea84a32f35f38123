#include "iscsi/portal_operands.h"

#include "cli/validation.h"
#include "mgmt/message.h"

namespace tavro {

bool AcceptPortalAddress(const std::string& address) {
    const bool valid = IsValidAddress(address);
    if (!valid) {
        ShowMessage(MessageId::InvalidAddress);
    }
    return valid;
}

bool AcceptPortNumber(const std::string& port) {
    const bool valid = !HasNonDigit(port);
    if (!valid) {
        ShowMessage(MessageId::InvalidPortNumber);
    }
    return valid;
}

std::string PortNumberOrDefault(const Invocation& invocation) {
    const std::string port = invocation.Text(operand::PortNumber);
    const bool taken = invocation.Has(operand::PortNumber) && AcceptPortNumber(port);
    return taken ? port : DefaultIscsiPort;
}

}  // namespace tavro
