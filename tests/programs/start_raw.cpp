// Starts a program with the command line that stands in a file (little-endian UTF-16, no mark), as
// it stands there, waits for its end and ends with its exit code. With 201 when that is not
// possible.
#include <windows.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

int main(int argc, char** argv) {
    constexpr int Failed = 201;
    if (argc != 2) {
        return Failed;
    }
    std::ifstream file(argv[1], std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    std::vector<wchar_t> line(bytes.size() / sizeof(wchar_t) + 1);
    std::memcpy(line.data(), bytes.data(), bytes.size() / sizeof(wchar_t) * sizeof(wchar_t));
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                       &process) == 0) {
        return Failed;
    }
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD exitCode = Failed;
    GetExitCodeProcess(process.hProcess, &exitCode);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return static_cast<int>(exitCode);
}
