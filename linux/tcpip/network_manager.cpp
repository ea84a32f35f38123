#include "linux/tcpip/network_manager.h"

#include <fnmatch.h>
#include <glob.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <set>
#include <utility>
#include <vector>

#include "linux/system/attribute.h"
#include "linux/tcpip/manager_files.h"

namespace tavrolinux {
namespace {

// Of a manager's file. Thousands of interfaces may stand in one.
constexpr std::size_t LongestFile = std::size_t{4} << 20U;
// Of the files that belong to one configuration.
constexpr std::size_t MostFiles = 1000;

std::string ContentOf(const std::filesystem::path& file) {
    return ReadBytes(file, LongestFile).value_or(std::string());
}

std::vector<std::filesystem::path> FilesLike(const std::filesystem::path& pattern) {
    glob_t found{};
    std::vector<std::filesystem::path> files;
    if (glob(pattern.c_str(), 0, nullptr, &found) == 0) {
        files.assign(found.gl_pathv, found.gl_pathv + found.gl_pathc);
    }
    globfree(&found);
    return files;
}

// The configuration of ifupdown: the file and all that belong to it, each once.
class IfupdownConfiguration {
  public:
    explicit IfupdownConfiguration(const Roots& roots) : roots_(roots) {
        std::vector<std::filesystem::path> waiting{roots.etc / "network/interfaces"};
        std::set<std::filesystem::path> seen;
        while (!waiting.empty() && seen.size() < MostFiles) {
            const std::filesystem::path file = waiting.back();
            waiting.pop_back();
            if (seen.insert(file).second) {
                Take(ParseIfupdownFile(ContentOf(file)), file.parent_path(), waiting);
            }
        }
    }

    // The logical interfaces that the interface can become.
    std::vector<std::string> NamesFor(const std::string& interface) const {
        std::vector<std::string> names{interface};
        for (const IfupdownFile::Mapping& mapping : mappings_) {
            if (fnmatch(mapping.pattern.c_str(), interface.c_str(), 0) == 0) {
                names.push_back(mapping.interface);
            }
        }
        return names;
    }

    bool Knows(const std::string& name) const {
        return Any(name, [](const auto&) { return true; });
    }
    bool GivesAddress(const std::string& name) const {
        return Any(name, [](const std::string& method) { return method != "manual"; });
    }

  private:
    template <class Wanted>
    bool Any(const std::string& name, Wanted wanted) const {
        return std::ranges::any_of(methods_, [&](const IfupdownFile::Method& method) {
            return method.interface == name && wanted(method.method);
        });
    }

    void Take(IfupdownFile file, const std::filesystem::path& folder,
              std::vector<std::filesystem::path>& waiting) {
        std::ranges::move(file.methods, std::back_inserter(methods_));
        std::ranges::move(file.mappings, std::back_inserter(mappings_));
        for (const IfupdownFile::Source& source : file.sources) {
            for (const std::filesystem::path& found : FilesLike(Placed(source.path, folder))) {
                if (!source.isFolder) {
                    waiting.push_back(found);
                    continue;
                }
                for (const std::string& name : NamesIn(found)) {
                    if (IsSourceName(name)) {
                        waiting.push_back(found / name);
                    }
                }
            }
        }
    }

    // A path that a file in `folder` states.
    std::filesystem::path Placed(const std::filesystem::path& path,
                                 const std::filesystem::path& folder) const {
        const std::filesystem::path inEtc = path.lexically_normal().lexically_relative("/etc");
        const bool isInEtc = path.is_absolute() && !inEtc.empty() && *inEtc.begin() != "..";
        return isInEtc ? roots_.etc / inEtc : folder / path;
    }

    // Files of other names in a folder are left-overs, of an editor or of a package's update.
    static bool IsSourceName(const std::string& name) {
        return std::ranges::all_of(name, [](char one) {
            return (one >= 'a' && one <= 'z') || (one >= 'A' && one <= 'Z') ||
                   (one >= '0' && one <= '9') || one == '_' || one == '-';
        });
    }

    const Roots& roots_;
    std::vector<IfupdownFile::Method> methods_;
    std::vector<IfupdownFile::Mapping> mappings_;
};

// An interface that it brings up without an address ("manual") is free for one.
bool IsOwnedByIfupdown(const Roots& roots, const std::string& interface) {
    const IfupdownConfiguration configuration(roots);
    if (std::ranges::any_of(configuration.NamesFor(interface), [&](const std::string& name) {
            return configuration.GivesAddress(name);
        })) {
        return true;
    }
    // What was brought up and is not described any more may have its address from there.
    return std::ranges::any_of(LogicalNames(ContentOf(roots.run / "network/ifstate"), interface),
                               [&](const std::string& name) {
                                   return configuration.GivesAddress(name) ||
                                          !configuration.Knows(name);
                               });
}

}  // namespace

std::optional<std::string> ManagerOf(const Roots& roots, const Interface& interface) {
    const std::string index = std::to_string(interface.index);
    if (IsOwnedByNetworkManager(ContentOf(roots.run / "NetworkManager/devices" / index))) {
        return "NetworkManager";
    }
    if (IsOwnedByNetworkd(ContentOf(roots.run / "systemd/netif/links" / index))) {
        return "systemd-networkd";
    }
    if (IsOwnedByIfupdown(roots, interface.name)) {
        return "ifupdown";
    }
    return std::nullopt;
}

}  // namespace tavrolinux
