#include "linux/serve/turn.h"

#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>

namespace tavrolinux {

namespace platform = tavrolib::platform;

std::unique_ptr<platform::FileLock> TakeTurn(const Roots& roots) {
    constexpr std::chrono::seconds Patience{20};
    const std::filesystem::path folder = roots.run / "tavrocli";
    const bool isThere = std::filesystem::exists(folder);
    if (::faccessat(AT_FDCWD, (isThere ? folder : roots.run).c_str(), W_OK | X_OK, AT_EACCESS) !=
        0) {
        return nullptr;
    }
    platform::MakeFolder(folder);
    return std::make_unique<platform::FileLock>(folder / "change.lock", Patience);
}

}  // namespace tavrolinux
