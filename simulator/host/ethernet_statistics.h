#pragma once

#include <cstdint>
#include <tuple>

#include "simulator/host/member.h"

namespace tavrosim {

/// The counters of the port of an Ethernet function.
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

    static constexpr auto Members() {
        constexpr Presence Optional = Presence::Optional;
        return std::tuple{
            Member{"bytesSent", &EthernetCounters::bytesSent, Optional},
            Member{"bytesReceived", &EthernetCounters::bytesReceived, Optional},
            Member{"framesSent", &EthernetCounters::framesSent, Optional},
            Member{"framesReceived", &EthernetCounters::framesReceived, Optional},
            Member{"unicastFramesSent", &EthernetCounters::unicastFramesSent, Optional},
            Member{"unicastFramesReceived", &EthernetCounters::unicastFramesReceived, Optional},
            Member{"multicastFramesSent", &EthernetCounters::multicastFramesSent, Optional},
            Member{"multicastFramesReceived", &EthernetCounters::multicastFramesReceived, Optional},
            Member{"broadcastFramesSent", &EthernetCounters::broadcastFramesSent, Optional},
            Member{"broadcastFramesReceived", &EthernetCounters::broadcastFramesReceived, Optional},
            Member{"receiveErrors", &EthernetCounters::receiveErrors, Optional},
            Member{"checksumErrors", &EthernetCounters::checksumErrors, Optional},
            Member{"alignmentErrors", &EthernetCounters::alignmentErrors, Optional},
            Member{"shortFrames", &EthernetCounters::shortFrames, Optional},
            Member{"longFrames", &EthernetCounters::longFrames, Optional},
            Member{"fragments", &EthernetCounters::fragments, Optional},
            Member{"jabberFrames", &EthernetCounters::jabberFrames, Optional},
            Member{"framesWithoutBuffer", &EthernetCounters::framesWithoutBuffer, Optional},
            Member{"receivedFramesDropped", &EthernetCounters::receivedFramesDropped, Optional},
            Member{"transmitErrors", &EthernetCounters::transmitErrors, Optional},
            Member{"deferredFrames", &EthernetCounters::deferredFrames, Optional},
            Member{"lateCollisions", &EthernetCounters::lateCollisions, Optional},
            Member{"excessiveCollisions", &EthernetCounters::excessiveCollisions, Optional},
            Member{"singleCollisions", &EthernetCounters::singleCollisions, Optional},
            Member{"sentFramesDropped", &EthernetCounters::sentFramesDropped, Optional},
            Member{"pauseFramesSent", &EthernetCounters::pauseFramesSent, Optional},
            Member{"pauseFramesReceived", &EthernetCounters::pauseFramesReceived, Optional},
            Member{"priorityPauseFramesSent", &EthernetCounters::priorityPauseFramesSent, Optional},
            Member{"priorityPauseFramesReceived", &EthernetCounters::priorityPauseFramesReceived,
                   Optional}};
    }
};

/// What passes through a port that is up between two readings of its counters.
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

/// The counters as they stand, and what every reading adds to them afterwards.
struct EthernetStatistics {
    EthernetCounters counters;
    EthernetCounters traffic = UsualEthernetTraffic();

    static constexpr auto Members() {
        return std::tuple{Member{"counters", &EthernetStatistics::counters, Presence::Optional},
                          Member{"traffic", &EthernetStatistics::traffic, Presence::Optional}};
    }
};

}  // namespace tavrosim
