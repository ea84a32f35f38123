// Prints the arguments as the program takes them and, for comparison, as the C runtime hands them
// to the entry function: a line for each, with its bytes in hexadecimal.
#include <cstdio>
#include <cstring>
#include <span>

#include "platform/arguments.h"

namespace {

void Show(const char* title, std::span<const char* const> arguments) {
    std::printf("%s\n", title);
    for (const char* const argument : arguments) {
        std::printf("-");
        for (std::size_t index = 0; index < std::strlen(argument); ++index) {
            std::printf("%02x", static_cast<unsigned>(static_cast<unsigned char>(argument[index])));
        }
        std::printf("\n");
    }
}

}  // namespace

int main(int argc, char** argv) {
    const tavro::platform::ProcessArguments taken(argc, argv);
    if (const auto position = taken.NotRepresentable()) {
        std::printf("refused %u\n", static_cast<unsigned>(*position));
    }
    Show("taken", taken.Values());
    Show("runtime", {argv, static_cast<std::size_t>(argc)});
    return 0;
}
