// A management library that loads a library of its own by its bare name when it is initialized, and
// tells on standard output whether that was possible.
#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <string>

extern "C" std::uint32_t TAVROAPI_Initialize(std::uint32_t, std::wstring*);

extern "C" std::uint32_t TAVROAPI_Initialize(std::uint32_t, std::wstring*) {
    std::puts(LoadLibraryW(L"helper.dll") != nullptr ? "helper loaded" : "helper not loaded");
    std::fflush(stdout);
    return 0;
}
