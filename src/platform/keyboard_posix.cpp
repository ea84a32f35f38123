#include "platform/keyboard.h"

#include <sys/resource.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>

namespace tavro::platform {
namespace {

constexpr std::array<int, 7> EndingSignals{SIGINT,  SIGTERM, SIGHUP, SIGQUIT,
                                           SIGALRM, SIGUSR1, SIGUSR2};

// A signal handler cannot be told anything, so these are the process's.
termios formerTerminal{};
std::array<struct sigaction, EndingSignals.size()> formerActions{};
struct sigaction formerStop {};

// Puts the terminal back and lets the signal do what it would have done.
void RestoreAndEnd(int signal) {
    tcsetattr(STDIN_FILENO, TCSANOW, &formerTerminal);
    // No image of the memory, and so of a secret, is left behind.
    const rlimit noCore{};
    setrlimit(RLIMIT_CORE, &noCore);
    struct sigaction defaultAction {};
    defaultAction.sa_handler = SIG_DFL;
    sigaction(signal, &defaultAction, nullptr);
    raise(signal);
}

void InstallHandlers() {
    struct sigaction restoring {};
    restoring.sa_handler = RestoreAndEnd;
    sigemptyset(&restoring.sa_mask);
    struct sigaction ignoring {};
    ignoring.sa_handler = SIG_IGN;
    sigemptyset(&ignoring.sa_mask);
    sigaction(SIGTSTP, &ignoring, &formerStop);
    for (std::size_t index = 0; index < EndingSignals.size(); ++index) {
        sigaction(EndingSignals[index], nullptr, &formerActions[index]);
        // A signal that the process was started to ignore stays ignored.
        if (formerActions[index].sa_handler != SIG_IGN) {
            sigaction(EndingSignals[index], &restoring, nullptr);
        }
    }
}

void RemoveHandlers() {
    sigaction(SIGTSTP, &formerStop, nullptr);
    for (std::size_t index = 0; index < EndingSignals.size(); ++index) {
        sigaction(EndingSignals[index], &formerActions[index], nullptr);
    }
}

}  // namespace

bool StandardInputIsTerminal() {
    return isatty(STDIN_FILENO) == 1;
}

int AlternateBackspace() {
    return 127;
}

KeyByKeyMode::KeyByKeyMode() {
    if (tcgetattr(STDIN_FILENO, &formerTerminal) != 0) {
        return;
    }
    termios silent = formerTerminal;
    silent.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ECHONL);
    silent.c_cc[VMIN] = 1;
    silent.c_cc[VTIME] = 0;
    // A suspended program would leave the shell a terminal without echo.
    silent.c_cc[VSUSP] = _POSIX_VDISABLE;
    InstallHandlers();
    // What was typed ahead is kept.
    tcsetattr(STDIN_FILENO, TCSADRAIN, &silent);
    active = true;
}

KeyByKeyMode::~KeyByKeyMode() {
    if (active) {
        tcsetattr(STDIN_FILENO, TCSADRAIN, &formerTerminal);
        RemoveHandlers();
    }
}

int KeyByKeyMode::ReadKey() {
    unsigned char key = 0;
    ssize_t count = 0;
    do {
        count = read(STDIN_FILENO, &key, 1);
    } while (count < 0 && errno == EINTR);
    return count == 1 ? key : -1;
}

}  // namespace tavro::platform
