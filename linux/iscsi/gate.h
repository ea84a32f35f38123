#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "linux/iscsi/pdu.h"
#include "linux/system/descriptor.h"

namespace tavrolinux {

// Stands between libiscsi and the network, so that libiscsi sees nothing but what has been looked
// at, one unit at a time: it reads whatever is there as long as something is, and takes some units
// for what they are not.
class Gate {
  public:
    // Takes over the connected socket behind `descriptor`, and puts the gate in its place. Throws
    // SystemFailure.
    explicit Gate(int descriptor);

    // Takes in what libiscsi has said, and sends as much of it as the network takes. False when the
    // connection has ended, or the other side takes nothing while libiscsi says more and more.
    bool Send();

    // Waits so long for something to come, or for the network to take more. Throws SystemFailure.
    void Wait(int milliseconds) const;

    // Reads on towards one whole unit, and no further.
    enum class Arrival { Nothing, Header, Unit, Ended };
    Arrival Read(bool hasDigest);

    // What has come of it.
    WireBytes Unit() const { return unit_; }

    // Puts the unit, or what is left of it, where libiscsi reads; true when that was all of it.
    bool HandOn();
    // Leaves the unit out, or only its data, of one without a digest.
    void Drop();
    void DropData();

    // Has a request sent that libiscsi knows nothing of, with what it says next.
    void Say(WireBytes request);

    // The requests that libiscsi has made since they were last taken, one unit each.
    std::vector<std::vector<std::uint8_t>> TakeRequests();
    // From now on, none are kept.
    void ForgetRequests();

  private:
    Descriptor outside_;
    Descriptor inside_;
    std::vector<std::uint8_t> toSend_;
    std::vector<std::uint8_t> said_;
    std::vector<std::uint8_t> unit_;
    std::size_t handedOn_ = 0;
    bool isHeaderTold_ = false;
    bool keepsRequests_ = true;
};

}  // namespace tavrolinux
