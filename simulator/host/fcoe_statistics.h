#pragma once

#include <cstdint>

#include "simulator/host/member.h"

namespace tavrosim {

// The counters of an FCoE function, in the order in which the library tells them.
struct FcoeStatistics {
    std::uint64_t secondsSinceReset = 0;
    std::uint64_t transmittedFrames = 0;
    std::uint64_t transmittedWords = 0;
    std::uint64_t receivedFrames = 0;
    std::uint64_t receivedWords = 0;
    std::uint64_t loopInitializations = 0;
    std::uint64_t notOperationalSequences = 0;
    std::uint64_t errorFrames = 0;
    std::uint64_t dumpedFrames = 0;
    std::uint64_t linkFailures = 0;
    std::uint64_t synchronizationLosses = 0;
    std::uint64_t signalLosses = 0;
    std::uint64_t protocolErrors = 0;
    std::uint64_t invalidWords = 0;
    std::uint64_t invalidCrcs = 0;
    std::uint64_t inputRequests = 0;
    std::uint64_t outputRequests = 0;
    std::uint64_t controlRequests = 0;
    std::uint64_t inputMegabytes = 0;
    std::uint64_t outputMegabytes = 0;
    std::uint64_t fipSolicitations = 0;
    std::uint64_t fipAdvertisements = 0;
    std::uint64_t missedFipAdvertisements = 0;
    std::uint64_t fabricLogins = 0;
    std::uint64_t rejectedFabricLogins = 0;
    std::uint64_t portLogins = 0;
    std::uint64_t abortedExchanges = 0;
    std::uint64_t timedOutRequests = 0;
    std::uint64_t queueFullConditions = 0;
    std::uint64_t virtualLinkFailures = 0;

    static constexpr auto Members(auto visit) {
        using S = FcoeStatistics;
        return visit(
            Member{"secondsSinceReset", &S::secondsSinceReset},
            Member{"transmittedFrames", &S::transmittedFrames},
            Member{"transmittedWords", &S::transmittedWords},
            Member{"receivedFrames", &S::receivedFrames},
            Member{"receivedWords", &S::receivedWords},
            Member{"loopInitializations", &S::loopInitializations},
            Member{"notOperationalSequences", &S::notOperationalSequences},
            Member{"errorFrames", &S::errorFrames}, Member{"dumpedFrames", &S::dumpedFrames},
            Member{"linkFailures", &S::linkFailures},
            Member{"synchronizationLosses", &S::synchronizationLosses},
            Member{"signalLosses", &S::signalLosses}, Member{"protocolErrors", &S::protocolErrors},
            Member{"invalidWords", &S::invalidWords}, Member{"invalidCrcs", &S::invalidCrcs},
            Member{"inputRequests", &S::inputRequests},
            Member{"outputRequests", &S::outputRequests},
            Member{"controlRequests", &S::controlRequests},
            Member{"inputMegabytes", &S::inputMegabytes},
            Member{"outputMegabytes", &S::outputMegabytes},
            Member{"fipSolicitations", &S::fipSolicitations},
            Member{"fipAdvertisements", &S::fipAdvertisements},
            Member{"missedFipAdvertisements", &S::missedFipAdvertisements},
            Member{"fabricLogins", &S::fabricLogins},
            Member{"rejectedFabricLogins", &S::rejectedFabricLogins},
            Member{"portLogins", &S::portLogins}, Member{"abortedExchanges", &S::abortedExchanges},
            Member{"timedOutRequests", &S::timedOutRequests},
            Member{"queueFullConditions", &S::queueFullConditions},
            Member{"virtualLinkFailures", &S::virtualLinkFailures});
    }
};

}  // namespace tavrosim
