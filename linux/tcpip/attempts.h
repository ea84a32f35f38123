#pragma once

#include <exception>
#include <functional>
#include <string>
#include <vector>

namespace tavrolinux {

// Does one step of several.
using DoStep = std::function<void(const std::function<void()>&)>;

// Does the step, so that the first one that fails is the last.
inline void DoOrThrow(const std::function<void()>& step) {
    step();
}

// Does steps of which each is tried, whatever has become of the others.
class Attempts {
  public:
    void operator()(const std::function<void()>& step) {
        try {
            step();
        } catch (const std::exception& failure) {
            failures_.emplace_back(failure.what());
        }
    }

    // What became of those that failed.
    const std::vector<std::string>& Failures() const { return failures_; }

  private:
    std::vector<std::string> failures_;
};

}  // namespace tavrolinux
