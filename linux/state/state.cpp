#include "linux/state/state.h"

#include <unistd.h>

#include <chrono>
#include <optional>
#include <system_error>

#include "library/json/place.h"
#include "library/platform/environment.h"
#include "library/platform/file.h"
#include "library/text/text.h"
#include "linux/state/state_json.h"
#include "linux/system/access.h"
#include "linux/system/attribute.h"
#include "linux/system/wipe.h"

namespace tavrolinux {
namespace {

namespace platform = tavrolib::platform;

constexpr std::chrono::seconds LockPatience{10};
constexpr const char* FolderName = "tavrocli";
constexpr const char* FileName = "state.json";
constexpr const char* Action = "using the state of this library in";

std::string BootId(const Roots& roots) {
    return ReadAttribute(roots.proc / "sys/kernel/random/boot_id");
}

State ReadFile(const std::filesystem::path& file, const std::string& bootId) {
    State state;
    state.bootId = bootId;
    std::optional<std::string> text = platform::ReadWholeFile(file);
    if (!text) {
        return state;
    }
    const WipeAtEnd wipe(*text);
    State kept = StateFromText(*text);
    if (kept.bootId != bootId) {
        kept.bootId = bootId;
        for (auto& [name, interface] : kept.interfaces) {
            interface.baselines.clear();
        }
    }
    return kept;
}

// Runs what works on the file, and makes one kind of failure of all.
template <class Work>
auto Guarded(const std::filesystem::path& file, Work work) {
    try {
        return work();
    } catch (const platform::FileError& error) {
        throw StateFailure(error.Text());
    } catch (const tavrolib::ShapeError& error) {
        throw StateFailure(platform::TextOf(file) + L": " + tavrolib::WideFromUtf8(error.what()));
    }
}

}  // namespace

State StateStore::Read() const {
    const std::filesystem::path file = roots_.variable / FolderName / FileName;
    WantAccess(file.parent_path(), X_OK, Action);
    WantAccess(file, R_OK, Action);
    return Guarded(file, [&] { return ReadFile(file, BootId(roots_)); });
}

void StateStore::WantRightToChange() const {
    const std::filesystem::path folder = roots_.variable / FolderName;
    std::error_code unknown;
    const bool isThere = std::filesystem::exists(folder, unknown);
    WantAccess(isThere ? folder : roots_.variable, W_OK | X_OK, Action);
}

void StateStore::Change(const std::function<void(State&)>& change) const {
    const std::filesystem::path folder = roots_.variable / FolderName;
    const std::filesystem::path file = folder / FileName;
    WantRightToChange();
    Guarded(file, [&] {
        platform::MakeFolder(folder);
        const platform::FileLock lock(folder / "lock", LockPatience);
        State state = ReadFile(file, BootId(roots_));
        change(state);
        std::string text = TextFromState(state);
        const WipeAtEnd wipe(text);
        platform::ReplaceContent(file, text, platform::Readers::OwnerOnly);
    });
}

}  // namespace tavrolinux
