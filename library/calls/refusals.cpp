#include "library/calls/refusals.h"

#include "library/text/text.h"

namespace tavrolib {
namespace {

constexpr const wchar_t* CallersError = L"This is an error of the calling program.";

Outcome MissingArgument(const wchar_t* what) {
    return Refused(Status::MissingArgument, std::wstring(L"The call has no ") + what + L".",
                   CallersError);
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

}  // namespace

Outcome NotInitialized() {
    return Refused(Status::NotInitialized, L"The management library is not initialized.",
                   CallersError);
}

Outcome UnknownOperation(std::uint32_t code) {
    return Refused(Status::UnknownOperation,
                   L"Operation " + std::to_wstring(code) + L" is not supported.",
                   L"Use a management library that supports this operation.");
}

Outcome UnknownIdentifier(const std::string& request, const std::wstring& kind) {
    const std::wstring function = kind.empty() ? L"function" : kind + L" function";
    const std::wstring identifier = kind == L"FCoE" ? L"port WWN"
                                    : kind.empty()  ? L"MAC or WWN"
                                                    : L"MAC";
    return Refused(
        Status::UnknownIdentifier,
        L"No " + function + L" of this host has the " + identifier + L" \"" +
            WideFromUtf8(request) + L"\".",
        L"Run \"tavrocli -showadapter\" to see the identifiers of this host's functions.");
}

Outcome CheckArguments(const Call& call) {
    if (call.entryPoint == EntryPoint::DoOperation) {
        return CheckRecords(call);
    }
    const EntryPointRow& row = RowOf(call.entryPoint);
    return row.filled != nullptr && !call.isComplete ? MissingArgument(row.filled) : Done();
}

}  // namespace tavrolib
