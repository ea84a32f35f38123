// Writes the lines of a listing in blocks of 64 KiB and does nothing else: the measure that
// listings are held against. The argument is "portals" or "targets"; with "ask" behind it, the
// entries are those that the library tells when it is asked as the program asks it.
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "entries.h"
#include "library_beside.h"
#include "tavroapi/entry_points.h"
#include "tavroapi/iscsi_storage_records.h"

namespace {

std::string block;

void WriteBlock() {
    std::fwrite(block.data(), 1, block.size(), stdout);
    block.clear();
}

template <class... Pieces>
void Write(const Pieces&... pieces) {
    ((block += pieces), ...);
    block += '\n';
    if (block.size() >= std::size_t{64} << 10U) {
        WriteBlock();
    }
}

void WriteMessage(unsigned id) {
    Write(" ");
    Write("#" + std::to_string(id));
}

// What is written of the entries: each tells its own line.
template <class Entries>
void WritePortals(const Entries& writeEntries) {
    const std::string rule(54, '-');
    WriteMessage(28691);
    Write("");
    Write(" #25601 : ");
    Write(rule);
    WriteMessage(25602);
    Write(rule);
    writeEntries();
    Write(rule);
}

template <class Entries>
void WriteTargets(const Entries& writeEntries) {
    const std::string rule(96, '-');
    WriteMessage(28691);
    Write("");
    WriteMessage(24577);
    Write(rule);
    WriteMessage(24578);
    Write(rule);
    writeEntries();
    Write(rule);
}

void WritePortal(const std::string& address, const std::string& port) {
    Write(address, " : \t", port);
}

void WriteTarget(const std::string& state, const std::string& discovery, const std::string& name) {
    Write(state, "   \t", discovery, "   \t", name);
}

void WriteOwnPortals() {
    const std::size_t count = bench::Count();
    for (std::size_t entry = 0; entry < count; ++entry) {
        WritePortal(bench::PortalAddress(entry), bench::PortalPort());
    }
}

void WriteOwnTargets() {
    const std::size_t count = bench::Count();
    for (std::size_t entry = 0; entry < count; ++entry) {
        WriteTarget(bench::TargetState(), bench::TargetDiscovery(), bench::TargetName(entry));
    }
}

// Has the library fill the list that the operation returns.
template <tavroapi::OperationCode Code>
tavroapi::OutputOf<Code> Ask() {
    using Function = tavroapi::DoOperationEntry::Function;
    tavroapi::OutputOf<Code> list;
    void* const library = bench::LoadLibrary();
    void* const entry =
        library == nullptr ? nullptr : dlsym(library, tavroapi::DoOperationEntry::Name);
    std::string request;
    if (entry == nullptr || reinterpret_cast<Function*>(entry)(static_cast<std::uint32_t>(Code),
                                                               &request, nullptr, &list) != 0) {
        std::exit(1);
    }
    return list;
}

void WriteAskedPortals() {
    for (const auto& portal : Ask<tavroapi::OperationCode::ListPortals>()) {
        WritePortal(portal.address, portal.port);
    }
}

void WriteAskedTargets() {
    for (const auto& target : Ask<tavroapi::OperationCode::ListTargets>()) {
        WriteTarget(target.connectionState, target.discovery, target.name);
    }
}

}  // namespace

int main(int argc, char** argv) {
    // Blocks are written as they are.
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    const std::string_view what = argc > 1 ? argv[1] : "";
    const bool asks = argc > 2 && argv[2] == std::string_view("ask");
    if (what == "portals") {
        WritePortals(asks ? WriteAskedPortals : WriteOwnPortals);
    } else if (what == "targets") {
        WriteTargets(asks ? WriteAskedTargets : WriteOwnTargets);
    } else {
        return 2;
    }
    WriteBlock();
    return 0;
}
