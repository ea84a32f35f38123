#include "twin/platform/arguments.h"

#include <windows.h>

#include <new>

#include "library/text/text.h"

extern "C" {
// The C runtime's own splitting of the command line; declared in none of its public headers.
struct RuntimeStartInfo {
    int newMode;
};
int __wgetmainargs(int* count, wchar_t*** values, wchar_t*** environment, int expandWildcards,
                   RuntimeStartInfo* info);
}

namespace tavrohost::platform {

std::vector<std::string> Utf8Arguments(int, const char* const*) {
    int count = 0;
    wchar_t** values = nullptr;
    wchar_t** environment = nullptr;
    RuntimeStartInfo info{0};
    if (__wgetmainargs(&count, &values, &environment, 0, &info) < 0 || values == nullptr) {
        throw std::bad_alloc();
    }
    std::vector<std::string> arguments;
    for (int index = 0; index < count; ++index) {
        arguments.push_back(tavrolib::Utf8FromWide(values[index]));
    }
    return arguments;
}

}  // namespace tavrohost::platform
