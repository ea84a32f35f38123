#include "twin/answers/answer_book.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "twin/exit_status.h"

namespace tavrohost {
namespace {

const Question Confirmation{.message = 29197, .prompt = "Proceed?"};
const Question Fixed{.message = {}, .prompt = "New Value :"};

AnswerBook Book(const std::string& answers) {
    return AnswerBook(tavrolib::ParseJson(R"({"format": 1, "answers": [)" + answers + "]}"));
}

std::string NextText(AnswerBook& book, const Question& question) {
    return book.Next(question).text;
}

// The sentence with which the question ends the command.
std::string TroubleAt(AnswerBook& book, const Question& question) {
    try {
        book.Next(question);
    } catch (const TroubleError& error) {
        return error.what();
    }
    return {};
}

TEST(AnswerBook, GivesTheNthAnswerToTheNthAsking) {
    AnswerBook book = Book(R"({"message": 29197, "answers": ["y", "n"]})");
    EXPECT_EQ(NextText(book, Confirmation), "y");
    EXPECT_EQ(NextText(book, Confirmation), "n");
    EXPECT_EQ(TroubleAt(book, Confirmation),
              "question 29197 \"Proceed?\" is asked again and has no further answer");
}

TEST(AnswerBook, TheLastAnswerRepeatsWhereItSaysSo) {
    AnswerBook book = Book(R"({"message": 29197, "answers": ["y", "n"], "repeat": true})");
    EXPECT_EQ(NextText(book, Confirmation), "y");
    EXPECT_EQ(NextText(book, Confirmation), "n");
    EXPECT_EQ(NextText(book, Confirmation), "n");
}

TEST(AnswerBook, QuestionsAreCountedApart) {
    AnswerBook book = Book(R"({"message": 29197, "answers": ["y"]},
                              {"message": 29198, "answers": ["first", "second"]},
                              {"prompt": " New Value :\t", "answers": ["600"]})");
    const Question other{.message = 29198, .prompt = "Proceed?"};
    EXPECT_EQ(NextText(book, other), "first");
    EXPECT_EQ(NextText(book, Confirmation), "y");
    EXPECT_EQ(NextText(book, Fixed), "600");
    EXPECT_EQ(NextText(book, other), "second");
}

TEST(AnswerBook, AMessageIsNotKnownByItsText) {
    AnswerBook book = Book(R"({"prompt": "Proceed?", "answers": ["y"]})");
    EXPECT_EQ(TroubleAt(book, Confirmation), "question 29197 \"Proceed?\" has no answer");
    AnswerBook empty;
    EXPECT_EQ(TroubleAt(empty, Fixed), "question \"New Value :\" has no answer");
}

TEST(AnswerBook, AnswersMayComeFromElsewhere) {
    AnswerBook book = Book(
        R"({"message": 29197, "answers": [{"file": "secret.txt"}, {"environment": "SECRET"}]})");
    const Answer& file = book.Next(Confirmation);
    EXPECT_EQ(file.source, Answer::Source::File);
    EXPECT_EQ(file.text, "secret.txt");
    const Answer& variable = book.Next(Confirmation);
    EXPECT_EQ(variable.source, Answer::Source::Environment);
    EXPECT_EQ(variable.text, "SECRET");
}

std::string ErrorOf(const std::string& document) {
    try {
        const AnswerBook book(tavrolib::ParseJson(document));
    } catch (const tavrolib::ShapeError& error) {
        return error.what();
    }
    return {};
}

std::string ErrorOfEntry(const std::string& entry) {
    return ErrorOf(R"({"format": 1, "answers": [{"message": 1, "answers": ["a"]}, )" + entry +
                   "]}");
}

TEST(AnswerBook, ADocumentThatIsNoneIsRefusedWithThePlace) {
    EXPECT_EQ(ErrorOf(R"({"answers": []})"), "format: is missing");
    EXPECT_EQ(ErrorOf(R"({"format": 1})"), "answers: is missing");
    EXPECT_TRUE(ErrorOf(R"({"format": 2, "answers": []})").starts_with("format: "));
    EXPECT_NE(ErrorOf(R"([])"), "");
    EXPECT_NE(ErrorOf(R"({"format": 1, "answers": [], "more": 1})"), "");
    EXPECT_EQ(ErrorOf(R"({"format": 1, "answers": []})"), "");
}

TEST(AnswerBook, AnEntryThatIsNoneIsRefusedWithThePlace) {
    EXPECT_EQ(ErrorOfEntry(R"({"answers": ["a"]})"),
              R"(answers[1]: must have either "message" or "prompt")");
    EXPECT_EQ(ErrorOfEntry(R"({"message": 2, "prompt": "p", "answers": ["a"]})"),
              R"(answers[1]: must have either "message" or "prompt")");
    EXPECT_EQ(ErrorOfEntry(R"({"message": 2})"), "answers[1].answers: is missing");
    EXPECT_EQ(ErrorOfEntry(R"({"message": 2, "answers": []})"),
              "answers[1].answers: must hold an answer");
    EXPECT_EQ(ErrorOfEntry(R"({"message": 1, "answers": ["b"]})"),
              "answers[1]: the same question stands there twice");
    for (const char* const answer :
         {"1", "null", "[]", "{}", R"({"file": "f", "environment": "e"})", R"({"secret": "s"})",
          R"({"file": 1})", R"("two\nlines")", R"("\u0008")", R"("\u007f")"}) {
        const std::string error =
            ErrorOfEntry(R"({"message": 2, "answers": ["a", )" + std::string(answer) + "]}");
        EXPECT_TRUE(error.starts_with("answers[1].answers[1]")) << answer << ": " << error;
    }
    EXPECT_TRUE(ErrorOfEntry(R"({"message": 2, "answers": ["a"], "repeat": 1})")
                    .starts_with("answers[1].repeat"));
    EXPECT_TRUE(
        ErrorOfEntry(R"({"message": -1, "answers": ["a"]})").starts_with("answers[1].message"));
}

TEST(AnswerBook, AnAnswerFitsIntoALine) {
    const std::string longest(4000, 'a');
    EXPECT_EQ(ErrorOfEntry(R"({"message": 2, "answers": [")" + longest + "\"]}"), "");
    EXPECT_NE(ErrorOfEntry(R"({"message": 2, "answers": [")" + longest + "a\"]}"), "");
}

}  // namespace
}  // namespace tavrohost
