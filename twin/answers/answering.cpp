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
#include "twin/exit_status.h"
#include "twin/platform/environment.h"

namespace tavrohost {
namespace {

namespace console = tavro::console;

// What is an answer at most, in bytes; an environment variable may hold more.
constexpr std::size_t LongestLine = 4000;

// Reads the first line of the file, which may be a pipe. No copy stays behind but the result.
void ReadFirstLine(const std::string& name, std::string& line) {
    std::filebuf file;
    file.pubsetbuf(nullptr, 0);
    if (file.open(std::filesystem::path(std::u8string(name.begin(), name.end())),
                  std::ios::in | std::ios::binary) == nullptr) {
        throw TroubleError(name + " cannot be read");
    }
    line.resize(LongestLine + 1);
    const std::streamsize count =
        file.sgetn(line.data(), static_cast<std::streamsize>(line.size()));
    const std::string_view content(line.data(), static_cast<std::size_t>(count));
    const std::size_t end = std::min(content.find_first_of("\r\n"), content.size());
    tavro::platform::WipeBytes(line.data() + end, line.size() - end);
    line.resize(end);
    if (end > LongestLine) {
        throw TroubleError("the first line of " + name + " is too long");
    }
}

// Puts the answer into a text that has room for it, so that no copy is made on the way.
void ReadAnswer(const Answer& answer, std::string& line) {
    switch (answer.source) {
        case Answer::Source::File:
            ReadFirstLine(answer.text, line);
            return;
        case Answer::Source::Environment:
            if (const auto value = platform::TextVariable(answer.text)) {
                line = *value;
                return;
            }
            throw TroubleError("there is no environment variable " + answer.text);
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

// The answers of one run as input.
class AnswerInput {
  public:
    AnswerInput(AnsweringRun run, bool isOnTerminal)
        : run_(std::move(run)), isOnTerminal_(isOnTerminal) {
        line_.reserve(LongestLine + 2);
    }
    ~AnswerInput() { console::WipeSecret(line_); }
    AnswerInput(const AnswerInput&) = delete;
    AnswerInput& operator=(const AnswerInput&) = delete;

    void Ask(std::wstring_view openLine, bool isSecret) {
        if (position_ < line_.size()) {
            return;  // the rest of an answer that is being read
        }
        question_ = {.message = run_.messageIn(openLine), .prompt = Trimmed(openLine)};
        try {
            const tavrohost::Answer& answer = run_.book.Next(question_);
            Take(answer, isSecret);
            Show(answer, isSecret);
        } catch (const TroubleError& error) {
            Abandon(error.what());
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

    [[noreturn]] void Refuse() { Abandon("the answer to " + question_.Text() + " was refused"); }

  private:
    void Take(const tavrohost::Answer& answer, bool isSecret) {
        if (isSecret && answer.source == tavrohost::Answer::Source::Text) {
            throw TroubleError(question_.Text() +
                               " asks for a secret, which has to come from a file or the "
                               "environment");
        }
        try {
            ReadAnswer(answer, line_);
            EncodeAsTyped(line_);
        } catch (const TroubleError& error) {
            console::WipeSecret(line_);
            throw TroubleError("the answer to " + question_.Text() + ": " + error.what());
        }
        line_ += '\n';
    }

    // A terminal shows what was typed there; who reads its screen is to see the same now.
    void Show(const tavrohost::Answer& answer, bool isSecret) const {
        if (!isOnTerminal_ || isSecret) {
            return;
        }
        if (answer.source == tavrohost::Answer::Source::Text) {
            console::Print(tavrolib::WideFromUtf8(answer.text));
        }
        console::EndLine();
    }

    static std::string Trimmed(std::wstring_view openLine) {
        constexpr const wchar_t* Blanks = L" \t";
        const std::size_t first = openLine.find_first_not_of(Blanks);
        if (first == std::wstring_view::npos) {
            return {};
        }
        return tavrolib::Utf8FromWide(
            openLine.substr(first, openLine.find_last_not_of(Blanks) - first + 1));
    }

    [[noreturn]] void Abandon(const std::string& sentence) {
        if (isOnTerminal_) {
            console::EndLine();  // the sentence gets a line of its own
        }
        run_.trouble(sentence);
        throw console::CommandAbandoned(sentence);
    }

    AnsweringRun run_;
    bool isOnTerminal_;
    Question question_;
    std::string line_;          // the answer that is being read
    std::size_t position_ = 0;  // of what is left of it
};

}  // namespace

console::Device Answering(console::Device device, AnsweringRun run) {
    const auto input = std::make_shared<AnswerInput>(std::move(run), device.isTerminal);
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

}  // namespace tavrohost
