#include "simulator/host/lookup.h"

namespace tavrosim {

const std::string& KeyOf(const Function& function) {
    return function.fcoe ? function.fcoe->portWwn : function.mac;
}

}  // namespace tavrosim
