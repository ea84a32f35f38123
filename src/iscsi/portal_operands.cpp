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

std::string PortNumberOrDefault(Arguments arguments, std::size_t position) {
    const std::string port = ArgumentAt(arguments, position);
    const bool taken = position < arguments.size() && AcceptPortNumber(port);
    return taken ? port : DefaultIscsiPort;
}

}  // namespace tavro
