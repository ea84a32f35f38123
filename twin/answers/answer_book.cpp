#include "twin/answers/answer_book.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <string_view>

#include "twin/exit_status.h"

namespace tavrohost {
namespace {

using tavrolib::Json;
using tavrolib::Place;
using tavrolib::ShapeError;

constexpr std::int64_t Format = 1;
constexpr std::size_t MostEntries = 10000;
constexpr std::size_t MostAnswers = 10000;

const std::string& LineAt(const Json& json, const Place& place) {
    const std::string& text = tavrolib::TextAt(json, place);
    if (!IsAnswerLine(text)) {
        throw ShapeError(place, "must be one line without control characters, of at most " +
                                    std::to_string(LongestAnswer) + " bytes");
    }
    return text;
}

Answer AnswerFrom(const Json& json, const Place& place) {
    if (json.is_string()) {
        return {Answer::Source::Text, LineAt(json, place)};
    }
    for (const auto& [name, source] : {std::pair{"file", Answer::Source::File},
                                       std::pair{"environment", Answer::Source::Environment}}) {
        if (json.is_object() && json.size() == 1 && json.contains(name)) {
            return {source, LineAt(json[name], Place(place, name))};
        }
    }
    throw ShapeError(place, R"(must be a text, {"file": name} or {"environment": name})");
}

bool IsOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
    return std::ranges::find(names, name) != names.end();
}

std::string WithoutOuterBlanks(const std::string& text) {
    constexpr const char* Blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(Blanks);
    return first == std::string::npos
               ? std::string()
               : text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

}  // namespace

// What would end the line, or act on a terminal, cannot be typed.
bool IsAnswerLine(std::string_view text) {
    constexpr unsigned char FirstPrintable = 0x20;
    constexpr unsigned char Delete = 0x7F;
    return text.size() <= LongestAnswer && std::ranges::all_of(text, [](unsigned char character) {
               return character >= FirstPrintable && character != Delete;
           });
}

std::string Question::Text() const {
    const std::string quoted = '"' + prompt + '"';
    return message ? "question " + std::to_string(*message) + ' ' + quoted : "question " + quoted;
}

AnswerBook::Entry AnswerBook::EntryFrom(const Json& json, const Place& place) {
    tavrolib::WantObject(json, place);
    tavrolib::RefuseUnknownMembers(
        json,
        [](std::string_view name) {
            return IsOneOf(name, {"message", "prompt", "answers", "repeat"});
        },
        place);
    if (json.contains("message") == json.contains("prompt")) {
        throw ShapeError(place, R"(must have either "message" or "prompt")");
    }
    Entry entry;
    if (json.contains("message")) {
        entry.message = static_cast<std::uint32_t>(
            tavrolib::NumberAt(json["message"], 0, std::numeric_limits<std::uint32_t>::max(),
                               Place(place, "message")));
    } else {
        entry.prompt = WithoutOuterBlanks(tavrolib::TextAt(json["prompt"], Place(place, "prompt")));
    }
    const Place answersPlace(place, "answers");
    if (!json.contains("answers")) {
        throw ShapeError(answersPlace, "is missing");
    }
    const Json& answers = json["answers"];
    const std::size_t count = tavrolib::SizeAt(answers, MostAnswers, answersPlace);
    if (count == 0) {
        throw ShapeError(answersPlace, "must hold an answer");
    }
    for (std::size_t index = 0; index < count; ++index) {
        entry.answers.push_back(AnswerFrom(answers[index], Place(answersPlace, index)));
    }
    if (json.contains("repeat")) {
        entry.lastRepeats = tavrolib::TruthAt(json["repeat"], Place(place, "repeat"));
    }
    return entry;
}

bool AnswerBook::Has(const Entry& wanted) const {
    return std::ranges::any_of(entries_, [&](const Entry& entry) {
        return entry.message == wanted.message && entry.prompt == wanted.prompt;
    });
}

AnswerBook::AnswerBook(const Json& document) {
    const Place whole;
    tavrolib::WantObject(document, whole);
    tavrolib::RefuseUnknownMembers(
        document,
        [](std::string_view name) {
            return IsOneOf(name, {"format", "answers"});
        },
        whole);
    const Place formatPlace(whole, "format");
    if (!document.contains("format")) {
        throw ShapeError(formatPlace, "is missing");
    }
    tavrolib::NumberAt(document["format"], Format, Format, formatPlace);
    const Place answersPlace(whole, "answers");
    if (!document.contains("answers")) {
        throw ShapeError(answersPlace, "is missing");
    }
    const Json& entries = document["answers"];
    const std::size_t count = tavrolib::SizeAt(entries, MostEntries, answersPlace);
    for (std::size_t index = 0; index < count; ++index) {
        const Place place(answersPlace, index);
        Entry entry = EntryFrom(entries[index], place);
        if (Has(entry)) {
            throw ShapeError(place, "the same question stands there twice");
        }
        entries_.push_back(std::move(entry));
    }
}

const Answer& AnswerBook::Next(const Question& question) {
    const auto entry = std::ranges::find_if(entries_, [&](const Entry& candidate) {
        return candidate.message ? candidate.message == question.message
                                 : !question.message && candidate.prompt == question.prompt;
    });
    if (entry == entries_.end()) {
        throw TroubleError(question.Text() + " has no answer");
    }
    const std::size_t asking = entry->asked++;
    if (asking < entry->answers.size()) {
        return entry->answers[asking];
    }
    if (entry->lastRepeats) {
        return entry->answers.back();
    }
    throw TroubleError(question.Text() + " is asked again and has no further answer");
}

}  // namespace tavrohost
