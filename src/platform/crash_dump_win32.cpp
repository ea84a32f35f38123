#include "platform/crash_dump.h"

#include <windows.h>

namespace tavro::platform {

namespace {

// What a report of an error is not to hold: the heap.
constexpr DWORD ReportNoHeap = 1;
using SetReportFlags = HRESULT(WINAPI*)(DWORD flags);

}  // namespace

void ForbidCrashDumps() noexcept {
    SetErrorMode(GetErrorMode() | SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    if (const HMODULE system = GetModuleHandleW(L"kernel32.dll")) {
        // Not every system has it.
        void* const setFlags = reinterpret_cast<void*>(GetProcAddress(system, "WerSetFlags"));
        if (setFlags != nullptr) {
            reinterpret_cast<SetReportFlags>(setFlags)(ReportNoHeap);
        }
    }
}

}  // namespace tavro::platform
