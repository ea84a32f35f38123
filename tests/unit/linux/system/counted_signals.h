#pragma once

#include <signal.h>  // NOLINT(modernize-deprecated-headers): signal actions are not the standard's

namespace tavrolinux {

// Counts the signals of one kind that act while it lives, instead of what they do otherwise. One at
// a time.
class CountedSignals {
  public:
    explicit CountedSignals(int signal) : signal_(signal) {
        seen = 0;
        struct sigaction counting {};
        counting.sa_handler = [](int /*signal*/) { seen = seen + 1; };
        sigaction(signal_, &counting, &former_);
    }
    ~CountedSignals() { sigaction(signal_, &former_, nullptr); }
    CountedSignals(const CountedSignals&) = delete;
    CountedSignals& operator=(const CountedSignals&) = delete;

    static int Seen() { return seen; }

  private:
    inline static volatile sig_atomic_t seen = 0;
    int signal_;
    struct sigaction former_ {};
};

}  // namespace tavrolinux
