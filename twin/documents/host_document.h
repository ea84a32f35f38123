#pragma once

#include <string>

#include "simulator/host/host.h"

namespace tavrohost {

// A host file as it stands, and the host that it describes.
struct HostDocument {
    std::string text;
    tavrosim::Host host;
};

// Reads the host file of that name (UTF-8), or standard input for "-". Throws what ReadDocument
// throws, and TroubleError that names the file and the place in it where it holds no host.
HostDocument ReadHostDocument(const std::string& name);

// What people are told of the document: its name, or "standard input" for "-".
std::string NameOfDocument(const std::string& name);

}  // namespace tavrohost
