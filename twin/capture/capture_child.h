#pragma once

#include <filesystem>

#include "twin/process/child.h"

// The side of the child that asks a library all that it tells of the host.
namespace tavrohost {

inline constexpr const char* CaptureMode = "capture";

// The members of what the child wants to know.
namespace capture_details {
inline constexpr const char* Library = "library";              // see JsonOf(const LibraryChoice&)
inline constexpr const char* WithSecrets = "withSecrets";      // whether records keep them
inline constexpr const char* TellsProgress = "tellsProgress";  // on standard error
}  // namespace capture_details

// Where the child puts its result: an object with "answers" (see CaptureAnswers), or with
// "trouble", a sentence that says why there are none.
std::filesystem::path AnswersFileIn(const std::filesystem::path& folder);

// Loads and initializes the library, captures its answers and leaves them in the folder. Returns 0
// when the file is there, whatever it says.
int RunAsCapture(const ReceivedJob& job, int argc, const char* const* argv);

}  // namespace tavrohost
