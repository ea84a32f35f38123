#include "simulator/host/identifier_check.h"

#include "simulator/host/lookup.h"

namespace tavrosim {
namespace {

void Want(bool isRight, const char* kind, std::size_t digits, const Place& place) {
    if (!isRight) {
        throw ShapeError(place, std::string(kind) + " of " + std::to_string(digits) +
                                    " hexadecimal digits is wanted");
    }
}

}  // namespace

void CheckMac(const std::string& text, const Place& place) {
    Want(NormalIdentifier(text).size() == MacDigits, "a MAC", MacDigits, place);
}

void CheckWwn(const std::string& text, const Place& place) {
    Want(NormalIdentifier(text).size() == WwnDigits, "a WWN", WwnDigits, place);
}

void CheckFcid(const std::string& text, const Place& place) {
    Want(tavrolib::IsFcid(text), "an FCID", FcidDigits, place);
}

}  // namespace tavrosim
