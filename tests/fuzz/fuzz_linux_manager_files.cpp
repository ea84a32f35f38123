// Feeds arbitrary texts to the readers of network managers' files.
#include <string>

#include "fuzz/require.h"
#include "linux/tcpip/manager_files.h"

using namespace tavrolinux;

namespace {

// A word that the text states: lines that go on in the next one are joined.
void CheckWord(std::string_view word) {
    Require(word.find_first_of(" \t\n") == std::string_view::npos);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = BytesOf(data, size);
    Require(!IsOwnedByNetworkManager(text) || text.find("[device]") != std::string_view::npos);
    Require(!IsOwnedByNetworkd(text) || text.find("ADMIN_STATE") != std::string_view::npos);
    const IfupdownFile file = ParseIfupdownFile(text);
    for (const auto& [interface, method] : file.methods) {
        Require(!interface.empty());
        CheckWord(interface);
        CheckWord(method);
    }
    for (const auto& [pattern, interface] : file.mappings) {
        CheckWord(pattern);
        CheckWord(interface);
    }
    for (const auto& [path, isFolder] : file.sources) {
        Require(!path.empty());
        CheckWord(path);
    }
    const auto end = text.find_first_of("=\n");
    for (const std::string& name : LogicalNames(text, text.substr(0, end))) {
        Require(!name.empty());
        CheckWord(name);
    }
    return 0;
}
