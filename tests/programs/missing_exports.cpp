// A library that is loaded before others (LD_PRELOAD), and lets entry points of the management
// library be missing from some look-up on. The environment tells which:
//   MISSING_LOOKUPS  a file, to which the name of each entry point that is looked up is added as a
//                    line
//   MISSING_FROM     from which look-up on they are missing, counted from 1; empty for never
//   MISSING_NAME     the one that is missing; empty for all
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr const char* Prefix = "TAVROAPI_";

const char* Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

void Note(const char* symbol) {
    if (std::FILE* const file = std::fopen(Variable("MISSING_LOOKUPS"), "a")) {
        std::fprintf(file, "%s\n", symbol);
        std::fclose(file);
    }
}

// Of the libraries with such entry points, the first one is the program's; it may look them up in
// others.
bool IsOfTheProgram(void* handle, const char* symbol) {
    if (std::strncmp(symbol, Prefix, std::strlen(Prefix)) != 0) {
        return false;
    }
    static void* const first = handle;
    return handle == first;
}

bool IsMissing(const char* symbol) {
    static unsigned long count = 0;
    ++count;
    const unsigned long from = std::strtoul(Variable("MISSING_FROM"), nullptr, 10);
    const char* const name = Variable("MISSING_NAME");
    return from != 0 && count >= from && (*name == '\0' || std::strcmp(symbol, name) == 0);
}

}  // namespace

extern "C" void* dlsym(void* handle, const char* symbol) noexcept {
    using Function = void* (*)(void*, const char*);
    static const auto next = reinterpret_cast<Function>(dlvsym(RTLD_NEXT, "dlsym", "GLIBC_2.34"));
    if (IsOfTheProgram(handle, symbol)) {
        Note(symbol);
        if (IsMissing(symbol)) {
            return nullptr;
        }
    }
    return next(handle, symbol);
}
