#include "twin/commands/run_options.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "twin/answers/answer_book.h"
#include "twin/documents/document.h"
#include "twin/exit_status.h"

namespace tavrohost {

CLI::Validator NotEmpty() {
    return {[](const std::string& value) {
                return value.empty() ? std::string("must not be empty") : std::string();
            },
            ""};
}

void AddTimeoutOption(CLI::App& command, std::optional<int>& seconds) {
    constexpr int Longest = 1'000'000;
    command.add_option("--timeout", seconds, "Stop after so many seconds")
        ->type_name("SECONDS")
        ->check(CLI::Range(1, Longest));
}

void AddLibraryOption(CLI::App& command, std::string& file) {
    command.add_option("--library", file, "The management library, instead of the installed one")
        ->type_name("FILE")
        ->check(NotEmpty());
}

CLI::Option* AddAnswersOption(CLI::App& command, std::string& file) {
    return command.add_option("--answers", file, "Answers to the questions, as JSON")
        ->type_name("FILE")
        ->check(NotEmpty());
}

LibraryChoice ChosenLibrary(const std::string& file) {
    if (file.empty()) {
        return {};
    }
    return {LibraryChoice::Kind::File, PathOfDocument(file)};
}

std::optional<tavrolib::Json> ReadAnswers(const std::string& file) {
    if (file.empty()) {
        return std::nullopt;
    }
    try {
        tavrolib::Json document = tavrolib::ParseJson(ReadDocument(file));
        const AnswerBook book(document);
        return document;
    } catch (const tavrolib::ShapeError& error) {
        throw TroubleError(file + ": " + error.what());
    }
}

std::optional<std::chrono::milliseconds> TimeLimit(const std::optional<int>& seconds) {
    return seconds ? std::optional<std::chrono::milliseconds>(std::chrono::seconds(*seconds))
                   : std::nullopt;
}

}  // namespace tavrohost
