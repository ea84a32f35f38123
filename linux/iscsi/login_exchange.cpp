#include "linux/iscsi/login_exchange.h"

#include <algorithm>
#include <charconv>

#include "linux/iscsi/md5.h"
#include "linux/system/wipe.h"

namespace tavrolinux {
namespace {

constexpr std::size_t LoginStatusAt = 36;

// The bits of a login's second byte.
constexpr std::uint8_t TransitBit = 0x80;
constexpr std::uint8_t ContinueBit = 0x40;
constexpr std::uint8_t StageMask = 0x03;
constexpr unsigned StageShift = 2;
constexpr std::uint8_t SecurityStage = 0;
constexpr std::uint8_t FullFeatureStage = 3;

constexpr std::string_view Md5Algorithm = "5";

std::uint8_t StageOf(std::uint8_t flags) {
    return static_cast<std::uint8_t>(flags >> StageShift) & StageMask;
}

std::size_t CountOf(const std::vector<TextKey>& keys, std::string_view key) {
    return static_cast<std::size_t>(std::ranges::count(keys, key, &TextKey::key));
}

// The value of a key that stands there just once.
std::optional<std::string_view> OnlyValueOf(const std::vector<TextKey>& keys,
                                            std::string_view key) {
    return CountOf(keys, key) == 1
               ? std::optional(std::ranges::find(keys, key, &TextKey::key)->value)
               : std::nullopt;
}

bool HasChapKey(const std::vector<TextKey>& keys) {
    return std::ranges::any_of(keys,
                               [](const TextKey& key) { return key.key.starts_with("CHAP_"); });
}

// An identifier of CHAP is one byte; "7" and "0x07" are both written.
std::optional<std::vector<std::uint8_t>> ParseIdentifier(std::string_view text) {
    if (text.starts_with("0x") || text.starts_with("0X")) {
        auto bytes = ParseBinaryValue(text);
        return bytes && bytes->size() == 1 ? bytes : std::nullopt;
    }
    std::uint8_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(std::vector{number}) : std::nullopt;
}

// What a digit of the base stands for; nothing where it is none.
std::optional<std::uint32_t> DigitOf(char character, bool isBase64) {
    constexpr std::string_view Base64 =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    constexpr std::string_view Base16 = "0123456789abcdef";
    const char digit = !isBase64 && character >= 'A' && character <= 'F'
                           ? static_cast<char>(character - 'A' + 'a')
                           : character;
    const auto place = (isBase64 ? Base64 : Base16).find(digit);
    return place == std::string_view::npos ? std::nullopt
                                           : std::optional(static_cast<std::uint32_t>(place));
}

}  // namespace

std::optional<std::vector<std::uint8_t>> ParseBinaryValue(std::string_view text) {
    const bool isBase64 = text.starts_with("0b") || text.starts_with("0B");
    if (!isBase64 && !text.starts_with("0x") && !text.starts_with("0X")) {
        return std::nullopt;
    }
    text.remove_prefix(2);
    const unsigned digitBits = isBase64 ? 6 : 4;
    while (isBase64 && text.ends_with('=')) {
        text.remove_suffix(1);
    }
    std::vector<std::uint8_t> bytes;
    std::uint32_t held = 0;
    // A first digit of base 16 that has no partner is a byte.
    unsigned bits = !isBase64 && text.size() % 2 == 1 ? digitBits : 0;
    for (const char character : text) {
        const auto digit = DigitOf(character, isBase64);
        if (!digit) {
            return std::nullopt;
        }
        held = (held << digitBits | *digit) & 0xFFFFU;
        bits += digitBits;
        if (bits >= 8) {
            bits -= 8;
            bytes.push_back(static_cast<std::uint8_t>(held >> bits & 0xFFU));
        }
    }
    return bytes;
}

void LoginExchange::TakeRequest(WireBytes pdu) {
    LoginRequest& request = request_.emplace();
    request.flags = FlagsOf(pdu);
    const auto keys = ParseTextKeys(DataOf(pdu, false));
    if (!keys) {
        return;
    }
    request.hasAlgorithm = CountOf(*keys, "CHAP_A") != 0;
    request.hasResponse = CountOf(*keys, "CHAP_R") != 0;
    if (const auto identifier = OnlyValueOf(*keys, "CHAP_I")) {
        request.identifier = ParseIdentifier(*identifier).value_or(request.identifier);
    }
    if (const auto challenge = OnlyValueOf(*keys, "CHAP_C")) {
        request.challenge = ParseBinaryValue(*challenge).value_or(request.challenge);
    }
}

// An answer stays in the stage of its request, and leaves it no further than that asks for.
LoginFault LoginExchange::TakeAnswer(WireBytes pdu) {
    if (pdu.size() < PduHeaderSize || OpcodeOf(pdu) != Opcode::LoginResponse ||
        pdu.size() < PduSize(pdu, false) || HasExtraHeader(pdu) || !request_ || isOver_) {
        return LoginFault::Invalid;
    }
    status_ = static_cast<std::uint16_t>(BigEndianAt(pdu, LoginStatusAt, 2));
    if (status_ != 0) {
        return LoginFault::ByStatus;
    }
    const std::uint8_t flags = FlagsOf(pdu);
    const bool isLeaving = (flags & TransitBit) != 0;
    const bool isAsked = StageOf(flags) == StageOf(request_->flags) &&
                         (!isLeaving || ((request_->flags & TransitBit) != 0 &&
                                         (flags & StageMask) == (request_->flags & StageMask)));
    const auto keys = ParseTextKeys(DataOf(pdu, false));
    if (isAsked && !isLeaving && (flags & ContinueBit) != 0) {
        return LoginFault::InPieces;
    }
    if ((flags & ContinueBit) != 0 || !isAsked || !keys) {
        return LoginFault::Invalid;
    }
    LoginFault fault = TakeDigests(*keys);
    if (fault == LoginFault::None && demands_.wantsChallenge) {
        fault = StageOf(flags) == SecurityStage ? TakeStep(*keys, isLeaving)
                : step_ == Step::Done           ? LoginFault::None
                                                : Missing();
    }
    isOver_ = isLeaving && (flags & StageMask) == FullFeatureStage;
    if (fault == LoginFault::None && isOver_ && demands_.wantsHeaderDigest && !isDigestAgreed_) {
        fault = LoginFault::NoHeaderDigest;
    }
    request_.reset();
    return fault;
}

LoginFault LoginExchange::TakeDigests(const Keys& keys) {
    for (const TextKey& key : keys) {
        if (key.key == "DataDigest" && key.value != "None") {
            return LoginFault::Invalid;
        }
        if (key.key == "HeaderDigest") {
            if (!demands_.wantsHeaderDigest && key.value != "None") {
                return LoginFault::Invalid;
            }
            if (demands_.wantsHeaderDigest && (isDigestAgreed_ || key.value != "CRC32C")) {
                return LoginFault::NoHeaderDigest;
            }
            isDigestAgreed_ = demands_.wantsHeaderDigest;
        }
    }
    return LoginFault::None;
}

LoginFault LoginExchange::TakeStep(const Keys& keys, bool isLeaving) {
    const auto method = OnlyValueOf(keys, "AuthMethod");
    switch (step_) {
        case Step::Method:
            if (method != "CHAP" || isLeaving || HasChapKey(keys)) {
                return Missing();
            }
            step_ = Step::Challenge;
            return LoginFault::None;
        case Step::Challenge: {
            const auto algorithm = OnlyValueOf(keys, "CHAP_A");
            if (algorithm && algorithm != Md5Algorithm) {
                return LoginFault::OtherAlgorithm;
            }
            const auto identifier = OnlyValueOf(keys, "CHAP_I");
            const auto challenge = OnlyValueOf(keys, "CHAP_C");
            if (!request_->hasAlgorithm || !algorithm || isLeaving || !identifier ||
                !ParseIdentifier(*identifier) || !challenge ||
                ParseBinaryValue(*challenge).value_or(std::vector<std::uint8_t>()).empty() ||
                CountOf(keys, "CHAP_R") != 0 || CountOf(keys, "CHAP_N") != 0) {
                return Missing();
            }
            step_ = Step::Proof;
            return LoginFault::None;
        }
        case Step::Proof:
            if (!request_->hasResponse || (demands_.wantsProof && !IsProof(keys))) {
                return Missing();
            }
            step_ = Step::Done;
            return LoginFault::None;
        case Step::Done:
            return HasChapKey(keys) ? Missing() : LoginFault::None;
    }
    return LoginFault::Invalid;
}

// The answer to the challenge that the request posed, made with the secret of the name that it has.
bool LoginExchange::IsProof(const Keys& keys) const {
    const auto name = OnlyValueOf(keys, "CHAP_N");
    const auto response = OnlyValueOf(keys, "CHAP_R");
    if (demands_.proverSecret.empty() || name != demands_.proverName || !response ||
        request_->identifier.size() != 1 || request_->challenge.empty()) {
        return false;
    }
    std::string text;
    text.reserve(1 + demands_.proverSecret.size() + request_->challenge.size());
    const WipeAtEnd wipe(text);
    text.append(request_->identifier.begin(), request_->identifier.end());
    text.append(demands_.proverSecret);
    text.append(request_->challenge.begin(), request_->challenge.end());
    const Md5Digest expected =
        Md5({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    const auto told = ParseBinaryValue(*response);
    return told && std::ranges::equal(*told, expected);
}

LoginFault LoginExchange::Missing() const {
    return demands_.wantsProof ? LoginFault::NotProven : LoginFault::NotChallenged;
}

LoginFault LoginExchange::FaultAtEnd() const {
    if (demands_.wantsChallenge && step_ != Step::Done) {
        return Missing();
    }
    return isOver_ ? LoginFault::None : LoginFault::Invalid;
}

}  // namespace tavrolinux
