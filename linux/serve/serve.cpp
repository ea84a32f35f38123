#include "linux/serve/serve.h"

#include <string>
#include <system_error>

#include "library/platform/file.h"
#include "linux/serve/inventory.h"
#include "linux/system/rights.h"

namespace tavrolinux {
namespace {

using tavrolib::Call;
using tavrolib::EntryPoint;

Outcome ServeOperation(const Site& site, const Call& call) {
    const Operation* const operation = FindOperation(call.operation.value_or(0));
    if (operation == nullptr) {
        return tavrolib::UnknownOperation(call.operation.value_or(0));
    }
    if (operation->serve == nullptr) {
        return Refused(Status::NotOffered, L"This host cannot do that.",
                       L"See the details for what is missing.", operation->missing);
    }
    return operation->serve(site, call.request.value_or(""), call.input, call.output);
}

}  // namespace

Outcome RefusalOf(const SystemFailure& failure) {
    std::wstring details = WideFromUtf8(failure.Action()) + L": ";
    // Drivers refuse in the same words what nobody may do.
    if (failure.IsMissingRight() && !HasRight(failure.Right())) {
        const std::string reason = failure.Reason().empty() ? "" : " (" + failure.Reason() + ')';
        return Refused(
            Status::RightMissing, L"This process may not do that.",
            L"Run the command as root, or with the capability that stands in the details.",
            details + WideFromUtf8(failure.Right() + reason));
    }
    const std::string system = std::generic_category().message(failure.Error());
    details +=
        WideFromUtf8(failure.Reason().empty() ? system : failure.Reason() + " (" + system + ')');
    if (failure.IsGone()) {
        return Refused(Status::InterfaceGone, L"The interface is not there any more.",
                       L"See the details for the system's reason.", details);
    }
    if (failure.IsUnsupported()) {
        return Refused(Status::NotOffered, L"This host cannot do that.",
                       L"The driver or the kernel has no such feature.", details);
    }
    return Refused(Status::SystemRefused, L"The system did not do that.",
                   L"See the details for the system's reason.", details);
}

Outcome ServeCall(const Site& site, const Call& call) {
    try {
        return call.entryPoint == EntryPoint::DoOperation ? ServeOperation(site, call)
                                                          : AnswerQuery(site, call);
    } catch (const SystemFailure& failure) {
        return RefusalOf(failure);
    } catch (const StateFailure& failure) {
        return Refused(
            Status::StateUnusable, L"The library's own state cannot be used.",
            L"See that the file can be read and written by root, or move it away to start anew.",
            failure.Text());
    } catch (const tavrolib::platform::FileError& failure) {
        return Refused(Status::SystemRefused, L"The system did not do that.",
                       L"See the details for the system's reason.", failure.Text());
    }
}

}  // namespace tavrolinux
