#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "platform/control_characters.h"
#include "platform/encoding.h"
#include "platform/output.h"

namespace tavro::platform {
namespace {

// Whether the error is one after which the write is worth repeating; waits until it is.
bool MayRetryWrite(int descriptor, int error) {
    if (error == EINTR) {
        return true;
    }
    if (error != EAGAIN && error != EWOULDBLOCK) {
        return false;
    }
    pollfd wanted{descriptor, POLLOUT, 0};
    return poll(&wanted, 1, -1) >= 0 || errno == EINTR;
}

bool WriteAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (written == 0 || !MayRetryWrite(descriptor, errno)) {
            return false;
        }
    }
    return true;
}

}  // namespace

void PrepareStandardStreams() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) {
            // The lowest free number is this one. Opened the wrong way round, every use of it fails
            // as before.
            const int direction = descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY;
            if (open("/dev/null", direction) != descriptor) {
                break;
            }
        }
    }
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

bool WriteStandardOutput(std::string_view bytes) {
    return WriteAll(STDOUT_FILENO, bytes);
}

bool StandardOutputIsTerminal() {
    return isatty(STDOUT_FILENO) == 1;
}

bool StandardErrorIsTerminal() {
    return isatty(STDERR_FILENO) == 1;
}

bool StandardOutputIsUnicodeConsole() {
    return false;
}

bool WriteConsoleText(std::wstring_view text) {
    return WriteStandardOutput(EncodeText(text, Utf8CodePage));
}

unsigned OutputCodePage() {
    return Utf8CodePage;
}

std::string_view OutputLineEnd() {
    return "\n";
}

void WriteStandardError(std::wstring_view text) {
    WriteAll(STDERR_FILENO, EncodeText(StandardErrorIsTerminal() ? MaskControlCharacters(text)
                                                                 : std::wstring(text),
                                       Utf8CodePage));
}

}  // namespace tavro::platform
