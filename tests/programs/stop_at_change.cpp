// A library that is loaded before others (LD_PRELOAD), and stops a program in the middle of a
// change of its host file: the new file is written, the lock is held, and the old file is still in
// its place. The environment tells when and how:
//   TAVROSIM_HOST      the host file
//   STOP_AT_CHANGE_TO  a text that the new file holds and the old one does not; empty for any file
//   STOP_AT_CHANGE     "kill": the process is killed; "hang": it goes on no more, and does not heed
//                      SIGTERM; "kill-parent": its parent is killed, and it hangs
#include <dlfcn.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

namespace {

std::string Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

bool Holds(const char* path, const std::string& text) {
    std::ifstream file(path, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(file), {}};
    return content.find(text) != std::string::npos;
}

bool IsTheChange(const char* from, const std::string& to) {
    const std::string text = Variable("STOP_AT_CHANGE_TO");
    return to == Variable("TAVROSIM_HOST") &&
           (text.empty() || (Holds(from, text) && !Holds(to.c_str(), text)));
}

void Stop(const std::string& how) {
    if (how == "kill") {
        kill(getpid(), SIGKILL);
    }
    std::signal(SIGTERM, SIG_IGN);
    if (how == "kill-parent") {
        kill(getppid(), SIGKILL);
    }
    while (true) {
        pause();
    }
}

}  // namespace

extern "C" int rename(const char* from, const char* to) noexcept {
    const std::string how = Variable("STOP_AT_CHANGE");
    if (!how.empty() && IsTheChange(from, to)) {
        Stop(how);
    }
    using Function = int (*)(const char*, const char*);
    static const auto next = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "rename"));
    return next(from, to);
}
