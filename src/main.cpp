#include "mgmt/library.h"
#include "platform/output.h"
#include "program.h"

namespace {

// Loads the management library before the entry function runs.
const tavro::LibrarySource& libraryInUse = tavro::ManagementLibrary();

}  // namespace

// The exit code is always 0: outcomes are told as text.
int main(int argc, char** argv) {
    tavro::platform::PrepareStandardStreams();
    tavro::platform::WriteStandardError(tavro::RunCommandLine(argc, argv));
    return 0;
}
