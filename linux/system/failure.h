#pragma once

#include <cerrno>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

namespace tavrolinux {

// The right that an action needs, by the system's name of the capability.
inline constexpr const char* NetworkRight = "CAP_NET_ADMIN";
inline constexpr const char* FileRight = "CAP_DAC_OVERRIDE";
inline constexpr const char* RawSocketRight = "CAP_NET_RAW";

// The system did not do what it was asked to. The provider turns it into a refusal: one that names
// the right where that is what is missing.
class SystemFailure : public std::runtime_error {
  public:
    // `error` is the system's error number; `action` says what was tried ("setting the MTU of
    // eth0"); `right` is what the action needs; `reason` is what the kernel itself said about it,
    // where it said something.
    SystemFailure(int error, std::string action, std::string right = NetworkRight,
                  std::string reason = {})
        : std::runtime_error(action + ": " + std::generic_category().message(error)),
          error_(error),
          action_(std::move(action)),
          right_(std::move(right)),
          reason_(std::move(reason)) {}

    int Error() const { return error_; }
    const std::string& Action() const { return action_; }
    const std::string& Right() const { return right_; }
    const std::string& Reason() const { return reason_; }

    // The right is missing, unless the process has it: then it is nobody's.
    bool IsMissingRight() const { return error_ == EPERM || error_ == EACCES; }
    // The interface, or whatever was acted on, is not there any more.
    bool IsGone() const { return error_ == ENODEV || error_ == ENXIO; }
    // The driver or the kernel has no such feature.
    bool IsUnsupported() const { return error_ == EOPNOTSUPP || error_ == ENOSYS; }

  private:
    int error_;
    std::string action_;
    std::string right_;
    std::string reason_;
};

}  // namespace tavrolinux
