#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "library/calls/outcome.h"
#include "simulator/host/host.h"

namespace tavrosim {

using tavrolib::Outcome;

// Where the host file is: TAVROSIM_HOST, or the user's default place, or, when that cannot be
// told, nowhere.
struct HostPlace {
    std::optional<std::filesystem::path> path;
    bool isDefault = false;

    static HostPlace FromEnvironment();
};

// The host and the file that it lives in. Where there is no file, the built-in default host stands
// in, and the first change makes the file.
class Store {
  public:
    explicit Store(HostPlace place);

    // The host file in use, for the log and error details.
    std::wstring Description() const;

    // Reads the host. A file that is there and cannot be read, is malformed or of the wrong shape
    // is refused with the file and the place in it named; it is never written to then.
    Outcome Load();

    bool IsLoaded() const { return host_.has_value(); }

    // The host as last loaded or changed by this store.
    const Host& Current() const { return *host_; }

    // Applies `change` to the host as it is in the file now, under a lock that every program
    // takes, and puts the result in the file's place. When `change` refuses, or the file cannot be
    // written, the file stays as it is.
    Outcome Change(const std::function<Outcome(Host&)>& change);

    // Restarts the host: what is pending is in force afterwards. `look` gets the host as it is just
    // before, while nobody else can change it.
    Outcome RestartHost(const std::function<void(const Host&)>& look = nullptr);

  private:
    HostPlace place_;
    std::optional<Host> host_;
};

}  // namespace tavrosim
