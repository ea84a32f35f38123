#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "linux/iscsi/pdu.h"

// Watches over a login, from the bytes that both sides say: whether the target goes through all of
// the authentication that was asked for, and proves who it is where it has to.
namespace tavrolinux {

// What the initiator insists on.
struct LoginDemands {
    bool wantsChallenge = false;  // the target asks for the initiator's CHAP name and secret
    bool wantsProof = false;      // and proves that it knows the initiator CHAP name and secret
    bool wantsHeaderDigest = false;
    std::string_view proverName;
    std::string_view proverSecret;
};

// What is wrong with an answer of the target.
enum class LoginFault {
    None,
    ByStatus,        // the target refuses the login, with Status()
    Invalid,         // no answer that can come here
    InPieces,        // a piece of one, which libiscsi cannot put together
    NotChallenged,   // it lets the initiator in without CHAP
    NotProven,       // it does not prove who it is
    OtherAlgorithm,  // it wants another algorithm than MD5
    NoHeaderDigest,  // it does not agree to a digest
};

// The number or the bytes that the value of a key writes, in base 16 ("0x...") or 64 ("0b...").
std::optional<std::vector<std::uint8_t>> ParseBinaryValue(std::string_view text);

// What a request of the initiator said.
struct LoginRequest {
    std::uint8_t flags = 0;
    bool hasAlgorithm = false;
    bool hasResponse = false;
    std::vector<std::uint8_t> identifier;
    std::vector<std::uint8_t> challenge;
};

class LoginExchange {
  public:
    // What the demands point to has to stay.
    explicit LoginExchange(const LoginDemands& demands) : demands_(demands) {}

    // Takes a request as it was sent, and each answer before it counts.
    void TakeRequest(WireBytes pdu);
    LoginFault TakeAnswer(WireBytes pdu);

    // What an end of the login means that comes before all answers have.
    LoginFault FaultAtEnd() const;

    // Why the target refuses: the class in the upper byte, its detail in the lower one.
    std::uint16_t Status() const { return status_; }

  private:
    // The step of CHAP whose answer comes next.
    enum class Step { Method, Challenge, Proof, Done };
    using Keys = std::vector<TextKey>;

    LoginFault TakeDigests(const Keys& keys);
    LoginFault TakeStep(const Keys& keys, bool isLeaving);
    bool IsProof(const Keys& keys) const;
    LoginFault Missing() const;

    LoginDemands demands_;
    std::optional<LoginRequest> request_;
    Step step_ = Step::Method;
    bool isDigestAgreed_ = false;
    bool isOver_ = false;
    std::uint16_t status_ = 0;
};

}  // namespace tavrolinux
