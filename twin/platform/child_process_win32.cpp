#include "twin/platform/child_process.h"

#include <windows.h>

#include <array>
#include <cstdio>
#include <memory>
#include <string>
#include <type_traits>

#include "library/text/text.h"
#include "twin/exit_status.h"

namespace tavrohost::platform {
namespace {

constexpr DWORD EndedByControlC = 0xC000013A;
constexpr DWORD FirstException = 0xC0000000;

// How long the system waits for a program whose console is closed, and a little less.
constexpr DWORD ConsolePatience = 4500;

struct HandleCloser {
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<std::remove_pointer_t<HANDLE>, HandleCloser>;

// Of the process: how many HeldSignals there are, and the events by which the handler, which runs
// in a thread of its own, tells that the process is to end and learns that it may.
int heldCount = 0;
HANDLE endIsWanted = nullptr;
HANDLE endIsNear = nullptr;

BOOL WINAPI HoldControl(DWORD control) {
    SetEvent(endIsWanted);
    if (control != CTRL_C_EVENT && control != CTRL_BREAK_EVENT) {
        // The process ends when this returns.
        WaitForSingleObject(endIsNear, ConsolePatience);
    }
    return TRUE;
}

[[noreturn]] void FailToStart(const char* what) {
    throw TroubleError("the program cannot be started again: " + std::string(what) +
                       " (system error " + std::to_string(GetLastError()) + ")");
}

// An argument as the C runtime takes it off a command line again.
std::wstring Quoted(const std::wstring& argument) {
    if (!argument.empty() && argument.find_first_of(L" \t\n\v\"") == std::wstring::npos) {
        return argument;
    }
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t character : argument) {
        if (character == L'"') {
            // Those in front of a quotation mark stand for themselves only when doubled.
            quoted.append(backslashes + 1, L'\\');
        }
        backslashes = character == L'\\' ? backslashes + 1 : 0;
        quoted += character;
    }
    quoted.append(backslashes, L'\\');
    return quoted + L'"';
}

std::wstring CommandLine(const std::vector<std::string>& arguments) {
    std::wstring line;
    for (const std::string& argument : arguments) {
        line += (line.empty() ? L"" : L" ") + Quoted(tavrolib::WideFromUtf8(argument));
    }
    return line;
}

std::wstring ThisProgram() {
    std::wstring path(MAX_PATH, L'\0');
    while (true) {
        const DWORD length =
            GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0) {
            FailToStart("its file has no name");
        }
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(2 * path.size());
    }
}

// Only what is inheritable reaches the child.
HANDLE Inheritable(DWORD stream) {
    HANDLE handle = GetStdHandle(stream);
    if (handle != nullptr && handle != INVALID_HANDLE_VALUE) {
        SetHandleInformation(handle, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    }
    return handle;
}

Handle NewInheritableFile(const std::filesystem::path& path) {
    SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inheritable,
                              CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        FailToStart("the file for its output cannot be made");
    }
    return Handle(file);
}

// A job whose process ends with the last handle to it, and so with this process. What that process
// starts is not part of it.
Handle NewJob() {
    Handle job(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags =
        JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE | JOB_OBJECT_LIMIT_SILENT_BREAKAWAY_OK;
    if (job != nullptr) {
        SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits,
                                sizeof limits);
    }
    return job;
}

// The environment variable is there as long as this object.
class AddedVariable {
  public:
    explicit AddedVariable(const std::pair<std::string, std::filesystem::path>& variable)
        : name_(tavrolib::WideFromUtf8(variable.first)) {
        SetEnvironmentVariableW(name_.c_str(), variable.second.c_str());
    }
    ~AddedVariable() { SetEnvironmentVariableW(name_.c_str(), nullptr); }
    AddedVariable(const AddedVariable&) = delete;
    AddedVariable& operator=(const AddedVariable&) = delete;

  private:
    std::wstring name_;
};

Handle Start(const ChildCommand& command, HANDLE job) {
    const AddedVariable variable(command.variable);
    Handle output;
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = Inheritable(STD_INPUT_HANDLE);
    start.hStdOutput = Inheritable(STD_OUTPUT_HANDLE);
    start.hStdError = Inheritable(STD_ERROR_HANDLE);
    if (command.outputFile) {
        output = NewInheritableFile(*command.outputFile);
        start.hStdOutput = output.get();
    }
    std::wstring line = CommandLine(command.arguments);
    PROCESS_INFORMATION process{};
    if (CreateProcessW(ThisProgram().c_str(), line.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED,
                       nullptr, nullptr, &start, &process) == 0) {
        FailToStart("the system refuses");
    }
    if (job != nullptr) {
        AssignProcessToJobObject(job, process.hProcess);
    }
    ResumeThread(process.hThread);
    CloseHandle(process.hThread);
    return Handle(process.hProcess);
}

// The mode of the console that is standard input, if it is one.
class KeptConsole {
  public:
    KeptConsole() : isKept_(GetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), &mode_) != 0) {}
    void Restore() const {
        if (isKept_) {
            SetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), mode_);
        }
    }

  private:
    DWORD mode_ = 0;
    bool isKept_;
};

DWORD Milliseconds(const std::optional<std::chrono::milliseconds>& duration) {
    return duration ? static_cast<DWORD>(duration->count()) : INFINITE;
}

}  // namespace

int EndInterrupted(const Interrupted& interrupted) {
    return interrupted.signal;
}

HeldSignals::HeldSignals() {
    if (heldCount++ == 0) {
        endIsWanted = CreateEventW(nullptr, TRUE, FALSE, nullptr);
        endIsNear = CreateEventW(nullptr, TRUE, FALSE, nullptr);
        SetConsoleCtrlHandler(HoldControl, TRUE);
    }
}

// The events are left to the end of the process: the handler may still hold them.
HeldSignals::~HeldSignals() {
    if (--heldCount == 0) {
        SetEvent(endIsNear);
        SetConsoleCtrlHandler(HoldControl, FALSE);
    }
}

ChildEnd RunThisProgram(const ChildCommand& command) {
    const HeldSignals held;
    const KeptConsole console;
    const Handle job = NewJob();
    const Handle child = Start(command, job.get());
    const std::array<HANDLE, 2> awaited{child.get(), endIsWanted};
    const DWORD first = WaitForMultipleObjects(static_cast<DWORD>(awaited.size()), awaited.data(),
                                               FALSE, Milliseconds(command.timeLimit));
    // A key reaches the child, too, and may have ended it first.
    const bool isInterrupted = WaitForSingleObject(endIsWanted, 0) == WAIT_OBJECT_0;
    if (first != WAIT_OBJECT_0) {
        TerminateProcess(child.get(), EndedByControlC);
        WaitForSingleObject(child.get(), INFINITE);
        console.Restore();
    }
    DWORD code = 0;
    GetExitCodeProcess(child.get(), &code);
    if (isInterrupted || code == EndedByControlC) {
        console.Restore();
        if (first != WAIT_TIMEOUT) {
            throw Interrupted{static_cast<int>(EndedByControlC)};
        }
    }
    if (first == WAIT_TIMEOUT) {
        return {EndKind::TimedOut};
    }
    const bool hasCrashed = code >= FirstException;
    if (hasCrashed) {
        console.Restore();
    }
    return {hasCrashed ? EndKind::Crashed : EndKind::Exited, static_cast<int>(code)};
}

std::string TellCrash(int code) {
    std::array<char, 16> number{};
    std::snprintf(number.data(), number.size(), "0x%08X", static_cast<unsigned>(code));
    return "crashed with exception " + std::string(number.data());
}

std::int64_t ThisProcess() {
    return GetCurrentProcessId();
}

// The job sees to that.
void EndWithParent(std::int64_t /*parent*/) {}

}  // namespace tavrohost::platform
