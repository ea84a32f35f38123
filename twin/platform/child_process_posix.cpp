#include "twin/platform/child_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <span>
#include <string>

#include "twin/exit_status.h"

namespace tavrohost::platform {
namespace {

using Clock = std::chrono::steady_clock;

// Those of a terminal first.
constexpr std::array EndingSignals{SIGINT,  SIGQUIT, SIGHUP,    SIGTERM, SIGALRM, SIGUSR1, SIGUSR2,
                                   SIGPIPE, SIGPOLL, SIGVTALRM, SIGPROF, SIGXCPU, SIGXFSZ};
constexpr std::span TerminalSignals = std::span(EndingSignals).first<3>();

// How long a child that was asked to end may take.
constexpr std::chrono::seconds Grace{3};

// Of the process: how many HeldSignals there are, and what was blocked before the first.
int heldCount = 0;
sigset_t formerMask{};

// Those that would end the process now.
sigset_t EndingSet() {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : EndingSignals) {
        struct sigaction action {};
        if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) {
            sigaddset(&set, signal);
        }
    }
    return set;
}

// The modes of the terminal, if there is one, which a killed child may have left in disorder.
class KeptTerminal {
  public:
    KeptTerminal() : isKept_(tcgetattr(STDIN_FILENO, &modes_) == 0) {}

    void Restore() const {
        if (!isKept_) {
            return;
        }
        sigset_t background;
        sigset_t former;
        sigemptyset(&background);
        sigaddset(&background, SIGTTOU);
        sigprocmask(SIG_BLOCK, &background, &former);
        tcsetattr(STDIN_FILENO, TCSANOW, &modes_);
        sigprocmask(SIG_SETMASK, &former, nullptr);
    }

  private:
    termios modes_{};
    bool isKept_;
};

// Pointers to texts, as the system's functions want them; the texts outlive it.
std::vector<char*> PointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> EnvironmentWith(
    const std::pair<std::string, std::filesystem::path>& added) {
    const std::string start = added.first + '=';
    std::vector<std::string> variables;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        if (std::strncmp(*variable, start.c_str(), start.size()) != 0) {
            variables.emplace_back(*variable);
        }
    }
    variables.push_back(start + added.second.native());
    return variables;
}

// The file of this program, whatever became of its name.
constexpr const char* ThisProgram = "/proc/self/exe";

pid_t Start(const ChildCommand& command) {
    std::vector<std::string> arguments = command.arguments;
    std::vector<std::string> environment = EnvironmentWith(command.variable);
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&actions);
    posix_spawnattr_init(&attributes);
    if (command.outputFile) {
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, command.outputFile->c_str(),
                                         O_WRONLY | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR);
    }
    posix_spawnattr_setsigmask(&attributes, &formerMask);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    pid_t child = 0;
    const int error = posix_spawn(&child, ThisProgram, &actions, &attributes,
                                  PointersTo(arguments).data(), PointersTo(environment).data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw TroubleError("the program cannot be started again: " +
                           std::string(std::strerror(error)));
    }
    return child;
}

timespec AsTimespec(Clock::duration duration) {
    const auto left = std::max(duration, Clock::duration::zero());
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
    const auto rest = std::chrono::duration_cast<std::chrono::nanoseconds>(left - seconds);
    return {static_cast<time_t>(seconds.count()), static_cast<long>(rest.count())};
}

// Waits for the end of a child, and ends it when that is due.
class Waiting {
  public:
    Waiting(pid_t child, std::optional<std::chrono::milliseconds> timeLimit) : child_(child) {
        if (timeLimit) {
            due_ = Clock::now() + *timeLimit;
        }
        sigaddset(&awaited_, SIGCHLD);
    }

    // The status that waitpid tells.
    int UntilItEnds() {
        int status = 0;
        while (waitpid(child_, &status, WNOHANG) != child_) {
            siginfo_t info{};
            const int signal = Next(info);
            if (signal > 0 && signal != SIGCHLD) {
                Interrupt(signal, info);
            }
            if (due_ && Clock::now() >= *due_) {
                Press();
            }
        }
        return status;
    }

    int InterruptedBy() const { return interruptedBy_; }
    bool WasTimedOut() const { return wasAsked_ && interruptedBy_ == 0; }

  private:
    int Next(siginfo_t& info) const {
        if (!due_) {
            return sigwaitinfo(&awaited_, &info);
        }
        const timespec left = AsTimespec(*due_ - Clock::now());
        return sigtimedwait(&awaited_, &info, &left);
    }

    // What a terminal sends goes to the child as well.
    void Interrupt(int signal, const siginfo_t& info) {
        const bool isOfTerminal =
            std::ranges::find(TerminalSignals, signal) != TerminalSignals.end();
        if (!isOfTerminal || info.si_code != SI_KERNEL) {
            kill(child_, signal);
        }
        interruptedBy_ = signal;
        wasAsked_ = true;
        due_ = Clock::now() + Grace;
    }

    void Press() {
        kill(child_, wasAsked_ ? SIGKILL : SIGTERM);
        wasAsked_ = true;
        due_ = Clock::now() + Grace;
    }

    pid_t child_;
    sigset_t awaited_ = EndingSet();
    std::optional<Clock::time_point> due_;
    int interruptedBy_ = 0;
    bool wasAsked_ = false;
};

// A parent that was started to ignore the end of children would not learn how they end.
void HeedChildren() {
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    sigaction(SIGCHLD, &action, nullptr);
}

}  // namespace

int EndInterrupted(const Interrupted& interrupted) {
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    sigaction(interrupted.signal, &action, nullptr);
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, interrupted.signal);
    sigprocmask(SIG_UNBLOCK, &set, nullptr);
    raise(interrupted.signal);
    constexpr int ShellsSignalStatus = 128;
    return ShellsSignalStatus + interrupted.signal;
}

HeldSignals::HeldSignals() {
    if (heldCount++ == 0) {
        sigset_t held = EndingSet();
        sigaddset(&held, SIGCHLD);
        sigprocmask(SIG_BLOCK, &held, &formerMask);
    }
}

HeldSignals::~HeldSignals() {
    if (--heldCount == 0) {
        sigprocmask(SIG_SETMASK, &formerMask, nullptr);
    }
}

ChildEnd RunThisProgram(const ChildCommand& command) {
    const HeldSignals held;
    const KeptTerminal terminal;
    HeedChildren();
    Waiting waiting(Start(command), command.timeLimit);
    const int status = waiting.UntilItEnds();
    if (WIFSIGNALED(status)) {
        terminal.Restore();
    }
    if (waiting.InterruptedBy() != 0) {
        throw Interrupted{waiting.InterruptedBy()};
    }
    if (waiting.WasTimedOut()) {
        return {EndKind::TimedOut};
    }
    return WIFSIGNALED(status) ? ChildEnd{EndKind::Crashed, WTERMSIG(status)}
                               : ChildEnd{EndKind::Exited, WEXITSTATUS(status)};
}

std::string TellCrash(int code) {
    return "was ended by signal " + std::to_string(code);
}

std::int64_t ThisProcess() {
    return getpid();
}

void EndWithParent(std::int64_t parent) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != parent) {  // who went before that sends no signal
        raise(SIGTERM);
    }
}

}  // namespace tavrohost::platform
