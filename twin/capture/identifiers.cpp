#include "simulator/host/lookup.h"
#include "twin/capture/function_model.h"

namespace tavrohost {

bool IsMac(const std::string& text) {
    return tavrosim::NormalIdentifier(text).size() == tavrosim::MacDigits;
}

bool IsWwn(const std::string& text) {
    return tavrosim::NormalIdentifier(text).size() == tavrosim::WwnDigits;
}

void StateText(std::optional<std::string>& own, const std::string& told) {
    if (!told.empty()) {
        own = told;
    }
}

}  // namespace tavrohost
