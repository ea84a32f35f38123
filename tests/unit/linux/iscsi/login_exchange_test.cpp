#include "linux/iscsi/login_exchange.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "linux/iscsi/md5.h"

namespace tavrolinux {
namespace {

using namespace std::string_view_literals;
using testing::ElementsAre;
using testing::Optional;
using Bytes = std::vector<std::uint8_t>;

// The bits of a login's second byte.
constexpr std::uint8_t StaysInSecurity = 0x00;
constexpr std::uint8_t LeavesSecurity = 0x81;
constexpr std::uint8_t EntersFullFeature = 0x87;

Bytes LoginUnit(std::uint8_t opcode, std::uint8_t flags, std::string_view data,
                std::uint16_t status = 0) {
    Bytes bytes(48);
    bytes[0] = opcode;
    bytes[1] = flags;
    bytes[6] = static_cast<std::uint8_t>(data.size() >> 8U);
    bytes[7] = static_cast<std::uint8_t>(data.size() & 0xFFU);
    bytes[36] = static_cast<std::uint8_t>(status >> 8U);
    bytes[37] = static_cast<std::uint8_t>(status & 0xFFU);
    bytes.insert(bytes.end(), data.begin(), data.end());
    bytes.resize((bytes.size() + 3) / 4 * 4);
    return bytes;
}

Bytes LoginAnswer(std::uint8_t flags, std::string_view data, std::uint16_t status = 0) {
    return LoginUnit(0x23, flags, data, status);
}

std::string Md5Text(std::string_view text) {
    constexpr std::string_view Digits = "0123456789abcdef";
    std::string written;
    for (const std::uint8_t byte :
         Md5({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()})) {
        written += Digits[byte >> 4U];
        written += Digits[byte & 0xFU];
    }
    return written;
}

// The test suite that the standard of MD5 (RFC 1321) gives, and lengths around a block.
TEST(Md5, IsThatOfTheStandard) {
    EXPECT_EQ(Md5Text(""), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(Md5Text("a"), "0cc175b9c0f1b6a831c399e269772661");
    EXPECT_EQ(Md5Text("abc"), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(Md5Text("message digest"), "f96b697d7cb7938d525a2f31aaf161d0");
    EXPECT_EQ(Md5Text("abcdefghijklmnopqrstuvwxyz"), "c3fcd3d76192e4007dfb496cca67e13b");
    EXPECT_EQ(Md5Text("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"),
              "d174ab98d277d9f5a5611c2c9f419d9f");
    EXPECT_EQ(Md5Text("12345678901234567890123456789012345678901234567890123456789012345678901234"
                      "567890"),
              "57edf4a22be3c955ac49da2e2107b67a");
    EXPECT_EQ(Md5Text(std::string(55, 'a')), "ef1772b6dff9a122358552954ad0df65");
    EXPECT_EQ(Md5Text(std::string(56, 'a')), "3b0c8ac703f828b04c6c197006d17218");
    EXPECT_EQ(Md5Text(std::string(63, 'a')), "b06521f39153d618550606be297466d5");
    EXPECT_EQ(Md5Text(std::string(64, 'a')), "014842d480b571495a4a0363793f7367");
    EXPECT_EQ(Md5Text(std::string(119, 'a')), "8a7bd0732ed6a28ce75f6dabc90e1613");
    EXPECT_EQ(Md5Text(std::string(120, 'a')), "5f61c0ccad4cac44c75ff505e1f1e537");
}

TEST(BinaryValue, IsWrittenInBase16AndBase64) {
    EXPECT_THAT(ParseBinaryValue("0x0aFF"), Optional(ElementsAre(0x0A, 0xFF)));
    EXPECT_THAT(ParseBinaryValue("0Xabc"), Optional(ElementsAre(0x0A, 0xBC)));
    EXPECT_THAT(ParseBinaryValue("0bTWFu"), Optional(ElementsAre('M', 'a', 'n')));
    EXPECT_THAT(ParseBinaryValue("0bTWE="), Optional(ElementsAre('M', 'a')));
    EXPECT_THAT(ParseBinaryValue("0BTQ=="), Optional(ElementsAre('M')));
    for (const char* const text : {"", "0", "12", "0xg0", "0b-", "x12"}) {
        EXPECT_EQ(ParseBinaryValue(text), std::nullopt) << text;
    }
}

// The initiator's own challenge has the number 9 and the bytes "AB".
const std::string Secret = "the-target-knows";
const std::string Proof = "CHAP_R=0x" + Md5Text("\x09" + Secret + "AB") + '\0';
const std::string Name = std::string("CHAP_N=prover\0"sv);
constexpr std::string_view Chap = "AuthMethod=CHAP\0"sv;
constexpr std::string_view Challenge = "CHAP_A=5\0CHAP_I=7\0CHAP_C=0xabcdef\0"sv;

LoginDemands Demands(bool wantsChallenge, bool wantsProof, bool wantsDigest = false) {
    return {wantsChallenge, wantsProof, wantsDigest, "prover", Secret};
}

class LoginExchangeTest : public testing::Test {
  protected:
    LoginFault Ask(std::uint8_t flags, std::string_view said, const Bytes& answer) {
        exchange.TakeRequest(LoginUnit(0x43, flags, said));
        return exchange.TakeAnswer(answer);
    }
    LoginFault AskForMethod(std::uint8_t flags, std::string_view answer) {
        return Ask(LeavesSecurity, "AuthMethod=CHAP,None\0"sv, LoginAnswer(flags, answer));
    }
    LoginFault AskForChallenge(std::uint8_t flags, std::string_view answer) {
        return Ask(0x01, "CHAP_A=5\0"sv, LoginAnswer(flags, answer));
    }
    LoginFault AskForProof(std::uint8_t flags, std::string_view answer) {
        return Ask(LeavesSecurity, "CHAP_N=in\0CHAP_R=0x00\0CHAP_I=9\0CHAP_C=0x4142\0"sv,
                   LoginAnswer(flags, answer));
    }
    LoginFault AskForEntry(std::string_view answer) {
        return Ask(EntersFullFeature, "DataDigest=None\0"sv,
                   LoginAnswer(EntersFullFeature, answer));
    }
    void BeChallenged() {
        ASSERT_EQ(AskForMethod(StaysInSecurity, Chap), LoginFault::None);
        ASSERT_EQ(AskForChallenge(StaysInSecurity, Challenge), LoginFault::None);
    }

    LoginExchange exchange{Demands(true, true)};
};

TEST_F(LoginExchangeTest, EndsWellWithAProof) {
    BeChallenged();
    EXPECT_EQ(exchange.FaultAtEnd(), LoginFault::NotProven);
    EXPECT_EQ(AskForProof(LeavesSecurity, Name + Proof), LoginFault::None);
    EXPECT_EQ(exchange.FaultAtEnd(), LoginFault::Invalid);
    EXPECT_EQ(AskForEntry("HeaderDigest=None\0"sv), LoginFault::None);
    EXPECT_EQ(exchange.FaultAtEnd(), LoginFault::None);
}

TEST_F(LoginExchangeTest, TakesTheProofInBase64) {
    exchange = LoginExchange(Demands(true, true));
    BeChallenged();
    EXPECT_EQ(AskForProof(LeavesSecurity, Name + "CHAP_R=0bfiRfh7MQExkjOERAjqYgcw==" + '\0'),
              LoginFault::None);
}

TEST_F(LoginExchangeTest, IsNoProofWithAnythingElse) {
    const std::string zeros = "CHAP_R=0x" + std::string(32, '0') + '\0';
    const std::string other = std::string("CHAP_N=other\0"sv);
    for (const std::string& answer :
         {std::string(), Name, Proof, Name + zeros, other + Proof, Name + Name + Proof,
          Name + Proof + Proof, Name + zeros + Proof, Name + std::string("CHAP_R=\0"sv),
          Name + std::string("CHAP_R=zz\0"sv)}) {
        exchange = LoginExchange(Demands(true, true));
        BeChallenged();
        EXPECT_EQ(AskForProof(LeavesSecurity, answer), LoginFault::NotProven) << answer;
    }
}

TEST_F(LoginExchangeTest, HasNoProofBeforeItsOwnStep) {
    for (const std::string& told : {Name + Proof, Proof}) {
        exchange = LoginExchange(Demands(true, true));
        EXPECT_EQ(AskForMethod(LeavesSecurity, "AuthMethod=None\0" + told), LoginFault::NotProven);
        exchange = LoginExchange(Demands(true, true));
        EXPECT_EQ(AskForMethod(StaysInSecurity, std::string(Chap) + told), LoginFault::NotProven);
        exchange = LoginExchange(Demands(true, true));
        ASSERT_EQ(AskForMethod(StaysInSecurity, Chap), LoginFault::None);
        EXPECT_EQ(AskForChallenge(StaysInSecurity, std::string(Challenge) + told),
                  LoginFault::NotProven);
        exchange = LoginExchange(Demands(true, true));
        EXPECT_EQ(AskForEntry(told), LoginFault::NotProven);
    }
}

TEST_F(LoginExchangeTest, KnowsNoProverWithoutASecret) {
    LoginDemands demands = Demands(true, true);
    demands.proverSecret = {};
    exchange = LoginExchange(demands);
    BeChallenged();
    const std::string proof = "CHAP_R=0x" +
                              Md5Text(
                                  "\x09"
                                  "AB") +
                              '\0';
    EXPECT_EQ(AskForProof(LeavesSecurity, Name + proof), LoginFault::NotProven);
}

TEST_F(LoginExchangeTest, NoticesThatNothingIsAskedOfTheInitiator) {
    exchange = LoginExchange(Demands(true, false));
    EXPECT_EQ(AskForMethod(LeavesSecurity, "AuthMethod=None\0"sv), LoginFault::NotChallenged);
    exchange = LoginExchange(Demands(true, false));
    EXPECT_EQ(AskForMethod(LeavesSecurity, ""), LoginFault::NotChallenged);
    exchange = LoginExchange(Demands(true, false));
    ASSERT_EQ(AskForMethod(StaysInSecurity, Chap), LoginFault::None);
    EXPECT_EQ(AskForChallenge(StaysInSecurity, ""), LoginFault::NotChallenged);
    exchange = LoginExchange(Demands(true, false));
    EXPECT_EQ(AskForEntry(""), LoginFault::NotChallenged);
    exchange = LoginExchange(Demands(true, false));
    BeChallenged();
    EXPECT_EQ(AskForProof(LeavesSecurity, ""), LoginFault::None);
    EXPECT_EQ(AskForEntry(""), LoginFault::None);
    EXPECT_EQ(exchange.FaultAtEnd(), LoginFault::None);
}

TEST_F(LoginExchangeTest, TellsAnotherAlgorithm) {
    ASSERT_EQ(AskForMethod(StaysInSecurity, Chap), LoginFault::None);
    EXPECT_EQ(AskForChallenge(StaysInSecurity, "CHAP_A=7\0CHAP_I=7\0CHAP_C=0xab\0"sv),
              LoginFault::OtherAlgorithm);
}

TEST_F(LoginExchangeTest, LeavesAStageOnlyWhereTheRequestDoes) {
    exchange = LoginExchange(Demands(false, false));
    EXPECT_EQ(AskForMethod(0x83, ""), LoginFault::Invalid);
    EXPECT_EQ(AskForMethod(0x87, ""), LoginFault::Invalid);
    EXPECT_EQ(AskForMethod(0x04, ""), LoginFault::Invalid);
    EXPECT_EQ(AskForMethod(0xC1, ""), LoginFault::Invalid) << "a text that goes on";
    EXPECT_EQ(AskForMethod(0x40, ""), LoginFault::InPieces);
    EXPECT_EQ(AskForChallenge(LeavesSecurity, ""), LoginFault::Invalid);
    EXPECT_EQ(AskForMethod(LeavesSecurity, ""), LoginFault::None);
    EXPECT_EQ(exchange.TakeAnswer(LoginAnswer(EntersFullFeature, "")), LoginFault::Invalid)
        << "nothing was asked";
}

TEST_F(LoginExchangeTest, AgreesToTheDigestThatIsWantedOrNone) {
    const auto enter = [this](bool isWanted, std::string_view answer) {
        exchange = LoginExchange(Demands(false, false, isWanted));
        return AskForEntry(answer);
    };
    EXPECT_EQ(enter(true, "HeaderDigest=CRC32C\0"sv), LoginFault::None);
    EXPECT_EQ(enter(true, "HeaderDigest=None\0"sv), LoginFault::NoHeaderDigest);
    EXPECT_EQ(enter(true, ""), LoginFault::NoHeaderDigest);
    EXPECT_EQ(enter(false, ""), LoginFault::None);
    EXPECT_EQ(enter(false, "HeaderDigest=CRC32C\0"sv), LoginFault::Invalid);
    EXPECT_EQ(enter(false, "DataDigest=CRC32C\0"sv), LoginFault::Invalid);
}

TEST_F(LoginExchangeTest, TellsWhyItIsRefused) {
    EXPECT_EQ(Ask(LeavesSecurity, "", LoginAnswer(0, "", 0x0203)), LoginFault::ByStatus);
    EXPECT_EQ(exchange.Status(), 0x0203);
}

TEST_F(LoginExchangeTest, TakesNothingThatIsNoAnswer) {
    exchange = LoginExchange(Demands(false, false));
    EXPECT_EQ(AskForEntry("\xFF\xFF"), LoginFault::Invalid);
    EXPECT_EQ(AskForEntry("HeaderDigest=None"), LoginFault::Invalid) << "no end";
    EXPECT_EQ(AskForEntry("=None\0"sv), LoginFault::Invalid);
    EXPECT_EQ(AskForEntry("A=1\0\0B=2\0"sv), LoginFault::Invalid);
    Bytes answer = LoginAnswer(EntersFullFeature, "");
    answer[4] = 1;
    EXPECT_EQ(Ask(EntersFullFeature, "", answer), LoginFault::Invalid);
    answer[4] = 0;
    answer[7] = 200;
    EXPECT_EQ(Ask(EntersFullFeature, "", answer), LoginFault::Invalid);
    answer.resize(20);
    EXPECT_EQ(Ask(EntersFullFeature, "", answer), LoginFault::Invalid);
}

}  // namespace
}  // namespace tavrolinux
