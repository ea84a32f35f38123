#pragma once

#include <string>

// `-res <MAC> -get` and `-res <MAC> -set`: what a port that is not partitioned is used for. Ports
// of adapters of type "Ethernet" and of partitioned adapters are refused. A library that lacks an
// entry point for it ends a command without a word before its first question.
namespace tavro {

// Shows the port's personality.
void ShowPersonality(const std::string& mac);

// Shows the port's personality, asks for another one and writes it once it is confirmed.
void SetPersonality(const std::string& mac);

}  // namespace tavro
