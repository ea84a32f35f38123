#pragma once

#include <string>

#include "simulator/host/member.h"

namespace tavrosim {

// How one side of a link does data center bridging; each text as commands show and set it.
struct DcbSettings {
    std::string state = "Enable";
    std::string willing = "Enable";
    std::string flowControlPriorities = "3";
    std::string fcoePriority = "3";
    std::string priorityMap = "0:0,1:0,2:0,3:1,4:0,5:0,6:0,7:0";  // priority:group
    std::string groupMap = "0:0 1 2 4 5 6 7,1:3";                 // group:priorities
    std::string bandwidths = "50,50";                             // percent, group by group

    static constexpr auto Members(auto visit) {
        return visit(Member{"state", &DcbSettings::state}, Member{"willing", &DcbSettings::willing},
                     Member{"flowControlPriorities", &DcbSettings::flowControlPriorities},
                     Member{"fcoePriority", &DcbSettings::fcoePriority},
                     Member{"priorityMap", &DcbSettings::priorityMap},
                     Member{"groupMap", &DcbSettings::groupMap},
                     Member{"bandwidths", &DcbSettings::bandwidths});
    }
};

}  // namespace tavrosim
