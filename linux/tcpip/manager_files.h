#pragma once

#include <string>
#include <string_view>
#include <vector>

// What the files of network managers say. Whatever is none of theirs in such a text is passed
// over.
namespace tavrolinux {

// Whether NetworkManager owns the interface whose state this is: it says that it manages it, or
// has a connection on it.
bool IsOwnedByNetworkManager(std::string_view deviceState);

// Whether systemd-networkd owns the interface whose state this is: it has not said that it leaves
// it alone.
bool IsOwnedByNetworkd(std::string_view linkState);

// What a configuration file of ifupdown (interfaces(5)) says.
struct IfupdownFile {
    // How an interface gets its address in one family: "static", "dhcp", "manual", ...
    struct Method {
        std::string interface;  // its logical name
        std::string method;
    };
    // Names a logical interface that the interfaces of a pattern become.
    struct Mapping {
        std::string pattern;  // of names, as of a shell
        std::string interface;
    };
    // Files that belong to it.
    struct Source {
        std::string path;       // a pattern, as of a shell
        bool isFolder = false;  // all of its files
    };
    std::vector<Method> methods;
    std::vector<Mapping> mappings;
    std::vector<Source> sources;
};
IfupdownFile ParseIfupdownFile(std::string_view text);

// The logical interfaces that ifupdown has made of the interface, as its state file says; empty
// when it has not brought it up.
std::vector<std::string> LogicalNames(std::string_view ifupdownState, std::string_view interface);

}  // namespace tavrolinux
