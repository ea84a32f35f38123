#pragma once

#include <csignal>
#include <ctime>

namespace tavrolinux {

// Keeps this thread from the signal of writing to a connection that the other side has closed,
// which would end the process; the write itself still fails.
class QuietPipe {
  public:
    QuietPipe() {
        sigemptyset(&pipe_);
        sigaddset(&pipe_, SIGPIPE);
        sigset_t pending;
        sigpending(&pending);
        wasPending_ = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &pipe_, &before_);
    }
    ~QuietPipe() {
        const timespec now{};
        while (!wasPending_ && sigtimedwait(&pipe_, nullptr, &now) == SIGPIPE) {
        }
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    QuietPipe(const QuietPipe&) = delete;
    QuietPipe& operator=(const QuietPipe&) = delete;

  private:
    sigset_t pipe_{};
    sigset_t before_{};
    bool wasPending_ = false;
};

}  // namespace tavrolinux
