#include "linux/linux_library.h"

#include <memory>
#include <utility>

#include "library/session/version.h"
#include "linux/serve/serve.h"
#include "linux/system/failure.h"

namespace tavrolinux {

LinuxLibrary::LinuxLibrary(Roots roots) : roots_(std::move(roots)), state_(roots_) {}

std::wstring LinuxLibrary::Description() const {
    std::wstring text = L"Library for Linux hosts ";
    text += tavrolib::LibraryVersion;
    return text + L", this host";
}

tavrolib::Outcome LinuxLibrary::Open() {
    if (!machine_) {
        try {
            machine_.emplace(Machine::Read(roots_));
        } catch (const SystemFailure& failure) {
            return RefusalOf(failure);
        }
    }
    return tavrolib::Done();
}

tavrolib::Outcome LinuxLibrary::Serve(const tavrolib::Call& call) {
    return ServeCall({*machine_, state_}, call);
}

}  // namespace tavrolinux

std::unique_ptr<tavrolib::Provider> tavrolib::MakeProvider() {
    return std::make_unique<tavrolinux::LinuxLibrary>();
}
