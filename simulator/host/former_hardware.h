#pragma once

#include "simulator/host/host.h"

namespace tavrosim {

// Earlier files state card and link with each function, also what nobody chose. The card of an
// adapter that has none, and the links of its ports, become what its functions state: of each text
// the first one in the file, but a link that any function says is up is up; a function that
// differs keeps its own. Speeds get the one spelling of
// their unit. Every function must be of one kind.
void StateHardwareOnce(Host& host);

// Gives the card, which is made where it is missing, and links that are missing what the adapter's
// functions state of their own: of each text the first one. A function states the same no more.
// Drivers are left to the functions. Every function must be of one kind.
void ShareHardware(Adapter& adapter);

}  // namespace tavrosim
