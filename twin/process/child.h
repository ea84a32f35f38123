#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "library/json/json.h"
#include "twin/platform/child_process.h"
#include "twin/process/private_folder.h"

// A job for a child: this program started once more, which is told by a file in a private folder
// what it is to be.
namespace tavrohost {

struct ChildJob {
    // What the child is: the name of a row of ChildModes (child_modes.h).
    std::string mode;
    // What that mode wants to know. No secrets.
    tavrolib::Json details;
    // What the child's command line holds behind the program's name, in UTF-8.
    std::vector<std::string> arguments;
    // Whether its standard output goes to the file "output" of the folder.
    bool keepsOutput = false;
    std::optional<std::chrono::milliseconds> timeLimit;
};

// Starts a child in this process's folder, on its terminal and with its streams, and waits for its
// end. Throws like platform::RunThisProgram.
platform::ChildEnd RunChild(const PrivateFolder& folder, const ChildJob& job);

// What became of a child that did not end as it should, as the end of a sentence about it: "was
// ended by signal 11".
std::string TellEnd(const platform::ChildEnd& end);

// The file of the folder that holds the output.
std::filesystem::path OutputFileIn(const std::filesystem::path& folder);

// The job as it arrives in the child.
struct ReceivedJob {
    std::string mode;
    tavrolib::Json details;
    std::filesystem::path folder;
};

// The job that this process was started for; nothing when it is no child. Takes the variable that
// names the folder out of the environment. Throws TroubleError, tavrolib::platform::FileError or
// tavrolib::ShapeError when there is no job where it should be.
std::optional<ReceivedJob> ReceiveJob();

}  // namespace tavrohost
