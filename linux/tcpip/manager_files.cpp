#include "linux/tcpip/manager_files.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace tavrolinux {
namespace {

constexpr std::string_view Blanks = " \t\r";

std::string_view WithoutBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(Blanks);
    return first == std::string_view::npos
               ? std::string_view()
               : text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

// The text without its next line, which is returned.
std::string_view TakeLine(std::string_view& text) {
    const auto end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return line;
}

std::vector<std::string> Words(std::string_view line) {
    std::vector<std::string> words;
    for (;;) {
        const auto first = line.find_first_not_of(Blanks);
        if (first == std::string_view::npos) {
            return words;
        }
        line.remove_prefix(first);
        const auto size = std::min(line.find_first_of(Blanks), line.size());
        words.emplace_back(line.substr(0, size));
        line.remove_prefix(size);
    }
}

// The last value of the key, as lines "KEY=value" give it; of a section "[name]" where one is
// named.
std::optional<std::string> ValueOf(std::string_view text, std::string_view section,
                                   std::string_view key) {
    std::optional<std::string> value;
    std::string_view current;
    while (!text.empty()) {
        const std::string_view line = WithoutBlanks(TakeLine(text));
        if (line.starts_with('[') && line.ends_with(']')) {
            current = line.substr(1, line.size() - 2);
            continue;
        }
        const auto sign = line.find('=');
        if (sign != std::string_view::npos && current == section &&
            WithoutBlanks(line.substr(0, sign)) == key) {
            value = WithoutBlanks(line.substr(sign + 1));
        }
    }
    return value;
}

// A line that ends in a backslash goes on in the next one; comments have a line of their own.
std::vector<std::string> LogicalLines(std::string_view text) {
    std::vector<std::string> lines;
    bool goesOn = false;
    while (!text.empty()) {
        std::string_view line = TakeLine(text);
        if (!goesOn) {
            line = WithoutBlanks(line);
            if (line.empty() || line.starts_with('#')) {
                continue;
            }
            lines.emplace_back();
        }
        goesOn = line.ends_with('\\');
        if (goesOn) {
            line.remove_suffix(1);
        }
        lines.back() += line;
    }
    return lines;
}

// "/eth*=office": interfaces of these names become the logical interface "office", or those of
// their own names.
std::optional<IfupdownFile::Mapping> MappingFrom(const std::string& word) {
    const auto sign = word.find('=');
    if (sign == std::string::npos) {
        return std::nullopt;
    }
    const std::string name = word.substr(0, sign);
    return IfupdownFile::Mapping{name.starts_with('/') ? name.substr(1) : name,
                                 word.substr(sign + 1)};
}

}  // namespace

bool IsOwnedByNetworkManager(std::string_view deviceState) {
    const auto managed = ValueOf(deviceState, "device", "managed");
    if (managed) {
        return *managed == "true" || *managed == "1";
    }
    return !ValueOf(deviceState, "device", "connection-uuid").value_or("").empty();
}

// A state that is not known here is one in which it may act.
bool IsOwnedByNetworkd(std::string_view linkState) {
    const std::string state = ValueOf(linkState, "", "ADMIN_STATE").value_or("");
    return !state.empty() && state != "unmanaged" && state != "linger";
}

IfupdownFile ParseIfupdownFile(std::string_view text) {
    IfupdownFile file;
    for (const std::string& line : LogicalLines(text)) {
        const std::vector<std::string> words = Words(line);
        if (words.empty()) {
            continue;
        }
        const std::string& keyword = words.front();
        if (keyword == "iface") {
            // The method stands behind the family; where both are inherited, none does.
            if (words.size() > 1) {
                constexpr std::size_t MethodPlace = 3;
                const bool isTold = words.size() > MethodPlace && words[2].starts_with("inet");
                file.methods.push_back({words[1], isTold ? words[MethodPlace] : std::string()});
            }
        } else if (keyword == "source" || keyword == "source-directory") {
            for (std::size_t place = 1; place < words.size(); ++place) {
                file.sources.push_back({words[place], keyword == "source-directory"});
            }
        } else if (keyword == "auto" || keyword.starts_with("allow-")) {
            for (std::size_t place = 1; place < words.size(); ++place) {
                if (auto mapping = MappingFrom(words[place])) {
                    file.mappings.push_back(std::move(*mapping));
                }
            }
        }
    }
    return file;
}

std::vector<std::string> LogicalNames(std::string_view ifupdownState, std::string_view interface) {
    std::vector<std::string> names;
    while (!ifupdownState.empty()) {
        const std::string_view line = TakeLine(ifupdownState);
        const auto sign = line.find('=');
        if (sign == std::string_view::npos || WithoutBlanks(line.substr(0, sign)) != interface) {
            continue;
        }
        const std::vector<std::string> told = Words(line.substr(sign + 1));
        if (!told.empty()) {
            names.push_back(told.front());
        }
    }
    return names;
}

}  // namespace tavrolinux
