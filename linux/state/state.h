#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "linux/state/wiped_login.h"
#include "linux/system/roots.h"

// What this library keeps of the machine between runs: where statistics were reset, the portals,
// and the logins that targets accepted. It lies in one file that only root can read.
namespace tavrolinux {

// A failure of the state's file, as a text for people.
class StateFailure {
  public:
    explicit StateFailure(std::wstring text) : text_(std::move(text)) {}
    const std::wstring& Text() const { return text_; }

  private:
    std::wstring text_;
};

// The number of an interface, and the kernel's number of the network (namespace) that it has it in.
struct InterfaceNumber {
    std::int32_t index = 0;
    std::uint32_t network = 0;

    bool operator==(const InterfaceNumber&) const = default;
};

// Where the counters of an interface stood when they were reset.
struct Baseline {
    InterfaceNumber number;
    std::string address;  // that the interface is called by: another can get the number after it
    std::map<std::string, std::uint64_t> counters;  // by their names
};

// A portal that the initiator of an interface knows, and how to log in to it.
struct KeptPortal {
    std::string address;
    std::uint16_t port = 0;
    WipedLogin login;
};

// A login that a target accepted, with all that it took: nothing of the initiator's own is added.
struct KeptLogin {
    std::string target;
    std::string address;
    std::uint16_t port = 0;
    WipedLogin login;
};

// What is kept of one interface, by its name.
struct InterfaceState {
    std::map<std::string, Baseline> baselines;  // by the counters' family, such as "ethernet"
    std::vector<KeptPortal> portals;
    std::vector<KeptLogin> logins;
};

struct State {
    std::string bootId;  // of the boot that the baselines belong to
    WipedLogin initiatorLogin;
    std::map<std::string, InterfaceState> interfaces;
};

class StateStore {
  public:
    explicit StateStore(Roots roots) : roots_(std::move(roots)) {}

    // What is kept; nothing but defaults where there is no file. Baselines of another boot are
    // left out. Throws StateFailure, and SystemFailure where only a right is missing.
    State Read() const;

    // Throws SystemFailure where this process may not change what is kept. Who first does what
    // cannot be taken back asks before that.
    void WantRightToChange() const;

    // Changes it under the lock and stores it; nothing is stored when `change` throws.
    void Change(const std::function<void(State&)>& change) const;

  private:
    Roots roots_;
};

}  // namespace tavrolinux
