#include "twin/process/private_folder.h"

#include <random>
#include <sstream>
#include <string>
#include <system_error>

#include "library/platform/file.h"

namespace tavrohost {
namespace {

// A name that nobody can guess, so that nobody has made a folder of that name.
std::string UnguessableName() {
    constexpr int Words = 4;
    std::random_device random;
    std::ostringstream name;
    name << "tavrohost-" << std::hex;
    for (int word = 0; word < Words; ++word) {
        name << random();
    }
    return name.str();
}

}  // namespace

PrivateFolder::PrivateFolder() : path_(std::filesystem::temp_directory_path() / UnguessableName()) {
    tavrolib::platform::MakeFolder(path_);
}

PrivateFolder::~PrivateFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

}  // namespace tavrohost
