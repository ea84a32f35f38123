#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "twin/run/program_job.h"

namespace CLI {
class App;
class Validator;
class Option;
}  // namespace CLI

namespace tavrohost {

// Refuses an empty value of an option: what is not wanted is left out.
CLI::Validator NotEmpty();

// Options that several commands share.
void AddTimeoutOption(CLI::App& command, std::optional<int>& seconds);
void AddLibraryOption(CLI::App& command, std::string& file);
CLI::Option* AddAnswersOption(CLI::App& command, std::string& file);

// The library that an option names; the installed one where it names none.
LibraryChoice ChosenLibrary(const std::string& file);

// The answers that the file (or standard input, "-") holds; nothing where no file is named. Throws
// TroubleError when they are unusable, which is told with the place.
std::optional<tavrolib::Json> ReadAnswers(const std::string& file);

std::optional<std::chrono::milliseconds> TimeLimit(const std::optional<int>& seconds);

}  // namespace tavrohost
