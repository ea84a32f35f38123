#include "twin/process/private_folder.h"

#include <system_error>

#include "library/platform/file.h"
#include "library/platform/unguessable.h"

namespace tavrohost {
namespace {

std::filesystem::path TemporaryFolder() {
    std::error_code error;
    std::filesystem::path folder = std::filesystem::temp_directory_path(error);
    if (error) {
        throw tavrolib::platform::FileError(
            L"The folder for temporary files is none that can be used; see TMPDIR or TMP.");
    }
    return folder;
}

}  // namespace

PrivateFolder::PrivateFolder()
    : path_(TemporaryFolder() / ("tavrohost-" + tavrolib::platform::UnguessableDigits())) {
    tavrolib::platform::MakeFolder(path_);
}

PrivateFolder::~PrivateFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

}  // namespace tavrohost
