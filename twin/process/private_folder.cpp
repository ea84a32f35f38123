#include "twin/process/private_folder.h"

#include <system_error>

#include "library/platform/file.h"
#include "library/platform/unguessable.h"

namespace tavrohost {
PrivateFolder::PrivateFolder()
    : path_(std::filesystem::temp_directory_path() /
            ("tavrohost-" + tavrolib::platform::UnguessableDigits())) {
    tavrolib::platform::MakeFolder(path_);
}

PrivateFolder::~PrivateFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

}  // namespace tavrohost
