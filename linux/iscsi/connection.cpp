#include "linux/iscsi/connection.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <new>
#include <system_error>
#include <utility>

#include <iscsi/iscsi.h>
#include <iscsi/scsi-lowlevel.h>

#include "library/calls/refusals.h"
#include "linux/iscsi/local_address.h"
#include "linux/iscsi/login.h"
#include "linux/iscsi/login_refusals.h"
#include "linux/iscsi/quiet_pipe.h"
#include "linux/iscsi/scsi.h"
#include "linux/iscsi/send_targets.h"
#include "linux/netlink/addresses.h"
#include "linux/system/failure.h"

namespace tavrolinux {
namespace {

using tavroapi::LoginOptions;

constexpr const char* UsesDigest = "CRC32C";
constexpr std::size_t LongestText = std::size_t{1} << 20;
constexpr std::size_t LongestAside = std::size_t{64} << 10;  // whatever is not what was asked for

void LogNothing(int /*level*/, const char* /*message*/) {}

std::string SystemText(int error) {
    return std::generic_category().message(error);
}

LoginDemands DemandsOf(const LoginOptions& login, bool isDiscovery) {
    LoginDemands demands;
    demands.wantsProof = login.authentication == MutualChap;
    // With one-way CHAP it is the portal that has something to find out.
    demands.wantsChallenge =
        demands.wantsProof || (login.authentication == OneWayChap && !isDiscovery);
    demands.wantsHeaderDigest = login.headerDigest == UsesDigest && !isDiscovery;
    demands.proverName = login.initiatorChapName;
    demands.proverSecret = login.initiatorSecret;
    return demands;
}

}  // namespace

// The names and secrets as libiscsi keeps them are overwritten to their last byte.
void Session::Connection::Destroy::operator()(iscsi_context* context) const {
    const QuietPipe quiet;
    const std::string blanks(MAX_STRING_SIZE, ' ');
    iscsi_set_initiator_username_pwd(context, blanks.c_str(), blanks.c_str());
    iscsi_set_target_username_pwd(context, blanks.c_str(), blanks.c_str());
    iscsi_destroy_context(context);
}

Session::Connection::Connection(const SessionPlan& plan, const LoginOptions& login)
    : portal_(plan.portal),
      target_(plan.target),
      end_(plan.end),
      context_(iscsi_create_context(plan.initiator.c_str())) {
    if (!context_) {
        throw std::bad_alloc();
    }
    const QuietPipe quiet;
    Configure(plan, login);
    Connect();
    LogIn(login);
}

void Session::Connection::Configure(const SessionPlan& plan, const LoginOptions& login) {
    iscsi_context* const context = context_.get();
    iscsi_set_log_level(context, 0);
    iscsi_set_log_fn(context, &LogNothing);
    iscsi_set_noautoreconnect(context, 1);
    iscsi_set_reconnect_max_retries(context, 0);
    if (!IsAddressOfThisHost(portal_.address)) {
        BindTo(plan.interface);
    }
    const bool isDiscovery = target_.empty();
    const LoginDemands demands = DemandsOf(login, isDiscovery);
    iscsi_set_header_digest(
        context, demands.wantsHeaderDigest ? ISCSI_HEADER_DIGEST_CRC32C : ISCSI_HEADER_DIGEST_NONE);
    if (isDiscovery) {
        iscsi_set_session_type(context, ISCSI_SESSION_DISCOVERY);
    } else {
        iscsi_set_session_type(context, ISCSI_SESSION_NORMAL);
        iscsi_set_targetname(context, target_.c_str());
    }
    if (login.authentication == OneWayChap || login.authentication == MutualChap) {
        iscsi_set_initiator_username_pwd(context, login.targetChapName.c_str(),
                                         login.targetSecret.c_str());
    }
    if (demands.wantsProof) {
        iscsi_set_target_username_pwd(context, login.initiatorChapName.c_str(),
                                      login.initiatorSecret.c_str());
    }
}

// libiscsi binds to the interfaces of a list, and says nothing where the system does not let it.
void Session::Connection::BindTo(const std::string& interface) {
    if (interface.find(',') != std::string::npos) {
        throw IscsiFailure(InterfaceUnusable(interface));
    }
    const Descriptor tried(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!tried || setsockopt(tried.Get(), SOL_SOCKET, SO_BINDTODEVICE, interface.data(),
                             static_cast<socklen_t>(interface.size())) != 0) {
        throw SystemFailure(errno, "connecting through " + interface, RawSocketRight);
    }
    bound_ = interface;
    iscsi_set_bind_interfaces(context_.get(), bound_.data());
}

void Session::Connection::OnDone(iscsi_context* /*context*/, int status, void* /*data*/,
                                 void* progress) {
    auto& step = *static_cast<Progress*>(progress);
    step.isDone = true;
    step.status = status;
}

// Whatever is no address would be looked up as a name, for which there is no time limit.
void Session::Connection::Connect() {
    if (!IpAddressFrom(portal_.address)) {
        throw IscsiFailure(
            tavrolib::NotAnAddress(tavrolib::Status::TargetUnreachable, portal_.address));
    }
    progress_ = {};
    if (iscsi_connect_async(context_.get(), TextOf(portal_).c_str(), &OnDone, &progress_) != 0) {
        throw IscsiFailure(Unreachable(portal_, iscsi_get_error(context_.get())));
    }
    WantBound();
    descriptor_ = iscsi_get_fd(context_.get());
    const auto deadline = Deadline();
    for (short arrived = 0; arrived == 0;) {
        const int left = MillisecondsUntil(deadline);
        pollfd waiting{descriptor_, POLLOUT, 0};
        if (left == 0) {
            throw IscsiFailure(Silent(portal_, "connecting"));
        }
        if (poll(&waiting, 1, left) < 0 && errno != EINTR) {
            throw SystemFailure(errno, "waiting for " + TextOf(portal_));
        }
        arrived = waiting.revents;
    }
    int error = 0;
    socklen_t size = sizeof error;
    getsockopt(descriptor_, SOL_SOCKET, SO_ERROR, &error, &size);
    if (error == ECONNRESET) {
        throw IscsiFailure(ConnectionEnded(portal_, "connecting"));
    }
    if (error != 0) {
        throw IscsiFailure(Unreachable(portal_, SystemText(error)));
    }
    iscsi_service(context_.get(), POLLOUT);
    if (!progress_.isDone || progress_.status != SCSI_STATUS_GOOD ||
        iscsi_get_fd(context_.get()) != descriptor_) {
        throw IscsiFailure(Unreachable(portal_, iscsi_get_error(context_.get())));
    }
    gate_.emplace(descriptor_);
}

void Session::Connection::WantBound() const {
    std::array<char, MAX_STRING_SIZE> name{};
    socklen_t size = name.size() - 1;
    if (!bound_.empty() && (getsockopt(iscsi_get_fd(context_.get()), SOL_SOCKET, SO_BINDTODEVICE,
                                       name.data(), &size) != 0 ||
                            bound_ != name.data())) {
        throw SystemFailure(ENODEV, "connecting through " + bound_);
    }
}

void Session::Connection::LogIn(const LoginOptions& login) {
    const std::string step = "logging in";
    progress_ = {};
    const LoginDemands demands = DemandsOf(login, target_.empty());
    exchange_.emplace(demands);
    if (iscsi_login_async(context_.get(), &OnDone, &progress_) != 0) {
        throw IscsiFailure(ConnectionEnded(portal_, step));
    }
    Await(Stage::LoggingIn, step);
    const LoginFault fault = exchange_->FaultAtEnd();
    if (fault != LoginFault::None || progress_.status != SCSI_STATUS_GOOD) {
        Throw(fault == LoginFault::None ? LoginFault::Invalid : fault, step);
    }
    exchange_.reset();
    gate_->ForgetRequests();
    hasDigest_ = demands.wantsHeaderDigest;
}

void Session::Connection::Throw(LoginFault fault, const std::string& step) const {
    switch (fault) {
        case LoginFault::ByStatus:
            throw IscsiFailure(LoginRefusal(portal_, target_, exchange_->Status()));
        case LoginFault::NotChallenged:
            throw IscsiFailure(NotChallenged(portal_, target_));
        case LoginFault::NotProven:
            throw IscsiFailure(TargetNotProven(portal_, target_));
        case LoginFault::OtherAlgorithm:
            throw IscsiFailure(UnknownAlgorithm(portal_, target_));
        case LoginFault::InPieces:
            throw IscsiFailure(LoginInPieces(portal_, target_));
        case LoginFault::NoHeaderDigest:
            throw IscsiFailure(HeaderDigestRefused(portal_, target_));
        case LoginFault::None:
        case LoginFault::Invalid:
            break;
    }
    throw IscsiFailure(Invalid(portal_, step));
}

WaitClock::time_point Session::Connection::Deadline() const {
    return std::min(WaitClock::now() + StepLimit, end_);
}

void Session::Connection::Await(Stage stage, const std::string& step) {
    const auto deadline = Deadline();
    while (!progress_.isDone) {
        const int left = MillisecondsUntil(deadline);
        if (left == 0) {
            throw IscsiFailure(Silent(portal_, step));
        }
        SendRequests(step);
        switch (gate_->Read(hasDigest_)) {
            case Gate::Arrival::Nothing:
                Admit(stage, step);
                gate_->Wait(left);
                break;
            case Gate::Arrival::Ended:
                throw IscsiFailure(ConnectionEnded(portal_, step));
            case Gate::Arrival::Header:
                Admit(stage, step);
                break;
            case Gate::Arrival::Unit:
                if (!Take(step)) {
                    gate_->Drop();
                    break;
                }
                HandOn(step);
                break;
        }
    }
    SendRequests(step);
}

void Session::Connection::HandOn(const std::string& step) {
    for (bool isAll = false; !isAll;) {
        isAll = gate_->HandOn();
        Serve(POLLIN, step);
        if (!isAll && progress_.isDone) {
            throw IscsiFailure(Invalid(portal_, step));
        }
    }
}

void Session::Connection::Serve(short events, const std::string& step) {
    const bool isServed = iscsi_service(context_.get(), events) == 0;
    if (!progress_.isDone && (!isServed || iscsi_get_fd(context_.get()) != descriptor_)) {
        throw IscsiFailure(Invalid(portal_, step));
    }
}

void Session::Connection::SendRequests(const std::string& step) {
    if ((iscsi_which_events(context_.get()) & POLLOUT) != 0) {
        Serve(POLLOUT, step);
    }
    if (!gate_->Send()) {
        throw IscsiFailure(ConnectionEnded(portal_, step));
    }
    if (exchange_) {
        for (const auto& request : gate_->TakeRequests()) {
            exchange_->TakeRequest(request);
        }
    }
}

// What comes in each step besides what is asked for: signs of life, and messages to the initiator.
void Session::Connection::Admit(Stage stage, const std::string& step) {
    const WireBytes unit = gate_->Unit();
    if (unit.empty()) {
        return;
    }
    const Opcode opcode = OpcodeOf(unit);
    const bool isAside =
        stage != Stage::LoggingIn &&
        (opcode == Opcode::NopIn || opcode == Opcode::AsyncMessage || opcode == Opcode::Reject);
    const bool isAnswer = (stage == Stage::LoggingIn && opcode == Opcode::LoginResponse) ||
                          (stage == Stage::Discovering && opcode == Opcode::TextResponse) ||
                          (stage == Stage::Commanding &&
                           (opcode == Opcode::DataIn || opcode == Opcode::ScsiResponse)) ||
                          (stage == Stage::LoggingOut && opcode == Opcode::LogoutResponse);
    if (!isAside && !isAnswer) {
        throw IscsiFailure(Invalid(portal_, step));
    }
    if (unit.size() < PduHeaderSize) {
        return;
    }
    const bool isAsked = opcode == Opcode::DataIn || opcode == Opcode::TextResponse;
    const std::size_t most = isAsked ? progress_.dataLeft : LongestAside;
    if (opcode == Opcode::TextResponse && DataSizeOf(unit) > most) {
        throw IscsiFailure(TellsTooMuch(portal_, std::to_string(LongestText) + " bytes"));
    }
    if (HasExtraHeader(unit) || DataSizeOf(unit) > most ||
        (opcode == Opcode::NopIn && TaskTagOf(unit) != NoTask)) {
        throw IscsiFailure(Invalid(portal_, step));
    }
}

bool Session::Connection::Take(const std::string& step) {
    constexpr std::size_t EventAt = 36;
    constexpr std::uint8_t FirstEnd = 1;  // events that end the session or the connection
    constexpr std::uint8_t LastEnd = 4;
    const WireBytes unit = gate_->Unit();
    switch (OpcodeOf(unit)) {
        case Opcode::LoginResponse:
            TakeLoginAnswer(step);
            return true;
        case Opcode::TextResponse:
            return TakeText(step);
        case Opcode::DataIn:
            TakeData(step);
            return true;
        case Opcode::ScsiResponse:
            TakeStatus(step);
            return true;
        case Opcode::Reject:
            throw IscsiFailure(RequestRefused(portal_, step, "reject reason " + ByteText(unit[2])));
        case Opcode::AsyncMessage:
            if (unit[EventAt] >= FirstEnd && unit[EventAt] <= LastEnd) {
                throw IscsiFailure(ConnectionEnded(portal_, step));
            }
            return false;
        default:
            return true;
    }
}

void Session::Connection::TakeLoginAnswer(const std::string& step) {
    const LoginFault fault = exchange_->TakeAnswer(gate_->Unit());
    if (fault != LoginFault::None) {
        Throw(fault, step);
    }
}

// libiscsi knows no text in pieces: it gets the last one, without its data.
bool Session::Connection::TakeText(const std::string& step) {
    constexpr std::uint8_t FinalBit = 0x80;
    const WireBytes unit = gate_->Unit();
    const WireBytes data = DataOf(unit, hasDigest_);
    progress_.text.insert(progress_.text.end(), data.begin(), data.end());
    progress_.dataLeft -= data.size();
    if ((FlagsOf(unit) & FinalBit) == 0) {
        const auto request = RequestForRestOfText(unit);
        if (!request) {
            throw IscsiFailure(Invalid(portal_, step));
        }
        gate_->Say(*request);
        return false;
    }
    if (!ParseSendTargets(progress_.text)) {
        throw IscsiFailure(Invalid(portal_, step));
    }
    gate_->DropData();
    return true;
}

// Data can bring the status with it, but not the reason of a refusal.
void Session::Connection::TakeData(const std::string& step) {
    constexpr std::uint8_t StatusBit = 0x01;
    const WireBytes unit = gate_->Unit();
    progress_.dataLeft -= DataSizeOf(unit);
    if ((FlagsOf(unit) & StatusBit) != 0 && unit[3] != SCSI_STATUS_GOOD) {
        throw IscsiFailure(RequestRefused(portal_, step, ScsiReason(unit[3], 0)));
    }
}

// libiscsi reads the sense of a refusal without asking how long it is.
void Session::Connection::TakeStatus(const std::string& step) {
    const WireBytes unit = gate_->Unit();
    const std::uint8_t response = unit[2];
    const std::uint8_t status = unit[3];
    if (response != 0) {
        throw IscsiFailure(RequestRefused(portal_, step, "iSCSI response " + ByteText(response)));
    }
    if (status == SCSI_STATUS_CHECK_CONDITION) {
        const auto key = ParseSenseKey(DataOf(unit, hasDigest_));
        if (!key) {
            throw IscsiFailure(RequestRefused(portal_, step, ScsiReason(status, 0)));
        }
        progress_.senseKey = *key;
    }
}

std::vector<DiscoveredTarget> Session::Connection::Discover() {
    const QuietPipe quiet;
    const std::string step = "discovering targets";
    progress_ = {};
    progress_.dataLeft = LongestText;
    if (iscsi_discovery_async(context_.get(), &OnDone, &progress_) != 0) {
        throw IscsiFailure(ConnectionEnded(portal_, step));
    }
    Await(Stage::Discovering, step);
    auto targets = ParseSendTargets(progress_.text);
    if (progress_.status != SCSI_STATUS_GOOD || !targets) {
        throw IscsiFailure(Invalid(portal_, step));
    }
    if (targets->size() > MostTargets) {
        throw IscsiFailure(TellsTooMuch(portal_, std::to_string(MostTargets) + " targets"));
    }
    if (std::ranges::any_of(*targets, [](const DiscoveredTarget& target) {
            return target.portals.size() > MostPortals;
        })) {
        throw IscsiFailure(
            TellsTooMuch(portal_, std::to_string(MostPortals) + " portals of a target"));
    }
    std::ranges::sort(*targets, {}, &DiscoveredTarget::name);
    return std::move(*targets);
}

CommandAnswer Session::Connection::Command(std::size_t longest, const BeginCommand& begin) {
    const QuietPipe quiet;
    const std::string step = "asking for the LUNs";
    progress_ = {};
    progress_.dataLeft = longest;
    scsi_task* const begun = begin(context_.get(), &OnDone, &progress_);
    if (begun == nullptr) {
        throw IscsiFailure(ConnectionEnded(portal_, step));
    }
    // A command that is given up is taken back before its memory goes.
    const auto release = [this](scsi_task* task) {
        if (!progress_.isDone) {
            iscsi_scsi_cancel_task(context_.get(), task);
        }
        scsi_free_scsi_task(task);
    };
    const std::unique_ptr<scsi_task, decltype(release)> task(begun, release);
    Await(Stage::Commanding, step);
    if (progress_.status < 0 || progress_.status > 0xFF) {
        throw IscsiFailure(ConnectionEnded(portal_, step));
    }
    CommandAnswer answer;
    answer.status = static_cast<std::uint8_t>(progress_.status);
    answer.senseKey = progress_.senseKey;
    answer.isGood = progress_.status == SCSI_STATUS_GOOD;
    if (answer.isGood && task->datain.data != nullptr) {
        answer.bytes.assign(task->datain.data, task->datain.data + task->datain.size);
    }
    return answer;
}

void Session::Connection::LogOut() {
    const QuietPipe quiet;
    const std::string step = "logging out";
    progress_ = {};
    if (iscsi_logout_async(context_.get(), &OnDone, &progress_) != 0) {
        throw IscsiFailure(ConnectionEnded(portal_, step));
    }
    Await(Stage::LoggingOut, step);
}

}  // namespace tavrolinux
