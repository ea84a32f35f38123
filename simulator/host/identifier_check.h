#pragma once

#include <string>

#include "library/json/place.h"

// Checks of the identifiers in a host file; each throws ShapeError naming `place`.
namespace tavrosim {

using tavrolib::Place;
using tavrolib::ShapeError;

void CheckMac(const std::string& text, const Place& place);

void CheckWwn(const std::string& text, const Place& place);

// A Fibre Channel address: six hexadecimal digits.
void CheckFcid(const std::string& text, const Place& place);

}  // namespace tavrosim
