#include "library/calls/refusals.h"

#include "library/text/text.h"

namespace tavrolib {
namespace {

using Text = decltype(Refused)::Text;

constexpr Text CallersError = L"This is an error of the calling program.";
constexpr Text ListAdapters =
    L"Run \"tavrocli -showadapter\" to see this host's adapters and ports.";

Outcome MissingArgument(const wchar_t* what) {
    return Refused(Status::MissingArgument, L"The call lacks an argument.", CallersError, what);
}

Outcome CheckRecords(const Call& call) {
    if (call.described == nullptr) {
        return UnknownOperation(call.operation.value_or(0));
    }
    if (call.described->input != nullptr && call.input == nullptr) {
        return MissingArgument(L"input record");
    }
    if (call.described->output != nullptr && call.output == nullptr) {
        return MissingArgument(L"result record");
    }
    return Done();
}

// What is told when no function of a kind has an identifier, and what the identifier is.
struct UnknownFunction {
    Text message;
    const wchar_t* identifier = nullptr;
};

UnknownFunction UnknownFunctionOf(FunctionKind kind) {
    switch (kind) {
        case FunctionKind::Ethernet:
            return {L"No Ethernet function of this host has this MAC.", L"MAC"};
        case FunctionKind::Iscsi:
            return {L"No iSCSI function of this host has this MAC.", L"MAC"};
        case FunctionKind::Fcoe:
            return {L"No FCoE function of this host has this port WWN.", L"port WWN"};
        case FunctionKind::Any:
            break;
    }
    return {L"No function of this host has this identifier.", L"MAC or port WWN"};
}

}  // namespace

Outcome NotInitialized() {
    return Refused(Status::NotInitialized, L"The management library is not initialized.",
                   CallersError);
}

Outcome UnknownOperation(std::uint32_t code) {
    return Refused(Status::UnknownOperation, L"This operation is not available.",
                   L"Use a management library that has this operation.",
                   L"operation " + std::to_wstring(code));
}

Outcome UnknownIdentifier(const std::string& request, FunctionKind kind) {
    const UnknownFunction unknown = UnknownFunctionOf(kind);
    return Refused(
        Status::UnknownIdentifier, unknown.message,
        L"Run \"tavrocli -showadapter\" to see the identifiers of this host's functions.",
        std::wstring(unknown.identifier) + L" \"" + WideFromUtf8(request) + L"\"");
}

Outcome UnknownAdapter(const std::string& name) {
    return Refused(Status::UnknownIdentifier, L"There is no adapter of this name.", ListAdapters,
                   L"adapter " + Quoted(name));
}

Outcome UnknownPort(const std::string& adapter, const std::string& port) {
    return Refused(Status::UnknownIdentifier, L"The adapter has no port of this name.",
                   ListAdapters, L"adapter " + Quoted(adapter) + L", port " + Quoted(port));
}

Outcome AddressOfInterface(const std::string& interface) {
    return Refused(Status::NotOffered, L"The address belongs to the interface.",
                   L"Use \"tavrocli -ethernet <MAC> -modifytcpip\".",
                   L"interface " + Quoted(interface));
}

Outcome NotAnAddress(Status status, const std::string& text) {
    return Refused(status, L"The text is not an IP address.", L"Give an IPv4 or IPv6 address.",
                   L"address " + Quoted(text));
}

Outcome UnknownFcoeTarget(const std::string& portWwn) {
    return Refused(Status::UnknownFcoeTarget, L"The port does not see this target.",
                   L"Give the port WWN of a target. Run the command with \"-target -listactive\" "
                   L"to see the targets of the port.",
                   L"target " + Quoted(portWwn));
}

Outcome CheckArguments(const Call& call) {
    if (call.entryPoint == EntryPoint::DoOperation) {
        return CheckRecords(call);
    }
    const EntryPointRow& row = RowOf(call.entryPoint);
    return row.filled != nullptr && !call.isComplete ? MissingArgument(row.filled) : Done();
}

}  // namespace tavrolib
