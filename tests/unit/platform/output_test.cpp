#include "platform/output.h"

#include <gtest/gtest.h>

#include <string>

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#endif

namespace tavro::platform {
namespace {

#ifdef _WIN32

// Puts another handle in the place of standard output for the time of a test.
class OutputHandle {
  public:
    explicit OutputHandle(HANDLE handle) : former(GetStdHandle(STD_OUTPUT_HANDLE)) {
        SetStdHandle(STD_OUTPUT_HANDLE, handle);
    }
    ~OutputHandle() { SetStdHandle(STD_OUTPUT_HANDLE, former); }
    OutputHandle(const OutputHandle&) = delete;
    OutputHandle& operator=(const OutputHandle&) = delete;

  private:
    HANDLE former;
};

HANDLE NewEvent() {
    return CreateEventW(nullptr, TRUE, FALSE, nullptr);
}

TEST(PrepareStandardStreams, AHandleThatIsNoneStaysUnusable) {
    const HANDLE closed = NewEvent();
    ASSERT_NE(closed, nullptr);
    CloseHandle(closed);
    const OutputHandle output(closed);
    PrepareStandardStreams();
    EXPECT_EQ(GetStdHandle(STD_OUTPUT_HANDLE), nullptr);
    EXPECT_FALSE(WriteStandardOutput("lost"));
    EXPECT_FALSE(StandardOutputIsTerminal());
}

TEST(PrepareStandardStreams, AMissingHandleIsUnusable) {
    for (const HANDLE missing : {HANDLE{nullptr}, INVALID_HANDLE_VALUE}) {
        const OutputHandle output(missing);
        PrepareStandardStreams();
        EXPECT_FALSE(WriteStandardOutput("lost"));
        EXPECT_FALSE(WriteConsoleText(L"lost"));
        EXPECT_FALSE(StandardOutputIsUnicodeConsole());
    }
}

TEST(PrepareStandardStreams, AUsableHandleIsLeftAlone) {
    const HANDLE event = NewEvent();
    ASSERT_NE(event, nullptr);
    {
        const OutputHandle output(event);
        PrepareStandardStreams();
        EXPECT_EQ(GetStdHandle(STD_OUTPUT_HANDLE), event);
    }
    CloseHandle(event);
}

#else

// What arrives on a terminal that stands in the place of standard error while `write` runs. The
// terminal makes CR LF of every LF.
template <typename Write>
std::string ShownOnATerminal(Write write) {
    const int screen = posix_openpt(O_RDWR | O_NOCTTY);
    EXPECT_GE(screen, 0);
    EXPECT_EQ(grantpt(screen), 0);
    EXPECT_EQ(unlockpt(screen), 0);
    const int terminal = open(ptsname(screen), O_RDWR | O_NOCTTY);
    EXPECT_GE(terminal, 0);
    const int former = dup(STDERR_FILENO);
    dup2(terminal, STDERR_FILENO);
    write();
    dup2(former, STDERR_FILENO);
    close(former);
    std::array<char, 256> shown{};
    const ssize_t count = read(screen, shown.data(), shown.size());
    close(terminal);
    close(screen);
    return {shown.data(), static_cast<std::size_t>(count > 0 ? count : 0)};
}

TEST(WriteStandardError, ControlCharactersAreMaskedOnATerminal) {
    EXPECT_EQ(ShownOnATerminal([] {
                  WriteStandardError(
                      L"a\x1B[2J\tb\r\x9B"
                      L"語\n");
              }),
              "a?[2J\tb??\xE8\xAA\x9E\r\n");
}

TEST(WriteStandardError, NothingIsMaskedElsewhere) {
    testing::internal::CaptureStderr();
    WriteStandardError(
        L"a\x1B[2J\tb\r\x9B"
        L"語\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "a\x1B[2J\tb\r\xC2\x9B\xE8\xAA\x9E\n");
}

#endif

}  // namespace
}  // namespace tavro::platform
