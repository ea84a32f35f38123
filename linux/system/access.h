#pragma once

#include <filesystem>
#include <string>

namespace tavrolinux {

// Throws SystemFailure, which names the right to act on files, where this process may not access
// what stands at the path: `mode` is R_OK, W_OK, X_OK or several of them, `action` what it wants to
// do with it ("reading"). Its effective user and capabilities count. Nothing where nothing stands
// there.
void WantAccess(const std::filesystem::path& path, int mode, const std::string& action);

}  // namespace tavrolinux
