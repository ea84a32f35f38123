// Writes the host file of a random host, which is another one for each seed.
#include "unit/twin/random_host.h"

#include <cstdio>
#include <cstdlib>

#include "library/platform/file.h"
#include "simulator/host/host_file.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: random_host SEED HOST_FILE\n", stderr);
        return 1;
    }
    constexpr int Decimal = 10;
    const auto seed = static_cast<std::uint32_t>(std::strtoul(argv[1], nullptr, Decimal));
    tavrolib::platform::ReplaceContent(argv[2], tavrosim::TextFromHost(tavrohost_test::RandomHost(
                                                    seed, tavrohost_test::Oddness::Anything)));
    return 0;
}
