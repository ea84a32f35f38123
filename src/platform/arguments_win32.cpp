#include <windows.h>

#include <new>
#include <utility>

#include "platform/arguments.h"
#include "platform/encoding.h"

extern "C" {
// Arguments reach the program exactly as typed. The start-up code asks this variable whether it is
// to replace arguments that hold "*" or "?" by the names of matching files.
extern int _dowildcard;
int _dowildcard = 0;

// What the start-up code of a program with a wide entry function calls: splits the command line
// once more, into arguments that live as long as the process. Exported by the C runtime and
// declared in none of its public headers.
struct RuntimeStartInfo {
    int newMode;
};
int __wgetmainargs(int* count, wchar_t*** values, wchar_t*** environment, int expandWildcards,
                   RuntimeStartInfo* info);
}

namespace tavro::platform {

ProcessArguments::ProcessArguments(int, const char* const*) {
    int count = 0;
    wchar_t** wideValues = nullptr;
    wchar_t** environment = nullptr;
    RuntimeStartInfo info{0};  // malloc asks no handler, as from the start
    if (__wgetmainargs(&count, &wideValues, &environment, _dowildcard, &info) < 0 ||
        wideValues == nullptr) {
        throw std::bad_alloc();
    }
    const unsigned codePage = GetACP();
    for (int index = 0; index < count; ++index) {
        const wchar_t* const argument = wideValues[index];
        std::optional<std::string> exact = EncodeExactly(argument, codePage);
        if (!exact && index > 0 && !notRepresentable_) {
            notRepresentable_ = static_cast<std::size_t>(index);
        }
        texts_.push_back(exact ? std::move(*exact) : EncodeText(argument, codePage));
    }
    for (const std::string& text : texts_) {
        values_.push_back(text.c_str());
    }
}

}  // namespace tavro::platform
