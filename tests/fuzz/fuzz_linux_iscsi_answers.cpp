// Feeds arbitrary bytes to the readers of what targets answer to logins and to SCSI commands.
#include <algorithm>
#include <string>

#include "fuzz/require.h"
#include "linux/iscsi/login_answer.h"
#include "linux/iscsi/scsi.h"

namespace {

using namespace tavrolinux;

void CheckText(const std::string& text) {
    Require(
        std::all_of(text.begin(), text.end(), [](char one) { return one >= ' ' && one <= '~'; }));
    Require(text.empty() || (text.front() != ' ' && text.back() != ' '));
}

void CheckLogin(WireBytes bytes) {
    constexpr std::size_t HeaderSize = 48;
    const auto size = LoginAnswerSize(bytes);
    Require(!size || *size == 0 || *size >= HeaderSize);
    const LoginAnswer answer = ParseLoginAnswer(bytes);
    Require(bytes.size() >= HeaderSize || (answer.status == 0 && !answer.provesTarget));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> bytes(data, size);
    CheckLogin(bytes);
    for (const std::uint16_t lun : ParseReportedLuns(bytes)) {
        Require(LunNumber(lun) < 1U << 14U);
    }
    Require(ParseReportedLuns(bytes).size() <= size / 8);
    const Inquiry inquiry = ParseInquiry(bytes);
    CheckText(inquiry.vendor);
    CheckText(inquiry.product);
    CheckText(ParseSerialNumber(bytes));
    Require(ParseCapacity10(bytes).value_or(Capacity{1, 0}).blocks != 0);
    Require(!ParseCapacity16(bytes) || size >= 12);
    return 0;
}
