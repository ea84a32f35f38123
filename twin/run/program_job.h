#pragma once

#include <chrono>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "library/json/json.h"

namespace tavrohost {

// Which management library a command runs on.
struct LibraryChoice {
    enum class Kind {
        Installed,  // the one beside the program, as the program itself finds it
        File,       // the library in the file `path`
        Twin,       // the simulated host in the file `path`
    };
    Kind kind = Kind::Installed;
    std::filesystem::path path{};
};

// What becomes of what the command prints.
enum class OutputUse {
    PassThrough,  // goes where this process's output goes
    Keep,         // is kept for the report
};

// A command line of the program that is to be run.
struct ProgramJob {
    // Without the program's name; in UTF-8, outside Windows any bytes.
    std::vector<std::string> arguments;
    LibraryChoice library{};
    // The document that answers the questions (AnswerBook); without it they are answered by
    // standard input, unless that is a terminal and the output is kept: then nobody would see them.
    std::optional<tavrolib::Json> answers{};
    OutputUse output = OutputUse::PassThrough;
    std::optional<std::chrono::milliseconds> timeLimit{};
};

}  // namespace tavrohost
