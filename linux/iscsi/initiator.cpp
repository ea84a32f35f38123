// The name of the host's iSCSI initiator, and how it logs in.
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>

#include "library/platform/file.h"
#include "linux/iscsi/failure.h"
#include "linux/iscsi/initiator_name.h"
#include "linux/iscsi/login.h"
#include "linux/iscsi/rows.h"
#include "linux/system/failure.h"

namespace tavrolinux {
namespace {

namespace platform = tavrolib::platform;
using tavroapi::InitiatorRecord;
using tavroapi::OperationCode;

// Who may not is told which right it takes.
void WantAccess(const std::filesystem::path& path, int mode, const std::string& action) {
    if (access(path.c_str(), mode) != 0 && errno != ENOENT) {
        throw SystemFailure(errno, action + ' ' + path.string(), FileRight);
    }
}

// Only root may look into the file on many hosts.
Outcome ReadInitiator(const Site& site, InitiatorRecord& initiator) {
    const Roots& roots = site.machine.SystemRoots();
    WantAccess(InitiatorNameFile(roots), R_OK, "reading");
    const State state = site.state.Read();
    initiator.name = ReadInitiatorName(roots);
    initiator.login = WithoutSecrets(state.initiatorLogin);
    return Done();
}

// Puts the name into the file, which is made where it is missing.
void WriteInitiatorName(const std::filesystem::path& file, const std::string& name) {
    const std::filesystem::path folder = file.parent_path();
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        throw SystemFailure(error.value(), "making " + folder.string(), FileRight);
    }
    WantAccess(folder, W_OK | X_OK, "writing into");
    WantAccess(file, R_OK | W_OK, "changing");
    try {
        const std::string old = platform::ReadWholeFile(file).value_or(std::string());
        platform::ReplaceContent(platform::WithoutLinks(file), WithInitiatorName(old, name));
    } catch (const platform::FileError& failure) {
        throw IscsiFailure(Refused(Status::SystemRefused, L"The system did not do that.",
                                   L"See the details for the system's reason.", failure.Text()));
    }
}

// The state is not stored when the file is not written.
Outcome SetInitiator(const Site& site, const InitiatorRecord& initiator) {
    if (!IsInitiatorName(initiator.name)) {
        return Refused(
            Status::InvalidInitiatorName, L"The initiator name is not usable.",
            L"Give a name of 1 to 223 characters that starts with \"iqn.\", \"eui.\" or \"naa.\".",
            L"name " + tavrolib::Quoted(initiator.name));
    }
    return WithRefusals([&] {
        site.state.Change([&](State& state) {
            state.initiatorLogin = initiator.login;
            Complete(state.initiatorLogin);
            WriteInitiatorName(InitiatorNameFile(site.machine.SystemRoots()), initiator.name);
        });
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
