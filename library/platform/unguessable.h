#pragma once

#include <filesystem>
#include <string>

namespace tavrolib::platform {

// 32 hexadecimal digits that nobody can guess, for the name of something new.
std::string UnguessableDigits();

// A name for a new file in the folder of the file `path`, which its name begins with.
std::filesystem::path NewNameBeside(const std::filesystem::path& path);

}  // namespace tavrolib::platform
