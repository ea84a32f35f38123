// Feeds arbitrary texts to the reader of answers to questions. From those that are read, each
// question gets its answers in their order; then dialogues run with them, and come to an end.
#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/json_mutation.h"
#include "fuzz/played_run.h"
#include "fuzz/require.h"
#include "library/json/json.h"
#include "twin/answers/answer_book.h"
#include "twin/answers/answering.h"
#include "twin/exit_status.h"

namespace {

using tavrohost::AnswerBook;
using tavrolib::Json;

std::optional<Json> Read(std::string_view text) {
    try {
        Json json = tavrolib::ParseJson(text);
        const AnswerBook book(json);
        return json;
    } catch (const tavrolib::ShapeError& error) {
        Require(error.what()[0] != '\0');
        return std::nullopt;
    }
}

tavrohost::Question QuestionOf(const Json& entry) {
    tavrohost::Question question;
    if (entry.contains("message")) {
        question.message = entry["message"].get<std::uint32_t>();
    } else {
        question.prompt = entry["prompt"].get<std::string>();
    }
    return question;
}

std::string TextOf(const Json& answer) {
    return (answer.is_object() ? *answer.begin() : answer).get<std::string>();
}

void RequireInOrder(const Json& document) {
    constexpr std::size_t MostAnswers = 50;
    AnswerBook book(document);
    for (const Json& entry : document["answers"]) {
        const tavrohost::Question question = QuestionOf(entry);
        const Json& answers = entry["answers"];
        for (std::size_t i = 0; i < std::min(answers.size(), MostAnswers); ++i) {
            const tavrohost::Answer& answer = book.Next(question);
            Require(answer.text == TextOf(answers[i]));
            Require((answer.source == tavrohost::Answer::Source::Text) == answers[i].is_string());
            Require(tavrohost::IsAnswerLine(answer.text));
        }
        if (answers.size() > MostAnswers) {
            continue;
        }
        const bool repeats = entry.value("repeat", false);
        try {
            Require(book.Next(question).text == TextOf(answers.back()) && repeats);
        } catch (const tavrohost::TroubleError&) {
            Require(!repeats);
        }
    }
}

void Answer(const std::vector<std::string>& command, const Json& document) {
    std::vector<std::string> troubles;
    tavro_fuzz::PlayedRun run{.arguments = command};
    run.device = [&](tavro::console::Device device) {
        return tavrohost::Answering(
            std::move(device), AnswerBook(document),
            {.messageIn = tavro_fuzz::MessageIn,
             .trouble = [&](const std::string& sentence) { troubles.push_back(sentence); }});
    };
    tavrosim::Host host = tavro_fuzz::BuiltInHost();
    const auto result = tavro_fuzz::Play(run, host);
    Require(troubles.size() <= 1);
    for (const std::string& trouble : troubles) {
        Require(!trouble.empty() && trouble.find('\n') == std::string::npos);
    }
    if (result.changedHost) {
        tavro_fuzz::RequireFile(host);
    }
}

const std::vector<std::string> Words{
    "format", "answers", "message", "prompt", "repeat", "file", "environment", "y",
    "n",      "1",       "2",       "3",      "25",     "100",  "LC_ALL",      "tavrocli.log"};

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t mostSize, unsigned seed) {
    return tavro_fuzz::MutateJsonText(data, size, mostSize, seed, Words);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::optional<Json> document = Read(BytesOf(data, size));
    if (!document) {
        return 0;
    }
    RequireInOrder(*document);
    const std::string iscsi = "02-00-5E-10-00-02";
    const std::string ethernet = "02-00-5E-10-00-00";
    const std::string fcoe = "10:00:02:00:5E:10:00:04";
    const std::vector<std::string> dialogues[] = {{"-npar", ethernet, "-set"},
                                                  {"-ethernet", ethernet, "-setadapinfo"},
                                                  {"-iscsi", iscsi, "-setbootconfig"},
                                                  {"-fcoe", fcoe, "-setbootconfig"},
                                                  {"-fcoe", fcoe, "-setdcb"}};
    for (const auto& dialogue : dialogues) {
        Answer(dialogue, *document);
    }
    return 0;
}
