#include "simulator/store/store.h"

#include <chrono>
#include <system_error>
#include <utility>

#include "library/json/place.h"
#include "library/platform/environment.h"
#include "library/platform/file.h"
#include "library/text/text.h"
#include "simulator/host/host_file.h"
#include "simulator/host/restart.h"
#include "simulator/messages/error_texts.h"

namespace tavrosim {
namespace {

namespace platform = tavrolib::platform;
using std::filesystem::path;
using tavrolib::Done;
using tavrolib::ShapeError;
using tavrolib::Status;
using tavrolib::WideFromUtf8;

constexpr std::chrono::seconds LockPatience{10};

path WithSuffix(path file, const char* suffix) {
    file += suffix;
    return file;
}

Host ReadHost(const HostPlace& place) {
    if (place.path) {
        if (const auto text = platform::ReadWholeFile(*place.path)) {
            try {
                return HostFromText(*text);
            } catch (const ShapeError& error) {
                throw platform::FileError(platform::TextOf(*place.path) + L": " +
                                          WideFromUtf8(error.what()));
            }
        }
    }
    return DefaultHost();
}

Outcome Unusable(const platform::FileError& error) {
    return Refused(Status::HostUnusable, L"The host file cannot be used.",
                   L"Correct the file, or move it away to start from the built-in host.",
                   error.Text());
}

Outcome NotWritten(const std::wstring& reason) {
    return Refused(Status::HostNotWritten, L"The change was not stored.",
                   L"See that the host file and its folder can be written, and try again.", reason);
}

}  // namespace

HostPlace HostPlace::FromEnvironment() {
    if (auto named = platform::PathVariable("TAVROSIM_HOST")) {
        return {std::move(named), false};
    }
    if (const auto folder = platform::UserDataFolder()) {
        return {*folder / platform::ProductFolderName() / "host.json", true};
    }
    return {};
}

Store::Store(HostPlace place) : place_(std::move(place)) {}

std::wstring Store::Description() const {
    std::error_code error;
    if (!place_.path ||
        status(*place_.path, error).type() == std::filesystem::file_type::not_found) {
        return L"built-in host";
    }
    return L"host file \"" + platform::TextOf(*place_.path) + L"\"";
}

Outcome Store::Load() {
    host_.reset();
    try {
        host_ = ReadHost(place_);
        return Done();
    } catch (const platform::FileError& error) {
        return Unusable(error);
    }
}

Outcome Store::Change(const std::function<Outcome(Host&)>& change) {
    if (!place_.path) {
        return NotWritten(
            L"There is no folder for the user's data; TAVROSIM_HOST can name a host file.");
    }
    try {
        const path file = platform::WithoutLinks(*place_.path);
        if (place_.isDefault) {
            platform::MakeFolder(file.parent_path());
        }
        const platform::FileLock lock(WithSuffix(file, ".lock"), LockPatience, file);
        Host host;
        try {
            host = ReadHost(place_);
        } catch (const platform::FileError& error) {
            return Unusable(error);
        }
        Outcome outcome = change(host);
        if (!outcome.IsDone()) {
            return outcome;
        }
        CheckHost(host);
        const std::string text = TextFromHost(host);
        if (text.size() > platform::LargestFile) {
            return NotWritten(
                L"The host file would be larger than 64 MiB, and never be read again.");
        }
        platform::ReplaceContent(file, text);
        host_ = std::move(host);
        return outcome;
    } catch (const platform::FileError& error) {
        return NotWritten(error.Text());
    } catch (const ShapeError& error) {
        return NotWritten(WideFromUtf8(error.what()));
    }
}

Outcome Store::RestartHost(const std::function<void(const Host&)>& look) {
    return Change([&look](Host& host) {
        if (look) {
            look(host);
        }
        Restart(host);
        return Done();
    });
}

}  // namespace tavrosim
