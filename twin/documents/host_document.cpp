#include "twin/documents/host_document.h"

#include "library/json/place.h"
#include "simulator/host/host_file.h"
#include "twin/documents/document.h"
#include "twin/exit_status.h"

namespace tavrohost {

HostDocument ReadHostDocument(const std::string& name) {
    HostDocument document{.text = ReadDocument(name), .host = {}};
    try {
        document.host = tavrosim::HostFromText(document.text);
    } catch (const tavrolib::ShapeError& error) {
        throw TroubleError(NameOfDocument(name) + ": " + error.what());
    }
    return document;
}

std::string NameOfDocument(const std::string& name) {
    return name == StandardStream ? "standard input" : name;
}

}  // namespace tavrohost
