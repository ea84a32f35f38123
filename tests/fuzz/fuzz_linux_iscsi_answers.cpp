// Feeds arbitrary bytes to the readers of what targets answer to logins, to the question for
// targets and to SCSI commands, and of the answers to a ping.
#include <algorithm>
#include <string>

#include "fuzz/require.h"
#include "linux/iscsi/icmp.h"
#include "linux/iscsi/login_exchange.h"
#include "linux/iscsi/scsi.h"
#include "linux/iscsi/send_targets.h"

namespace {

using namespace tavrolinux;

void CheckText(const std::string& text) {
    Require(
        std::all_of(text.begin(), text.end(), [](char one) { return one >= ' ' && one <= '~'; }));
    Require(text.empty() || (text.front() != ' ' && text.back() != ' '));
}

// Without the secret no answer ends a login, in whatever step it comes.
void CheckLogin(WireBytes bytes) {
    constexpr std::uint8_t LeavesSecurity = 0x81;
    std::vector<std::uint8_t> request(PduHeaderSize);
    request[0] = static_cast<std::uint8_t>(Opcode::LoginRequest);
    request[1] = LeavesSecurity;
    LoginExchange exchange({true, true, true, "prover", "a secret that nobody knows"});
    for (int step = 0; step < 4; ++step) {
        exchange.TakeRequest(request);
        exchange.TakeAnswer(bytes);
    }
    Require(exchange.FaultAtEnd() != LoginFault::None);
    LoginExchange open({});
    open.TakeRequest(bytes.size() < PduHeaderSize ? WireBytes(request) : bytes);
    const LoginFault fault = open.TakeAnswer(bytes);
    Require((fault == LoginFault::ByStatus) == (open.Status() != 0));
}

void CheckTargets(WireBytes bytes) {
    const auto targets = ParseSendTargets(bytes);
    Require(!targets || targets->size() <= MostTargets + 1);
    const auto value = ParseBinaryValue(BytesOf(bytes.data(), bytes.size()));
    Require(!value || value->size() < bytes.size());
}

void CheckReply(WireBytes bytes) {
    Require(WithoutIPv4Header(bytes).size() <= bytes.size());
    Require(!EchoReplyTo(Family::IPv4, bytes) || bytes.size() >= 8);
    Require(!EchoReplyTo(Family::IPv6, bytes) || bytes.size() >= 8);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> bytes(data, size);
    CheckLogin(bytes);
    CheckTargets(bytes);
    CheckReply(bytes);
    Require(ParseSenseKey(bytes).value_or(0) <= 0x0F);
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
