#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "linux/netlink/links.h"
#include "linux/netlink/socket.h"

// The door to what drivers tell of their devices and let be set: the family "ethtool" of generic
// netlink. The doors to single subjects stand on it.
namespace tavrolinux {

// What is asked about or set.
struct EthtoolSubject {
    std::uint8_t read = 0;   // the number of the message that reads it
    std::uint8_t write = 0;  // and of the one that sets it; 0 where it cannot be set
    int header = 0;          // the attribute that names the interface
    const char* name = "";   // for people: "the link modes"
};

// Whether a driver that fails with the error has no such thing, or none as long as the interface is
// as it is; every other failure tells nothing of the device.
bool IsLacking(int error, const Link& link);

class Ethtool {
  public:
    // Connects to the kernel. Throws SystemFailure. A kernel without the family is taken for one
    // whose drivers tell nothing.
    Ethtool();

    // Hands `take` every attribute of what the driver tells; false where the device has no such
    // thing, or does not tell it as it is now. `flags` are those of the header, `put` adds to the
    // request. Throws SystemFailure where a right is missing, or it could not be asked.
    bool Read(const EthtoolSubject& subject, const Link& link,
              const std::function<void(int, const nlattr&)>& take, std::uint32_t flags = 0,
              const std::function<void(Message&)>& put = {});

    // Sets what `put` puts into the request. Throws SystemFailure with the driver's reason.
    void Write(const EthtoolSubject& subject, const Link& link,
               const std::function<void(Message&)>& put);

  private:
    Message NewRequest(std::uint8_t command, int header, const Link& link, std::uint32_t flags);

    Socket socket_;
    int family_ = 0;  // the number that the kernel gave it; 0 where it has none
};

// Bits that are told by their names. Where a mask tells which of them there are, all of these are
// here, and whether they are set; without one, those that are set.
using NamedBits = std::map<std::string, bool, std::less<>>;

// The bits of an attribute that is a set of them.
NamedBits BitsOf(const nlattr& attribute);

// Puts a set that changes these bits and leaves all others as they are.
void PutBits(Message& message, int attribute, const NamedBits& bits);

}  // namespace tavrolinux
