#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <string>
#include <vector>

#include "linux/iscsi/login.h"
#include "linux/iscsi/wire.h"
#include "linux/system/descriptor.h"
#include "linux/system/wipe.h"

namespace tavrolinux {
namespace {

// Takes connections on the loopback address, and says nothing.
class SilentPortal {
  public:
    SilentPortal() : listening_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const general = reinterpret_cast<sockaddr*>(&address);
        EXPECT_EQ(bind(listening_.Get(), general, size), 0);
        EXPECT_EQ(listen(listening_.Get(), 1), 0);
        EXPECT_EQ(getsockname(listening_.Get(), general, &size), 0);
        portal_ = {"127.0.0.1", ntohs(address.sin_port)};
    }
    const Portal& Where() const { return portal_; }

  private:
    Descriptor listening_;
    Portal portal_;
};

SessionPlan PlanOfEndingSession(const Portal& portal) {
    SessionPlan plan{"iqn.2020-01.com.example:host", "lo", portal, "iqn.2020-01.com.example:a"};
    plan.end = std::chrono::steady_clock::now() + std::chrono::milliseconds(200);
    return plan;
}

// The refusal that comes of the login; a success where none comes.
tavrolib::Outcome RefusalOf(const SessionPlan& plan, const tavroapi::LoginOptions& login) {
    return WithRefusals([&] {
        const Session session(plan, login);
        return tavrolib::Outcome();
    });
}

TEST(IscsiSession, EndsAtItsEndWhateverAStepMayTake) {
    const SilentPortal portal;
    const auto start = std::chrono::steady_clock::now();
    const auto refusal = RefusalOf(PlanOfEndingSession(portal.Where()), {});
    EXPECT_EQ(refusal.status, static_cast<std::uint32_t>(tavrolib::Status::ServerSilent));
    EXPECT_LT(std::chrono::steady_clock::now() - start, StepLimit / 2);
}

TEST(IscsiSession, LooksUpNoNames) {
    const auto refusal = RefusalOf(PlanOfEndingSession({"localhost", 3260}), {});
    EXPECT_EQ(refusal.status, static_cast<std::uint32_t>(tavrolib::Status::TargetUnreachable));
}

// With sanitizers the heap is theirs, and keeps what is freed for a while.
#if !TAVRO_SANITIZED
// A secret of which there is no other copy: each character comes of its place.
constexpr std::size_t SecretSize = 48;
char SecretCharacter(std::size_t place, int which) {
    return static_cast<char>(
        'A' + (place * place * 7 + place * 3 + static_cast<std::size_t>(which)) % 26);
}
std::string MadeSecret(int which) {
    std::string secret(SecretSize, ' ');
    for (std::size_t place = 0; place < SecretSize; ++place) {
        secret[place] = SecretCharacter(place, which);
    }
    return secret;
}

std::size_t CopiesIn(const std::vector<char>& memory, int which) {
    constexpr std::size_t Recognized = 24;
    std::size_t copies = 0;
    for (std::size_t at = 0; at + Recognized <= memory.size(); ++at) {
        std::size_t same = 0;
        while (same < Recognized && memory[at + same] == SecretCharacter(same, which)) {
            ++same;
        }
        copies += same == Recognized ? 1U : 0U;
    }
    return copies;
}

// How often the secret stands in what this process has on its heap.
std::size_t CopiesOnTheHeap(int which) {
    std::ifstream maps("/proc/self/maps");
    const Descriptor memory(open("/proc/self/mem", O_RDONLY | O_CLOEXEC));
    std::size_t copies = 0;
    for (std::string line; std::getline(maps, line);) {
        if (!line.ends_with("[heap]")) {
            continue;
        }
        std::size_t end = 0;
        const auto first = std::stoull(line, &end, 16);
        const auto last = std::stoull(line.substr(end + 1), nullptr, 16);
        std::vector<char> bytes(last - first);
        const ssize_t got =
            pread(memory.Get(), bytes.data(), bytes.size(), static_cast<off_t>(first));
        bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
        copies += CopiesIn(bytes, which);
    }
    return copies;
}

TEST(IscsiSession, LeavesNoSecretBehindWhenALoginFails) {
    const SilentPortal portal;
    tavroapi::LoginOptions login;
    login.authentication = MutualChap;
    login.targetChapName = "in";
    login.initiatorChapName = "out";
    login.targetSecret = MadeSecret(1);
    login.initiatorSecret = MadeSecret(2);
    ASSERT_NE(CopiesOnTheHeap(1), 0U) << "the search finds what is there";
    const auto refusal = RefusalOf(PlanOfEndingSession(portal.Where()), login);
    EXPECT_EQ(refusal.status, static_cast<std::uint32_t>(tavrolib::Status::ServerSilent));
    Wipe(login.targetSecret);
    Wipe(login.initiatorSecret);
    EXPECT_EQ(CopiesOnTheHeap(1), 0U);
    EXPECT_EQ(CopiesOnTheHeap(2), 0U);
}
#endif

}  // namespace
}  // namespace tavrolinux
