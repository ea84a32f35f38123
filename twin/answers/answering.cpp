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

// The first line of the file, which may be a pipe. No copy stays behind but the result.
std::string FirstLineOf(const std::string& name) {
    constexpr std::size_t LongestLine = 4000;
    std::filebuf file;
    file.pubsetbuf(nullptr, 0);
    if (file.open(std::filesystem::path(std::u8string(name.begin(), name.end())),
                  std::ios::in | std::ios::binary) == nullptr) {
        throw TroubleError(name + " cannot be read");
    }
    std::array<char, LongestLine + 2> block{};
    const std::streamsize count = file.sgetn(block.data(), block.size());
    const std::string_view content(block.data(), static_cast<std::size_t>(count));
    std::string line(content.substr(0, content.find_first_of("\r\n")));
    tavro::platform::WipeBytes(block.data(), block.size());
    if (line.size() > LongestLine) {
        console::WipeSecret(line);
        throw TroubleError("the first line of " + name + " is too long");
    }
    return line;
}

std::string TextOf(const Answer& answer) {
    switch (answer.source) {
        case Answer::Source::File:
            return FirstLineOf(answer.text);
        case Answer::Source::Environment:
            if (auto value = platform::TextVariable(answer.text)) {
                return *std::move(value);
            }
            throw TroubleError("there is no environment variable " + answer.text);
        case Answer::Source::Text:
            break;
    }
    return answer.text;
}

bool IsAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char character) { return (character & 0x80) == 0; });
}

// The text as it would arrive if it were typed.
std::string AsTyped(std::string text) {
    const unsigned codePage = tavro::platform::OutputCodePage();
    if (codePage == tavro::platform::Utf8CodePage || IsAscii(text)) {
        return text;
    }
    std::wstring wide = tavrolib::WideFromUtf8(text);
    const tavro::platform::WipeAtEnd guard(wide);
    console::WipeSecret(text);
    auto typed = tavro::platform::EncodeExactly(wide, codePage);
    if (!typed) {
        throw TroubleError("it holds a character that the console's code page lacks");
    }
    return *std::move(typed);
}

// The answers of one run as input.
class AnswerInput {
  public:
    AnswerInput(AnsweringRun run, bool isOnTerminal)
        : run_(std::move(run)), isOnTerminal_(isOnTerminal) {}
    ~AnswerInput() { console::WipeSecret(line_); }
    AnswerInput(const AnswerInput&) = delete;
    AnswerInput& operator=(const AnswerInput&) = delete;

    void Ask(std::wstring_view openLine, bool isSecret) {
        if (!line_.empty()) {
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
        const std::size_t count = line_.copy(buffer, size);
        if (count < line_.size()) {
            std::string rest = line_.substr(count);
            line_.swap(rest);
            console::WipeSecret(rest);
        } else {
            console::WipeSecret(line_);
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
            line_ = AsTyped(TextOf(answer));
        } catch (const TroubleError& error) {
            throw TroubleError("the answer to " + question_.Text() + ": " + error.what());
        }
        std::string line;
        line.reserve(line_.size() + 1);
        line += line_;
        line += '\n';
        line_.swap(line);
        console::WipeSecret(line);
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
    std::string line_;  // what is left to be read of the answer
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
