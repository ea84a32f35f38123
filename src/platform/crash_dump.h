// Images of the memory that a process leaves behind when it is ended by force.
#pragma once

namespace tavro::platform {

// To be called before a secret comes into memory. From now on until its end the process leaves no
// core file; on Windows, where the system knows these settings, no error is reported for it, and a
// report that is made all the same is without the heap. There is no way back.
void ForbidCrashDumps() noexcept;

}  // namespace tavro::platform
