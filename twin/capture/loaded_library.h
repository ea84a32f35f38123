#pragma once

#include "twin/capture/library_caller.h"

namespace tavrohost {

// The library that this process has loaded, by the entry points that it exports.
class LoadedLibrary : public LibraryCaller {
  public:
    std::optional<std::uint32_t> Perform(const tavrolib::Call& call) override;
    std::optional<tavroapi::ErrorRecord> LastError() override;
};

}  // namespace tavrohost
