#pragma once

#include <filesystem>

#include "twin/platform/child_process.h"

namespace tavrohost {

// A new folder for temporary files, which only its owner can enter; it is gone with this object.
// While it lives, signals that would end the process wait until the folder is gone.
class PrivateFolder {
  public:
    // Throws tavrolib::platform::FileError when the folder cannot be made.
    PrivateFolder();
    ~PrivateFolder();
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }

  private:
    platform::HeldSignals held_;  // outlives the folder
    std::filesystem::path path_;
};

}  // namespace tavrohost
