#pragma once

namespace tavrohost {

// Runs tavrohost with the parameters of the entry function and returns its exit status.
int RunTool(int argc, const char* const* argv);

}  // namespace tavrohost
