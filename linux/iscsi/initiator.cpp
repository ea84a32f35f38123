// The name of the host's iSCSI initiator, and how it logs in.
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "library/platform/file.h"
#include "linux/iscsi/failure.h"
#include "linux/iscsi/initiator_name.h"
#include "linux/iscsi/login.h"
#include "linux/iscsi/rows.h"
#include "linux/system/access.h"
#include "linux/system/blocked_signals.h"
#include "linux/system/failure.h"

namespace tavrolinux {
namespace {

namespace platform = tavrolib::platform;
using tavroapi::InitiatorRecord;
using tavroapi::OperationCode;

// Only root may look into the file on many hosts.
Outcome ReadInitiator(const Site& site, InitiatorRecord& initiator) {
    const Roots& roots = site.machine.SystemRoots();
    initiator.name = ReadInitiatorName(roots);
    const State state = site.state.Read();
    initiator.login = WithoutSecrets(state.initiatorLogin);
    return Done();
}

// The file of the initiator's name while it changes: it can be put back as it was. From its first
// change until this goes, no signal cuts short what belongs to it.
class NameFileChange {
  public:
    explicit NameFileChange(std::filesystem::path file) : named_(std::move(file)) {}

    // Puts the name into the file, which is made where it is missing. Throws SystemFailure where
    // this process may not, and FileError.
    void Write(const std::string& name) {
        blocked_.emplace();
        const std::filesystem::path folder = named_.parent_path();
        std::error_code error;
        if (std::filesystem::create_directories(folder, error)) {
            madeFolder_ = folder;
        }
        if (error) {
            throw SystemFailure(error.value(), "making " + folder.string(), FileRight);
        }
        WantAccess(folder, W_OK | X_OK, "writing into");
        WantAccess(named_, R_OK | W_OK, "changing");
        old_ = platform::ReadWholeFile(named_);
        const std::filesystem::path file = platform::WithoutLinks(named_);
        platform::ReplaceContent(file, WithInitiatorName(old_.value_or(std::string()), name));
        written_ = file;
    }

    // Throws FileError.
    void TakeBack() {
        if (old_ && !written_.empty()) {
            platform::ReplaceContent(written_, *old_);
        } else {
            Remove(written_);
        }
        Remove(madeFolder_);
    }

  private:
    static void Remove(const std::filesystem::path& path) {
        std::error_code error;
        if (!path.empty() && !std::filesystem::remove(path, error) && error) {
            throw platform::FileError(WideFromUtf8(path.string() + ": " + error.message()));
        }
    }

    std::optional<BlockedSignals> blocked_;
    std::filesystem::path named_;       // a link to the file, or the file itself
    std::filesystem::path written_;     // the file; empty before it has changed
    std::filesystem::path madeFolder_;  // empty where it was there
    std::optional<std::string> old_;
};

void WriteName(NameFileChange& file, const std::string& name) {
    try {
        file.Write(name);
    } catch (const platform::FileError& failure) {
        throw IscsiFailure(Refused(Status::SystemRefused, L"The system did not do that.",
                                   L"See the details for the system's reason.", failure.Text()));
    }
}

// Takes the change of the file back, and hands on why the rest of it did not come about.
[[noreturn]] void GiveUp(NameFileChange& change) {
    try {
        change.TakeBack();
    } catch (const platform::FileError& failure) {
        throw IscsiFailure(Refused(Status::SystemRefused,
                                   L"The changes failed, and not all of them could be taken back.",
                                   L"See the details for the system's reason.", failure.Text()));
    }
    throw;
}

// The name and the options change both, or neither does.
Outcome SetInitiator(const Site& site, const InitiatorRecord& initiator) {
    if (!IsInitiatorName(initiator.name)) {
        return Refused(
            Status::InvalidInitiatorName, L"The initiator name is not usable.",
            L"Give a name of 1 to 223 characters that starts with \"iqn.\", \"eui.\" or \"naa.\".",
            L"name " + tavrolib::Quoted(initiator.name));
    }
    return WithRefusals([&] {
        WantUsable(initiator.login);
        NameFileChange file(InitiatorNameFile(site.machine.SystemRoots()));
        try {
            site.state.Change([&](State& state) {
                state.initiatorLogin = initiator.login;
                Complete(state.initiatorLogin);
                WriteName(file, initiator.name);
            });
        } catch (...) {
            GiveUp(file);
        }
        return Done();
    });
}

}  // namespace

std::span<const Operation> InitiatorOperations() {
    static constexpr Operation Rows[] = {
        OnHost<OperationCode::ReadInitiator, ReadInitiator>(),
        OnHost<OperationCode::SetInitiator, SetInitiator>(),
        OnFunction<OperationCode::PingFromIscsiPort, FunctionKind::Iscsi, PingFromIscsiPort>(),
    };
    return Rows;
}

}  // namespace tavrolinux
