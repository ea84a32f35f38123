#include "twin/answers/answering.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <utility>

#include "console/console.h"
#include "console/wipe.h"
#include "library/text/text.h"
#include "platform/encoding.h"
#include "platform/output.h"
#include "platform/wipe.h"
#include "twin/documents/document.h"
#include "twin/exit_status.h"
#include "twin/platform/environment.h"

namespace tavrohost {
namespace {

namespace console = tavro::console;

// Room for an answer with whatever ends its line, and for one byte more.
constexpr std::size_t LineRoom = LongestAnswer + 3;

// Reads from the file, which may be a pipe, what the text has room for.
void ReadStart(const std::string& name, std::string& text) {
    const std::filesystem::path path = PathOfDocument(name);
    std::error_code ignored;
    std::filebuf file;
    file.pubsetbuf(nullptr, 0);
    if (std::filesystem::is_directory(path, ignored) ||
        file.open(path, std::ios::in | std::ios::binary) == nullptr) {
        throw TroubleError(name + " cannot be read");
    }
    text.resize(LineRoom);
    try {
        const std::streamsize count =
            file.sgetn(text.data(), static_cast<std::streamsize>(text.size()));
        text.resize(static_cast<std::size_t>(count));
    } catch (const std::ios::failure&) {
        throw TroubleError(name + " cannot be read");
    }
}

void WantLine(std::string_view text, const std::string& source) {
    if (!IsAnswerLine(text)) {
        throw TroubleError(source + " must hold one line without control characters, of at most " +
                           std::to_string(LongestAnswer) + " bytes");
    }
}

// Reads the only line of the file. No copy stays behind but the result.
void ReadLineOf(const std::string& name, std::string& line) {
    ReadStart(name, line);
    if (line.ends_with('\n')) {
        line.pop_back();
        if (line.ends_with('\r')) {
            line.pop_back();
        }
    }
    WantLine(line, name);
}

// Puts the answer into a text that has room for it, so that no copy is made on the way.
void ReadAnswer(const Answer& answer, std::string& line) {
    switch (answer.source) {
        case Answer::Source::File:
            ReadLineOf(answer.text, line);
            return;
        case Answer::Source::Environment:
            if (!platform::ReadVariable(answer.text, line)) {
                throw TroubleError("there is no environment variable " + answer.text);
            }
            WantLine(line, "the environment variable " + answer.text);
            return;
        case Answer::Source::Text:
            line = answer.text;
            return;
    }
}

bool IsAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char character) { return (character & 0x80) == 0; });
}

// Makes of UTF-8 what would arrive if it were typed.
void EncodeAsTyped(std::string& line) {
    const unsigned codePage = tavro::platform::OutputCodePage();
    if (codePage == tavro::platform::Utf8CodePage || IsAscii(line)) {
        return;
    }
    std::wstring wide = tavrolib::WideFromUtf8(line);
    const tavro::platform::WipeAtEnd guard(wide);
    auto typed = tavro::platform::EncodeExactly(wide, codePage);
    if (!typed) {
        throw TroubleError("it holds a character that the console's code page lacks");
    }
    const console::SecretGuard typedGuard(*typed);
    line.replace(0, line.size(), *typed);
}

std::string Trimmed(std::wstring_view openLine) {
    constexpr const wchar_t* Blanks = L" \t";
    const std::size_t first = openLine.find_first_not_of(Blanks);
    if (first == std::wstring_view::npos) {
        return {};
    }
    return tavrolib::Utf8FromWide(
        openLine.substr(first, openLine.find_last_not_of(Blanks) - first + 1));
}

// The run that asks, and its last question.
class Asking {
  public:
    Asking(AskingRun run, bool isOnTerminal) : run_(std::move(run)), isOnTerminal_(isOnTerminal) {}

    void Note(std::wstring_view openLine) {
        question_ = {.message = run_.messageIn(openLine), .prompt = Trimmed(openLine)};
    }

    const Question& Last() const { return question_; }
    bool IsOnTerminal() const { return isOnTerminal_; }

    [[noreturn]] void Abandon(const std::string& sentence) const {
        if (isOnTerminal_) {
            console::EndLine();  // the sentence gets a line of its own
        }
        run_.trouble(sentence);
        throw console::CommandAbandoned(sentence);
    }

  private:
    AskingRun run_;
    bool isOnTerminal_;
    Question question_;
};

// The answers of one run as input.
class AnswerInput {
  public:
    AnswerInput(AnswerBook book, Asking asking)
        : book_(std::move(book)), asking_(std::move(asking)) {
        line_.reserve(LineRoom + 1);
    }
    ~AnswerInput() { console::WipeSecret(line_); }
    AnswerInput(const AnswerInput&) = delete;
    AnswerInput& operator=(const AnswerInput&) = delete;

    void Ask(std::wstring_view openLine, bool isSecret) {
        if (position_ < line_.size()) {
            return;  // the rest of an answer that is being read
        }
        asking_.Note(openLine);
        try {
            const tavrohost::Answer& answer = book_.Next(asking_.Last());
            Take(answer, isSecret);
            Show(answer, isSecret);
        } catch (const TroubleError& error) {
            asking_.Abandon(error.what());
        }
    }

    std::size_t Read(char* buffer, std::size_t size) {
        const std::size_t count = line_.copy(buffer, size, position_);
        position_ += count;
        if (position_ == line_.size()) {
            console::WipeSecret(line_);
            position_ = 0;
        }
        return count;
    }

    [[noreturn]] void Refuse() const {
        asking_.Abandon("the answer to " + asking_.Last().Text() + " was refused");
    }

  private:
    void Take(const tavrohost::Answer& answer, bool isSecret) {
        if (isSecret && answer.source == tavrohost::Answer::Source::Text) {
            throw TroubleError(asking_.Last().Text() +
                               " asks for a secret, which has to come from a file or the "
                               "environment");
        }
        try {
            ReadAnswer(answer, line_);
            EncodeAsTyped(line_);
        } catch (const TroubleError& error) {
            console::WipeSecret(line_);
            throw TroubleError("the answer to " + asking_.Last().Text() + ": " + error.what());
        }
        line_ += '\n';
    }

    // A terminal shows what was typed there; who reads its screen is to see the same now.
    void Show(const tavrohost::Answer& answer, bool isSecret) const {
        if (!asking_.IsOnTerminal() || isSecret) {
            return;
        }
        if (answer.source == tavrohost::Answer::Source::Text) {
            console::Print(tavrolib::WideFromUtf8(answer.text));
        }
        console::EndLine();
    }

    AnswerBook book_;
    Asking asking_;
    std::string line_;          // the answer that is being read
    std::size_t position_ = 0;  // of what is left of it
};

}  // namespace

console::Device Answering(console::Device device, AnswerBook book, AskingRun run) {
    const auto input =
        std::make_shared<AnswerInput>(std::move(book), Asking(std::move(run), device.isTerminal));
    device.asked = [input](std::wstring_view openLine, bool isSecret) {
        input->Ask(openLine, isSecret);
    };
    device.readBytes = [input](char* buffer, std::size_t size) {
        return input->Read(buffer, size);
    };
    device.refused = [input] { input->Refuse(); };
    device.keysFromTerminal = false;
    return device;
}

console::Device EndingWithInput(console::Device device, AskingRun run) {
    struct Input {
        Asking asking;
        std::function<std::size_t(char*, std::size_t)> read;
        bool hasEnded = false;
    };
    const auto input = std::make_shared<Input>(Input{
        .asking = Asking(std::move(run), device.isTerminal), .read = std::move(device.readBytes)});
    device.asked = [input](std::wstring_view openLine, bool /*isSecret*/) {
        if (!openLine.empty()) {  // as it is while the rest of an answer is awaited
            input->asking.Note(openLine);
        }
    };
    device.readBytes = [input](char* buffer, std::size_t size) {
        const std::size_t count = input->read(buffer, size);
        input->hasEnded = count == 0;
        return count;
    };
    device.refused = [input] {
        if (input->hasEnded) {
            input->asking.Abandon("the answer to " + input->asking.Last().Text() +
                                  " was refused, and standard input has ended");
        }
    };
    return device;
}

}  // namespace tavrohost
