// Writes the lines of a listing and does nothing else, each line by itself as the program does: the
// measure that listings are held against. The argument is "portals" or "targets".
#include <iostream>
#include <string_view>

#include "entries.h"

namespace {

void Write(std::string_view line) {
    std::cout << line << std::endl;
}

void WriteMessage(unsigned id) {
    Write(" ");
    Write("#" + std::to_string(id));
}

void WritePortals() {
    const std::string rule(54, '-');
    WriteMessage(28691);
    Write("");
    Write(" #25601 : ");
    Write(rule);
    WriteMessage(25602);
    Write(rule);
    const std::size_t count = bench::Count();
    for (std::size_t entry = 0; entry < count; ++entry) {
        Write(bench::PortalAddress(entry) + " : \t" + bench::PortalPort());
    }
    Write(rule);
}

void WriteTargets() {
    const std::string rule(96, '-');
    WriteMessage(28691);
    Write("");
    WriteMessage(24577);
    Write(rule);
    WriteMessage(24578);
    Write(rule);
    const std::size_t count = bench::Count();
    for (std::size_t entry = 0; entry < count; ++entry) {
        Write(bench::TargetState() + "   \t" + bench::TargetDiscovery() + "   \t" +
              bench::TargetName(entry));
    }
    Write(rule);
}

}  // namespace

int main(int argc, char** argv) {
    const std::string_view what = argc > 1 ? argv[1] : "";
    if (what == "portals") {
        WritePortals();
    } else if (what == "targets") {
        WriteTargets();
    } else {
        return 2;
    }
    return 0;
}
