#pragma once

#include <filesystem>
#include <string_view>

#include "linux/system/roots.h"
#include "unit/library/support.h"

namespace tavrolinux_test {

// The system's folders in a folder of their own, which is removed when destroyed. Each is empty
// until a test writes into it.
class Tree {
  public:
    const tavrolinux::Roots& Roots() const { return roots_; }

    // Write a file, or a symbolic link, with the folders that it lies in. `path` begins with one of
    // "sys", "proc", "etc", "run", "variable"; a link's target is written as it stands.
    void File(const std::filesystem::path& path, std::string_view content) const {
        std::filesystem::create_directories(Placed(path).parent_path());
        tavrolib_test::Write(Placed(path), content);
    }
    void Link(const std::filesystem::path& path, const std::filesystem::path& target) const {
        std::filesystem::create_directories(Placed(path).parent_path());
        std::filesystem::create_symlink(target, Placed(path));
    }
    void Directory(const std::filesystem::path& path) const {
        std::filesystem::create_directories(Placed(path));
    }

    // Where it lies.
    std::filesystem::path Placed(const std::filesystem::path& path) const {
        return folder_ / path.c_str();
    }

  private:
    tavrolib_test::Folder folder_;
    tavrolinux::Roots roots_{folder_ / "sys", folder_ / "proc", folder_ / "etc", folder_ / "run",
                             folder_ / "variable"};
};

}  // namespace tavrolinux_test
