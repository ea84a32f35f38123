#pragma once

#include <cstdint>
#include <tuple>

#include "simulator/host/member.h"

namespace tavrosim {

/// The counters of an FCoE function, in the order in which the library tells them.
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

    static constexpr auto Members() {
        using S = FcoeStatistics;
        constexpr Presence Optional = Presence::Optional;
        return std::tuple{Member{"secondsSinceReset", &S::secondsSinceReset, Optional},
                          Member{"transmittedFrames", &S::transmittedFrames, Optional},
                          Member{"transmittedWords", &S::transmittedWords, Optional},
                          Member{"receivedFrames", &S::receivedFrames, Optional},
                          Member{"receivedWords", &S::receivedWords, Optional},
                          Member{"loopInitializations", &S::loopInitializations, Optional},
                          Member{"notOperationalSequences", &S::notOperationalSequences, Optional},
                          Member{"errorFrames", &S::errorFrames, Optional},
                          Member{"dumpedFrames", &S::dumpedFrames, Optional},
                          Member{"linkFailures", &S::linkFailures, Optional},
                          Member{"synchronizationLosses", &S::synchronizationLosses, Optional},
                          Member{"signalLosses", &S::signalLosses, Optional},
                          Member{"protocolErrors", &S::protocolErrors, Optional},
                          Member{"invalidWords", &S::invalidWords, Optional},
                          Member{"invalidCrcs", &S::invalidCrcs, Optional},
                          Member{"inputRequests", &S::inputRequests, Optional},
                          Member{"outputRequests", &S::outputRequests, Optional},
                          Member{"controlRequests", &S::controlRequests, Optional},
                          Member{"inputMegabytes", &S::inputMegabytes, Optional},
                          Member{"outputMegabytes", &S::outputMegabytes, Optional},
                          Member{"fipSolicitations", &S::fipSolicitations, Optional},
                          Member{"fipAdvertisements", &S::fipAdvertisements, Optional},
                          Member{"missedFipAdvertisements", &S::missedFipAdvertisements, Optional},
                          Member{"fabricLogins", &S::fabricLogins, Optional},
                          Member{"rejectedFabricLogins", &S::rejectedFabricLogins, Optional},
                          Member{"portLogins", &S::portLogins, Optional},
                          Member{"abortedExchanges", &S::abortedExchanges, Optional},
                          Member{"timedOutRequests", &S::timedOutRequests, Optional},
                          Member{"queueFullConditions", &S::queueFullConditions, Optional},
                          Member{"virtualLinkFailures", &S::virtualLinkFailures, Optional}};
    }
};

}  // namespace tavrosim
