#pragma once

#include <string>

#include "simulator/place.h"

/// Checks of the identifiers in a host file; each throws ShapeError naming `place`.
namespace tavrosim {

void CheckMac(const std::string& text, const Place& place);

void CheckWwn(const std::string& text, const Place& place);

/// A Fibre Channel address: six hexadecimal digits.
void CheckFcid(const std::string& text, const Place& place);

}  // namespace tavrosim
