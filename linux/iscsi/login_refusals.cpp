#include "linux/iscsi/login_refusals.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

#include "library/text/text.h"
#include "linux/messages/error_texts.h"

namespace tavrolinux {
namespace {

using tavrolib::Outcome;
using tavrolib::Status;
using tavrolib::WideFromUtf8;

// What the statuses of a login say. Those that are not listed are told by their number.
struct LoginStatusRow {
    std::uint16_t code = 0;
    Status status = Status::Done;
    ErrorText message;
    ErrorText action;
};
constexpr ErrorText SeeTargets = L"Run the command with \"-target -listall\" to see the targets.";
constexpr ErrorText MayNotEnter = L"The target does not let this initiator in.";
constexpr ErrorText NoSuchTarget = L"There is no such target at this portal.";
constexpr ErrorText HasMoved = L"The target has moved to another portal.";
constexpr ErrorText TryLater = L"Try again later, or see what the target's own log says.";
constexpr std::array LoginStatuses{
    LoginStatusRow{0x0101, Status::TargetUnreachable, HasMoved, SeeTargets},
    LoginStatusRow{0x0102, Status::TargetUnreachable, HasMoved, SeeTargets},
    LoginStatusRow{0x0201, Status::LoginRefused,
                   L"The target does not accept the CHAP names and secrets.",
                   L"Log in with the names and secrets that are set up at the target."},
    LoginStatusRow{0x0202, Status::LoginRefused, MayNotEnter,
                   L"Let the initiator's name in at the target."},
    LoginStatusRow{0x0203, Status::UnknownIscsiTarget, NoSuchTarget, SeeTargets},
    LoginStatusRow{0x0204, Status::UnknownIscsiTarget, NoSuchTarget, SeeTargets},
    LoginStatusRow{0x0300, Status::LoginRefused, L"The target cannot take logins now.", TryLater},
    LoginStatusRow{0x0301, Status::LoginRefused, L"The target cannot take logins now.", TryLater},
    LoginStatusRow{0x0302, Status::LoginRefused, L"The target cannot take logins now.", TryLater},
};

constexpr ErrorText CheckPortal =
    L"Check that the address and the port number are those of a target portal.";

std::wstring DetailsOf(const Portal& portal, const std::string& more) {
    const std::string details = "portal " + TextOf(portal);
    return WideFromUtf8(more.empty() ? details : details + ", " + more);
}

std::wstring DetailsOfTarget(const Portal& portal, const std::string& target) {
    return target.empty() ? DetailsOf(portal, {})
                          : L"target " + tavrolib::Quoted(target) + L", " + DetailsOf(portal, {});
}

std::wstring StatusText(std::uint16_t status) {
    constexpr std::size_t Digits = 4;
    std::array<char, Digits> text{'0', '0', '0', '0'};
    std::array<char, Digits> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + Digits, status, 16).ptr;
    std::copy(digits.data(), end, text.end() - (end - digits.data()));
    return L", login status 0x" + std::wstring(text.begin(), text.end());
}

}  // namespace

Outcome Unreachable(const Portal& portal, const std::string& reason) {
    return Refused(Status::TargetUnreachable, L"No service takes connections at this portal.",
                   L"Check the address, the port number, the cabling and the TCP/IP settings.",
                   DetailsOf(portal, reason));
}

Outcome Silent(const Portal& portal, const std::string& step) {
    return Refused(Status::ServerSilent, L"No reply came in time.", CheckPortal,
                   DetailsOf(portal, step));
}

Outcome Invalid(const Portal& portal, const std::string& step) {
    return Refused(Status::AnswerInvalid, L"What replies there does not speak iSCSI.", CheckPortal,
                   DetailsOf(portal, step));
}

Outcome ConnectionEnded(const Portal& portal, const std::string& step) {
    return Refused(Status::AnswerInvalid, L"The other side ended the connection.", CheckPortal,
                   DetailsOf(portal, step));
}

Outcome LoginRefusal(const Portal& portal, const std::string& target, std::uint16_t status) {
    const std::wstring details = DetailsOfTarget(portal, target) + StatusText(status);
    const auto* const row = std::ranges::find(LoginStatuses, status, &LoginStatusRow::code);
    return row != LoginStatuses.end()
               ? Refused(row->status, row->message, row->action, details)
               : Refused(Status::LoginRefused, L"The target refuses the login.",
                         L"See what the target's own log says.", details);
}

Outcome TargetNotProven(const Portal& portal, const std::string& target) {
    return Refused(Status::LoginRefused,
                   L"The target does not prove who it is with the initiator CHAP name and secret.",
                   L"Log in with the names and secrets that are set up at the target.",
                   DetailsOfTarget(portal, target));
}

Outcome NotChallenged(const Portal& portal, const std::string& target) {
    return Refused(Status::ChapNotAsked, L"The target lets the initiator in without CHAP.",
                   L"Set up CHAP at the target, or log in without it.",
                   DetailsOfTarget(portal, target));
}

Outcome UnknownAlgorithm(const Portal& portal, const std::string& target) {
    return Refused(Status::LoginRefused, L"The target wants CHAP with another algorithm than MD5.",
                   L"Set up CHAP with MD5 at the target.", DetailsOfTarget(portal, target));
}

Outcome HeaderDigestRefused(const Portal& portal, const std::string& target) {
    return Refused(Status::LoginRefused, L"The target does not use header digests.",
                   L"Log in without \"-hd\", or set up header digests at the target.",
                   DetailsOfTarget(portal, target));
}

Outcome LoginInPieces(const Portal& portal, const std::string& target) {
    return Refused(Status::NotOffered, L"The target replies to the login in several pieces.",
                   L"Set up the target so that it replies in one piece.",
                   DetailsOfTarget(portal, target));
}

Outcome InterfaceUnusable(const std::string& interface) {
    return Refused(Status::NotOffered,
                   L"An interface with a comma in its name cannot carry iSCSI connections.",
                   L"Give the interface another name.",
                   L"interface " + tavrolib::Quoted(interface));
}

std::string ByteText(std::uint8_t byte) {
    constexpr std::string_view Digits = "0123456789abcdef";
    return {'0', 'x', Digits[byte >> 4U], Digits[byte & 0xFU]};
}

std::string ScsiReason(std::uint8_t status, std::uint8_t senseKey) {
    const std::string reason = "SCSI status " + ByteText(status);
    return senseKey == 0 ? reason : reason + ", sense key " + ByteText(senseKey);
}

Outcome RequestRefused(const Portal& portal, const std::string& step, const std::string& reason) {
    return Refused(Status::TargetRefused, L"The target refuses the request.",
                   L"Try again later, or see what the target's own log says.",
                   DetailsOf(portal, step + ", " + reason));
}

Outcome TellsTooMuch(const Portal& portal, const std::string& limit) {
    return Refused(Status::TargetRefused, L"The target has more to tell than this host reads.",
                   L"Let the initiator see less at the target.",
                   DetailsOf(portal, "at most " + limit));
}

}  // namespace tavrolinux
