#include "linux/iscsi/connection.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <new>
#include <system_error>

#include <iscsi/iscsi.h>
#include <iscsi/scsi-lowlevel.h>

#include "linux/iscsi/local_address.h"
#include "linux/iscsi/login.h"
#include "linux/iscsi/login_answer.h"
#include "linux/iscsi/login_refusals.h"
#include "linux/iscsi/quiet_pipe.h"
#include "linux/iscsi/wait.h"
#include "linux/system/failure.h"

namespace tavrolinux {
namespace {

using tavroapi::LoginOptions;

constexpr const char* UsesDigest = "CRC32C";

void LogNothing(int /*level*/, const char* /*message*/) {}

std::string SystemText(int error) {
    return std::generic_category().message(error);
}

bool WantsProof(const LoginOptions& login) {
    return login.authentication == MutualChap;
}

// The names and secrets as libiscsi keeps them are overwritten to their last byte.
void OverwriteSecrets(iscsi_context* context) {
    const std::string blanks(MAX_STRING_SIZE, ' ');
    iscsi_set_initiator_username_pwd(context, blanks.c_str(), blanks.c_str());
    iscsi_set_target_username_pwd(context, blanks.c_str(), blanks.c_str());
}

}  // namespace

Session::Connection::Connection(const SessionPlan& plan, const LoginOptions& login)
    : portal_(plan.portal),
      target_(plan.target),
      context_(iscsi_create_context(plan.initiator.c_str()), &iscsi_destroy_context) {
    if (!context_) {
        throw std::bad_alloc();
    }
    const QuietPipe quiet;
    Configure(plan, login);
    Connect();
    LogIn(login);
}

Session::Connection::~Connection() {
    const QuietPipe quiet;
    OverwriteSecrets(context_.get());
    context_.reset();
}

void Session::Connection::Configure(const SessionPlan& plan, const LoginOptions& login) {
    iscsi_context* const context = context_.get();
    iscsi_set_log_level(context, 0);
    iscsi_set_log_fn(context, &LogNothing);
    iscsi_set_noautoreconnect(context, 1);
    iscsi_set_reconnect_max_retries(context, 0);
    if (!IsAddressOfThisHost(portal_.address)) {
        bound_ = plan.interface;
        iscsi_set_bind_interfaces(context, bound_.data());
    }
    if (target_.empty()) {
        iscsi_set_session_type(context, ISCSI_SESSION_DISCOVERY);
    } else {
        iscsi_set_session_type(context, ISCSI_SESSION_NORMAL);
        iscsi_set_targetname(context, target_.c_str());
        iscsi_set_header_digest(context, login.headerDigest == UsesDigest
                                             ? ISCSI_HEADER_DIGEST_CRC32C
                                             : ISCSI_HEADER_DIGEST_NONE);
        iscsi_set_immediate_data(
            context, plan.wantsImmediateData ? ISCSI_IMMEDIATE_DATA_YES : ISCSI_IMMEDIATE_DATA_NO);
    }
    if (login.authentication == OneWayChap || login.authentication == MutualChap) {
        iscsi_set_initiator_username_pwd(context, login.targetChapName.c_str(),
                                         login.targetSecret.c_str());
    }
    if (WantsProof(login)) {
        iscsi_set_target_username_pwd(context, login.initiatorChapName.c_str(),
                                      login.initiatorSecret.c_str());
    }
}

void Session::Connection::OnDone(iscsi_context* /*context*/, int status, void* /*data*/,
                                 void* progress) {
    auto& step = *static_cast<Progress*>(progress);
    step.isDone = true;
    step.status = status;
}

void Session::Connection::OnDiscovered(iscsi_context* context, int status, void* data,
                                       void* progress) {
    OnDone(context, status, data, progress);
    if (status != SCSI_STATUS_GOOD) {
        return;
    }
    auto& targets = static_cast<Progress*>(progress)->discovered;
    for (const auto* told = static_cast<const iscsi_discovery_address*>(data); told != nullptr;
         told = told->next) {
        DiscoveredTarget& target = targets.emplace_back();
        target.name = told->target_name;
        for (const auto* portal = told->portals; portal != nullptr; portal = portal->next) {
            if (auto announced = ParseAnnouncedPortal(portal->portal)) {
                target.portals.push_back(std::move(*announced));
            }
        }
    }
}

void Session::Connection::Connect() {
    progress_ = {};
    if (iscsi_connect_async(context_.get(), TextOf(portal_).c_str(), &OnDone, &progress_) != 0) {
        throw IscsiFailure(Unreachable(portal_, iscsi_get_error(context_.get())));
    }
    WantBound();
    Await(Stage::Connecting, "connecting");
    if (progress_.status != SCSI_STATUS_GOOD) {
        throw IscsiFailure(Unreachable(portal_, iscsi_get_error(context_.get())));
    }
}

// libiscsi goes on where it may not bind the connection to the interface.
void Session::Connection::WantBound() const {
    std::array<char, MAX_STRING_SIZE> name{};
    socklen_t size = name.size() - 1;
    if (!bound_.empty() && (getsockopt(iscsi_get_fd(context_.get()), SOL_SOCKET, SO_BINDTODEVICE,
                                       name.data(), &size) != 0 ||
                            bound_ != name.data())) {
        throw SystemFailure(EPERM, "connecting through " + bound_, RawSocketRight);
    }
}

void Session::Connection::LogIn(const LoginOptions& login) {
    progress_ = {};
    if (iscsi_login_async(context_.get(), &OnDone, &progress_) != 0) {
        throw IscsiFailure(ConnectionEnded(portal_, "logging in"));
    }
    Await(Stage::LoggingIn, "logging in");
    // What libiscsi refuses by itself is the target's proof, or an answer that makes no sense.
    const bool isDone = progress_.status == SCSI_STATUS_GOOD;
    if (WantsProof(login) && (!isDone || !isProven_)) {
        throw IscsiFailure(TargetNotProven(portal_, target_));
    }
    if (!isDone) {
        throw IscsiFailure(Invalid(portal_, "logging in"));
    }
}

void Session::Connection::Await(Stage stage, const std::string& step) {
    const auto deadline = WaitClock::now() + StepLimit;
    iscsi_context* const context = context_.get();
    const int descriptor = iscsi_get_fd(context);
    while (!progress_.isDone) {
        const int left = MillisecondsUntil(deadline);
        if (left == 0) {
            throw IscsiFailure(Silent(portal_, step));
        }
        const auto wanted = static_cast<short>(iscsi_which_events(context) | POLLRDHUP);
        pollfd waiting{descriptor, wanted, 0};
        const int ready = poll(&waiting, 1, left);
        if (ready < 0 && errno != EINTR) {
            throw SystemFailure(errno, "waiting for " + TextOf(portal_));
        }
        if (ready <= 0) {
            continue;
        }
        if (stage == Stage::Connecting && (waiting.revents & (POLLERR | POLLHUP)) != 0) {
            int error = 0;
            socklen_t size = sizeof error;
            getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &size);
            throw IscsiFailure(Unreachable(portal_, SystemText(error)));
        }
        const bool isEnded = (waiting.revents & (POLLRDHUP | POLLHUP | POLLERR)) != 0;
        if (stage == Stage::LoggingIn && (waiting.revents & (POLLIN | POLLRDHUP)) != 0 &&
            !TakeLoginAnswer(descriptor, isEnded, step)) {
            poll(nullptr, 0, 1);
            continue;
        }
        const auto events = static_cast<short>(waiting.revents & ~POLLRDHUP);
        const bool isServed = iscsi_service(context, events) == 0;
        if (progress_.isDone) {
            return;
        }
        if (!isServed || iscsi_get_fd(context) != descriptor) {
            throw IscsiFailure(isEnded ? ConnectionEnded(portal_, step) : Invalid(portal_, step));
        }
    }
}

bool Session::Connection::TakeLoginAnswer(int descriptor, bool isEnded, const std::string& step) {
    int available = 0;
    ioctl(descriptor, FIONREAD, &available);
    constexpr int Header = 48;
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(std::clamp(available, 0, Header)));
    const auto peek = [&] {
        const ssize_t got = recv(descriptor, bytes.data(), bytes.size(), MSG_PEEK | MSG_DONTWAIT);
        bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    };
    peek();
    const auto size = LoginAnswerSize(bytes);
    if (!size) {
        throw IscsiFailure(Invalid(portal_, step));
    }
    if (*size == 0 || *size > static_cast<std::size_t>(available)) {
        if (isEnded) {
            throw IscsiFailure(ConnectionEnded(portal_, step));
        }
        return false;
    }
    bytes.resize(*size);
    peek();
    const LoginAnswer answer = ParseLoginAnswer(bytes);
    if (answer.status != 0) {
        throw IscsiFailure(LoginRefusal(portal_, target_, answer.status));
    }
    isProven_ |= answer.provesTarget;
    return true;
}

std::vector<DiscoveredTarget> Session::Connection::Discover() {
    const QuietPipe quiet;
    const std::string step = "discovering targets";
    progress_ = {};
    if (iscsi_discovery_async(context_.get(), &OnDiscovered, &progress_) != 0) {
        throw IscsiFailure(ConnectionEnded(portal_, step));
    }
    Await(Stage::LoggedIn, step);
    if (progress_.status != SCSI_STATUS_GOOD) {
        throw IscsiFailure(Invalid(portal_, step));
    }
    std::ranges::sort(progress_.discovered, {}, &DiscoveredTarget::name);
    return std::move(progress_.discovered);
}

CommandAnswer Session::Connection::Command(const BeginCommand& begin) {
    const QuietPipe quiet;
    const std::string step = "asking for the LUNs";
    progress_ = {};
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
    Await(Stage::LoggedIn, step);
    if (progress_.status == SCSI_STATUS_ERROR || progress_.status == SCSI_STATUS_CANCELLED ||
        progress_.status == SCSI_STATUS_TIMEOUT) {
        throw IscsiFailure(ConnectionEnded(portal_, step));
    }
    CommandAnswer answer;
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
    Await(Stage::LoggedIn, step);
}

}  // namespace tavrolinux
