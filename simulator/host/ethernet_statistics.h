#pragma once

#include <cstdint>

#include "simulator/host/member.h"

namespace tavrosim {

// The counters of the port of an Ethernet function.
struct EthernetCounters {
    std::uint64_t bytesSent = 0;
    std::uint64_t bytesReceived = 0;
    std::uint64_t framesSent = 0;
    std::uint64_t framesReceived = 0;
    std::uint64_t unicastFramesSent = 0;
    std::uint64_t unicastFramesReceived = 0;
    std::uint64_t multicastFramesSent = 0;
    std::uint64_t multicastFramesReceived = 0;
    std::uint64_t broadcastFramesSent = 0;
    std::uint64_t broadcastFramesReceived = 0;
    std::uint64_t receiveErrors = 0;
    std::uint64_t checksumErrors = 0;
    std::uint64_t alignmentErrors = 0;
    std::uint64_t shortFrames = 0;
    std::uint64_t longFrames = 0;
    std::uint64_t fragments = 0;
    std::uint64_t jabberFrames = 0;
    std::uint64_t framesWithoutBuffer = 0;
    std::uint64_t receivedFramesDropped = 0;
    std::uint64_t transmitErrors = 0;
    std::uint64_t deferredFrames = 0;
    std::uint64_t lateCollisions = 0;
    std::uint64_t excessiveCollisions = 0;
    std::uint64_t singleCollisions = 0;
    std::uint64_t sentFramesDropped = 0;
    std::uint64_t pauseFramesSent = 0;
    std::uint64_t pauseFramesReceived = 0;
    std::uint64_t priorityPauseFramesSent = 0;
    std::uint64_t priorityPauseFramesReceived = 0;

    static constexpr auto Members(auto visit) {
        return visit(
            Member{"bytesSent", &EthernetCounters::bytesSent},
            Member{"bytesReceived", &EthernetCounters::bytesReceived},
            Member{"framesSent", &EthernetCounters::framesSent},
            Member{"framesReceived", &EthernetCounters::framesReceived},
            Member{"unicastFramesSent", &EthernetCounters::unicastFramesSent},
            Member{"unicastFramesReceived", &EthernetCounters::unicastFramesReceived},
            Member{"multicastFramesSent", &EthernetCounters::multicastFramesSent},
            Member{"multicastFramesReceived", &EthernetCounters::multicastFramesReceived},
            Member{"broadcastFramesSent", &EthernetCounters::broadcastFramesSent},
            Member{"broadcastFramesReceived", &EthernetCounters::broadcastFramesReceived},
            Member{"receiveErrors", &EthernetCounters::receiveErrors},
            Member{"checksumErrors", &EthernetCounters::checksumErrors},
            Member{"alignmentErrors", &EthernetCounters::alignmentErrors},
            Member{"shortFrames", &EthernetCounters::shortFrames},
            Member{"longFrames", &EthernetCounters::longFrames},
            Member{"fragments", &EthernetCounters::fragments},
            Member{"jabberFrames", &EthernetCounters::jabberFrames},
            Member{"framesWithoutBuffer", &EthernetCounters::framesWithoutBuffer},
            Member{"receivedFramesDropped", &EthernetCounters::receivedFramesDropped},
            Member{"transmitErrors", &EthernetCounters::transmitErrors},
            Member{"deferredFrames", &EthernetCounters::deferredFrames},
            Member{"lateCollisions", &EthernetCounters::lateCollisions},
            Member{"excessiveCollisions", &EthernetCounters::excessiveCollisions},
            Member{"singleCollisions", &EthernetCounters::singleCollisions},
            Member{"sentFramesDropped", &EthernetCounters::sentFramesDropped},
            Member{"pauseFramesSent", &EthernetCounters::pauseFramesSent},
            Member{"pauseFramesReceived", &EthernetCounters::pauseFramesReceived},
            Member{"priorityPauseFramesSent", &EthernetCounters::priorityPauseFramesSent},
            Member{"priorityPauseFramesReceived", &EthernetCounters::priorityPauseFramesReceived});
    }
};

// What passes through a port that is up between two readings of its counters.
constexpr EthernetCounters UsualEthernetTraffic() {
    EthernetCounters traffic;
    traffic.bytesSent = 18900;
    traffic.bytesReceived = 316800;
    traffic.framesSent = 126;
    traffic.framesReceived = 264;
    traffic.unicastFramesSent = 120;
    traffic.unicastFramesReceived = 240;
    traffic.multicastFramesSent = 4;
    traffic.multicastFramesReceived = 9;
    traffic.broadcastFramesSent = 2;
    traffic.broadcastFramesReceived = 15;
    traffic.pauseFramesSent = 1;
    traffic.pauseFramesReceived = 3;
    return traffic;
}

// The counters as they stand, and what every reading adds to them afterwards.
struct EthernetStatistics {
    EthernetCounters counters;
    EthernetCounters traffic = UsualEthernetTraffic();

    static constexpr auto Members(auto visit) {
        return visit(Member{"counters", &EthernetStatistics::counters},
                     Member{"traffic", &EthernetStatistics::traffic});
    }
};

}  // namespace tavrosim
