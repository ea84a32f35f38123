// Preloaded into a program, keeps freed memory out of use, so that what was left in it can be
// found.
#include <cstdlib>

extern "C" [[gnu::visibility("default")]] void free(void* /*memory*/) noexcept {}
