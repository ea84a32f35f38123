// Loading the library of the benchmarks as the program does.
#pragma once

#include <dlfcn.h>
#include <unistd.h>

#include <array>
#include <string>
#include <string_view>

namespace bench {

// The library beside the program; null when there is none.
inline void* LoadLibrary() {
    std::array<char, 4096> path{};
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    const std::string_view program(path.data(), length < 0 ? 0 : static_cast<std::size_t>(length));
    const std::string library =
        std::string(program.substr(0, program.rfind('/') + 1)) + "tavro.dll";
    return dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
}

}  // namespace bench
