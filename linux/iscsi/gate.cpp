#include "linux/iscsi/gate.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "linux/system/failure.h"

namespace tavrolinux {
namespace {

// More than all requests of a session.
constexpr std::size_t LongestBacklog = std::size_t{1} << 20;
constexpr int Quietly = MSG_NOSIGNAL | MSG_DONTWAIT;
constexpr std::size_t ReadAtOnce = std::size_t{64} << 10;

bool IsForLater(int error) {
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

Descriptor DuplicateOf(int descriptor) {
    Descriptor duplicate(fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
    if (!duplicate) {
        throw SystemFailure(errno, "keeping a connection");
    }
    return duplicate;
}

// The end that stays, of a pair whose other end takes the place of the descriptor.
Descriptor PutInPlaceOf(int descriptor) {
    std::array<int, 2> ends{-1, -1};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        throw SystemFailure(errno, "keeping a connection");
    }
    Descriptor stays(ends[0]);
    const Descriptor given(ends[1]);
    if (dup3(given.Get(), descriptor, O_CLOEXEC) < 0) {
        throw SystemFailure(errno, "keeping a connection");
    }
    return stays;
}

}  // namespace

Gate::Gate(int descriptor) : outside_(DuplicateOf(descriptor)), inside_(PutInPlaceOf(descriptor)) {}

bool Gate::Send() {
    std::array<std::uint8_t, 4096> piece{};
    for (;;) {
        const ssize_t got = recv(inside_.Get(), piece.data(), piece.size(), MSG_DONTWAIT);
        if (got <= 0) {
            break;
        }
        toSend_.insert(toSend_.end(), piece.begin(), piece.begin() + got);
        if (keepsRequests_) {
            said_.insert(said_.end(), piece.begin(), piece.begin() + got);
        }
    }
    while (!toSend_.empty()) {
        const ssize_t sent = send(outside_.Get(), toSend_.data(), toSend_.size(), Quietly);
        if (sent < 0) {
            return IsForLater(errno) && toSend_.size() <= LongestBacklog;
        }
        toSend_.erase(toSend_.begin(), toSend_.begin() + sent);
    }
    return true;
}

void Gate::Wait(int milliseconds) const {
    const auto wanted = static_cast<short>(toSend_.empty() ? POLLIN : POLLIN | POLLOUT);
    pollfd waiting{outside_.Get(), wanted, 0};
    if (poll(&waiting, 1, milliseconds) < 0 && errno != EINTR) {
        throw SystemFailure(errno, "waiting for an answer");
    }
}

Gate::Arrival Gate::Read(bool hasDigest) {
    for (;;) {
        const std::size_t size =
            unit_.size() < PduHeaderSize ? PduHeaderSize : PduSize(unit_, hasDigest);
        if (unit_.size() >= PduHeaderSize && !isHeaderTold_) {
            isHeaderTold_ = true;
            return Arrival::Header;
        }
        if (unit_.size() == size) {
            return Arrival::Unit;
        }
        const std::size_t before = unit_.size();
        unit_.resize(before + std::min(size - before, ReadAtOnce));
        const ssize_t got =
            recv(outside_.Get(), unit_.data() + before, unit_.size() - before, MSG_DONTWAIT);
        const int error = errno;
        unit_.resize(before + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
        if (got == 0 || (got < 0 && !IsForLater(error))) {
            return Arrival::Ended;
        }
        if (got < 0) {
            return Arrival::Nothing;
        }
    }
}

bool Gate::HandOn() {
    while (handedOn_ < unit_.size()) {
        const ssize_t put =
            send(inside_.Get(), unit_.data() + handedOn_, unit_.size() - handedOn_, Quietly);
        if (put < 0) {
            return false;
        }
        handedOn_ += static_cast<std::size_t>(put);
    }
    Drop();
    return true;
}

void Gate::Drop() {
    unit_.clear();
    handedOn_ = 0;
    isHeaderTold_ = false;
}

void Gate::DropData() {
    unit_.resize(PduHeaderSize);
    SetNoData(unit_);
}

void Gate::Say(WireBytes request) {
    toSend_.insert(toSend_.end(), request.begin(), request.end());
}

std::vector<std::vector<std::uint8_t>> Gate::TakeRequests() {
    std::vector<std::vector<std::uint8_t>> requests;
    while (said_.size() >= PduHeaderSize && said_.size() >= PduSize(said_, false)) {
        const auto end = said_.begin() + static_cast<std::ptrdiff_t>(PduSize(said_, false));
        requests.emplace_back(said_.begin(), end);
        said_.erase(said_.begin(), end);
    }
    return requests;
}

void Gate::ForgetRequests() {
    keepsRequests_ = false;
    said_.clear();
}

}  // namespace tavrolinux
