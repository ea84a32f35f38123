#include "platform/keyboard.h"

#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>

#include "platform/input.h"

namespace tavro::platform {
namespace {

// The signals that do not end a process unless it asks for it. SIGTSTP is none of them here: a
// suspended program would leave the shell a terminal without echo.
constexpr std::array LeftAlone{SIGCHLD, SIGCONT, SIGTTIN, SIGTTOU, SIGURG, SIGWINCH};

// A signal handler cannot be told anything, so these are the process's.
bool modeIsSet = false;
termios formerTerminal{};
std::array<struct sigaction, NSIG> formerActions{};

// Puts the terminal back and lets the signal do what it would have done.
void RestoreAndPassOn(int signal) {
    const int error = errno;
    termios current{};
    tcgetattr(STDIN_FILENO, &current);
    tcsetattr(STDIN_FILENO, TCSANOW, &formerTerminal);
    struct sigaction own {};
    sigaction(signal, &formerActions[static_cast<std::size_t>(signal)], &own);
    raise(signal);
    sigset_t raised;
    sigset_t blocked;
    sigemptyset(&raised);
    sigaddset(&raised, signal);
    pthread_sigmask(SIG_UNBLOCK, &raised, &blocked);
    // Somebody else's handler came back, so the process goes on.
    pthread_sigmask(SIG_SETMASK, &blocked, nullptr);
    sigaction(signal, &own, nullptr);
    tcsetattr(STDIN_FILENO, TCSANOW, &current);
    errno = error;
}

// Calls change(signal, its former action) for each signal that the mode has an action for.
template <typename Change>
void ForEachSignal(Change change) {
    for (int signal = 1; signal < NSIG; ++signal) {
        change(signal, formerActions[static_cast<std::size_t>(signal)]);
    }
}

void InstallActions() {
    struct sigaction restoring {};
    restoring.sa_handler = RestoreAndPassOn;
    // A handler before may have asked for a stack of its own: the usual one may be full. Where it
    // comes back, what it interrupted goes on.
    restoring.sa_flags = SA_ONSTACK | SA_RESTART;
    // SIGTTOU is among them: a process in the background may put the terminal back, too.
    sigfillset(&restoring.sa_mask);
    struct sigaction ignoring {};
    ignoring.sa_handler = SIG_IGN;
    sigemptyset(&ignoring.sa_mask);
    ForEachSignal([&](int signal, struct sigaction& former) {
        sigaction(signal, nullptr, &former);
        // A signal that the process was started to ignore stays ignored.
        if (former.sa_handler != SIG_IGN && std::ranges::count(LeftAlone, signal) == 0) {
            sigaction(signal, signal == SIGTSTP ? &ignoring : &restoring, nullptr);
        }
    });
}

void RemoveActions() {
    ForEachSignal(
        [](int signal, const struct sigaction& former) { sigaction(signal, &former, nullptr); });
}

}  // namespace

bool StandardInputIsTerminal() {
    return isatty(STDIN_FILENO) == 1;
}

int AlternateBackspace() {
    return 127;
}

KeyByKeyMode::KeyByKeyMode() {
    modeIsSet = tcgetattr(STDIN_FILENO, &formerTerminal) == 0;
    if (!modeIsSet) {
        return;
    }
    termios silent = formerTerminal;
    silent.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ECHONL);
    silent.c_iflag &= ~static_cast<tcflag_t>(IXON);
    silent.c_cc[VMIN] = 1;
    silent.c_cc[VTIME] = 0;
    silent.c_cc[VSUSP] = _POSIX_VDISABLE;
    silent.c_cc[VQUIT] = _POSIX_VDISABLE;
    InstallActions();
    // What was typed ahead is kept.
    tcsetattr(STDIN_FILENO, TCSADRAIN, &silent);
}

KeyByKeyMode::~KeyByKeyMode() {
    if (modeIsSet) {
        tcsetattr(STDIN_FILENO, TCSADRAIN, &formerTerminal);
        RemoveActions();
    }
}

int KeyByKeyMode::ReadKey() {
    char key = 0;
    return ReadStandardInput(&key, 1) == 1 ? static_cast<unsigned char>(key) : -1;
}

}  // namespace tavro::platform
