#include "memory_search.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <sstream>

namespace secret_memory {
namespace {

constexpr std::size_t FewestCharacters = 8;
constexpr std::size_t Units[] = {1, 2, 4};
// What is larger is where a sanitizer keeps its notes; a program of this kind has no such heap.
constexpr std::size_t LargestRegion = std::size_t{1} << 26U;

struct Region {
    const unsigned char* begin;
    const unsigned char* end;
    std::string name;
};

std::vector<Region> WritableRegions() {
    std::vector<Region> regions;
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        std::istringstream fields(line);
        std::uintptr_t begin = 0;
        std::uintptr_t end = 0;
        char dash = 0;
        std::string access;
        std::string name;
        std::string ignored;
        fields >> std::hex >> begin >> dash >> end >> access >> ignored >> ignored >> ignored >>
            name;
        if (access.starts_with("rw") && end - begin <= LargestRegion) {
            regions.push_back({reinterpret_cast<const unsigned char*>(begin),
                               reinterpret_cast<const unsigned char*>(end), name});
        }
    }
    return regions;
}

}  // namespace

Secret::Secret(std::string_view hidden) {
    for (std::size_t index = 0; index + 1 < hidden.size(); index += 2) {
        const auto byte = static_cast<unsigned char>(
            std::stoul(std::string(hidden.substr(index, 2)), nullptr, 16));
        upsideDown += static_cast<char>(byte);
        numbers[255U - byte] = upsideDown.size();
    }
}

bool Secret::IsIn(std::string_view text) const {
    const auto* const begin = reinterpret_cast<const unsigned char*>(text.data());
    const auto* const end = begin + text.size();
    return std::any_of(begin, end, [&](const unsigned char& place) {
        return CountAt(&place, end, 1) == upsideDown.size();
    });
}

void Secret::AppendTo(std::string& text) const {
    text.reserve(text.size() + upsideDown.size());
    for (const char character : upsideDown) {
        text += static_cast<char>(255U - static_cast<unsigned char>(character));
    }
}

std::size_t Secret::CountAt(const unsigned char* place, const unsigned char* end,
                            std::size_t unit) const {
    const std::size_t first = numbers[*place];
    if (first == 0) {
        return 0;
    }
    std::size_t count = 0;
    while (place + unit <= end && numbers[*place] == first + count &&
           std::all_of(place + 1, place + unit, [](unsigned char byte) { return byte == 0; })) {
        ++count;
        place += unit;
    }
    return count;
}

std::vector<std::string> SearchMemory(const Secret& secret, std::size_t& searchedBytes) {
    const std::vector<Region> regions = WritableRegions();
    std::vector<std::string> found;
    searchedBytes = 0;
    for (const Region& region : regions) {
        searchedBytes += static_cast<std::size_t>(region.end - region.begin);
        for (const unsigned char* place = region.begin; place < region.end; ++place) {
            if (*place == 0) {
                continue;
            }
            for (const std::size_t unit : Units) {
                const std::size_t count = secret.CountAt(place, region.end, unit);
                if (count >= FewestCharacters) {
                    std::ostringstream line;
                    line << count << " characters of " << unit << " bytes at "
                         << static_cast<const void*>(place) << ' ' << region.name;
                    found.push_back(line.str());
                    place += count * unit - 1;
                    break;
                }
            }
        }
    }
    return found;
}

void ReportSearch(const Secret& secret, std::ostream& report) {
    std::size_t searchedBytes = 0;
    for (const std::string& place : SearchMemory(secret, searchedBytes)) {
        report << "left " << place << '\n';
    }
    report << "searched " << searchedBytes << std::endl;
}

}  // namespace secret_memory
