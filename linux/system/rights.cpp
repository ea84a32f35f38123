#include "linux/system/rights.h"

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>

#include "linux/system/failure.h"

namespace tavrolinux {
namespace {

struct RightRow {
    std::string_view name;
    unsigned number = 0;
};
constexpr RightRow RightRows[] = {
    {FileRight, CAP_DAC_OVERRIDE}, {NetworkRight, CAP_NET_ADMIN}, {RawSocketRight, CAP_NET_RAW}};

}  // namespace

bool HasRight(std::string_view right) {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> sets{};
    if (::syscall(SYS_capget, &header, sets.data()) != 0) {
        return false;
    }
    for (const RightRow& row : RightRows) {
        if (row.name == right) {
            return (sets.at(CAP_TO_INDEX(row.number)).effective & CAP_TO_MASK(row.number)) != 0;
        }
    }
    return false;
}

}  // namespace tavrolinux
