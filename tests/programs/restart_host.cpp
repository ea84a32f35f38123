// Restarts the simulated host whose file is named: what is pending in it is in force afterwards.
// Exits with 1, and the reason on standard error, when the file cannot be used.
#include <cstdio>

#include "library/text/text.h"
#include "simulator/store/store.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: restart_host HOST_FILE\n", stderr);
        return 1;
    }
    const tavrosim::Outcome outcome = tavrosim::Store({argv[1], false}).RestartHost();
    if (!outcome.IsDone()) {
        std::fputs(tavrolib::Utf8FromWide(outcome.error->message).c_str(), stderr);
        return 1;
    }
    return 0;
}
