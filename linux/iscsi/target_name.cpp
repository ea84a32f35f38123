#include "linux/iscsi/target_name.h"

#include <algorithm>

#include "library/text/text.h"
#include "linux/iscsi/failure.h"
#include "linux/iscsi/initiator_name.h"
#include "linux/serve/operation.h"
#include "linux/system/trimmed.h"

namespace tavrolinux {
namespace {

bool IsBlankOrControl(wchar_t character) {
    return character <= L' ' || (character >= 0x7F && character <= 0xA0);
}

}  // namespace

bool IsTargetName(std::string_view name) {
    // What is no UTF-8 would be shown as something else than it is.
    return !name.empty() && name.size() <= LongestIscsiName &&
           tavrolib::Utf8FromBytes(name) == name &&
           std::ranges::none_of(WideFromUtf8(name), IsBlankOrControl);
}

std::string TargetNameOf(std::string_view text) {
    std::string name(Trimmed(text));
    if (!IsTargetName(name)) {
        throw IscsiFailure(
            Refused(Status::UnknownIscsiTarget, L"The target name is not usable.",
                    L"Give a name of 1 to 223 characters without blanks and control characters.",
                    L"target " + tavrolib::Quoted(name)));
    }
    return name;
}

}  // namespace tavrolinux
