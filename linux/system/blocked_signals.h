#pragma once

#include <pthread.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): signal masks are not the standard's

#include <initializer_list>

namespace tavrolinux {

// Keeps signals from this thread while it lives, so that steps which belong together are not cut
// short. Those that came in the meantime act when it goes. The thread's own faults still do at
// once.
class BlockedSignals {
  public:
    BlockedSignals() {
        sigset_t blocked;
        sigfillset(&blocked);
        for (const int fault : {SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV, SIGSYS, SIGTRAP}) {
            sigdelset(&blocked, fault);
        }
        pthread_sigmask(SIG_BLOCK, &blocked, &former_);
    }
    ~BlockedSignals() { pthread_sigmask(SIG_SETMASK, &former_, nullptr); }
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;

  private:
    sigset_t former_{};
};

}  // namespace tavrolinux
