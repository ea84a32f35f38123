#pragma once

#include <functional>
#include <utility>

#include "library/calls/outcome.h"

namespace tavrolinux {

// What was asked of the initiator did not come about, as the refusal that says why.
class IscsiFailure {
  public:
    explicit IscsiFailure(tavrolib::Outcome refusal) : refusal_(std::move(refusal)) {}
    const tavrolib::Outcome& Refusal() const { return refusal_; }

  private:
    tavrolib::Outcome refusal_;
};

// What comes of the work; where it fails so, the refusal.
inline tavrolib::Outcome WithRefusals(const std::function<tavrolib::Outcome()>& work) {
    try {
        return work();
    } catch (const IscsiFailure& failure) {
        return failure.Refusal();
    }
}

}  // namespace tavrolinux
