#pragma once

#include <filesystem>

namespace tavrolinux {

// The folders of the system that this library looks into, and the one it keeps its own state under.
// Tests put trees of their own in their places.
struct Roots {
    std::filesystem::path sys = "/sys";
    std::filesystem::path proc = "/proc";
    std::filesystem::path etc = "/etc";
    std::filesystem::path run = "/run";
    std::filesystem::path variable = "/var/lib";
};

}  // namespace tavrolinux
