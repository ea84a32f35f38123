#include <unistd.h>

#include <poll.h>

#include <cerrno>

#include "platform/input.h"

namespace tavro::platform {

std::size_t ReadStandardInput(char* buffer, std::size_t size) {
    while (true) {
        const ssize_t count = read(STDIN_FILENO, buffer, size);
        if (count >= 0) {
            return static_cast<std::size_t>(count);
        }
        if (errno == EAGAIN || errno == EWOULDBLOCK) {
            pollfd wanted{STDIN_FILENO, POLLIN, 0};
            poll(&wanted, 1, -1);
        } else if (errno != EINTR) {
            return 0;
        }
    }
}

}  // namespace tavro::platform
