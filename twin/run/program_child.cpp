#include "twin/run/program_child.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "console/console.h"
#include "console/redirect.h"
#include "library/text/text.h"
#include "platform/crash_dump.h"
#include "platform/keyboard.h"
#include "platform/output.h"
#include "program.h"
#include "twin/answers/answering.h"
#include "twin/run/library_source.h"
#include "twin/watch/watch.h"

namespace tavrohost {
namespace {

using tavrolib::Json;
namespace console = tavro::console;

// Kept output is at most so large; then it is lost like that to a file that must not grow.
constexpr std::size_t LargestOutput = std::size_t{32} << 20;

// What is printed, as UTF-8 whatever it would be encoded in, in the process's standard output.
console::Device KeptOutput() {
    console::Device device = console::StandardDevice();
    device.writeText = [size = std::size_t{0}](std::wstring_view text) mutable {
        const std::string bytes = tavrolib::Utf8FromWide(text);
        size += bytes.size();
        return size <= LargestOutput && tavro::platform::WriteStandardOutput(bytes);
    };
    device.isTerminal = false;
    device.lineEnd = "\n";
    return device;
}

bool NobodySeesQuestions(bool keepsOutput) {
    return keepsOutput && tavro::platform::StandardInputIsTerminal();
}

// The sentence of the program's line "tavrocli: <sentence>".
std::string SentenceIn(std::wstring_view line) {
    constexpr std::wstring_view Start = L"tavrocli: ";
    if (line.starts_with(Start)) {
        line.remove_prefix(Start.size());
    }
    return tavrolib::Utf8FromWide(line.substr(0, line.find(L'\n')));
}

}  // namespace

std::filesystem::path JournalFileIn(const std::filesystem::path& folder) {
    return folder / "journal";
}

Json DetailsOf(const ProgramJob& job) {
    Json details{{"library", JsonOf(job.library)}, {"keepsOutput", job.output == OutputUse::Keep}};
    if (job.answers) {
        details["answers"] = *job.answers;
    }
    return details;
}

int RunAsProgram(const ReceivedJob& job, int argc, const char* const* argv) {
    const bool keepsOutput = job.details.at("keepsOutput").get<bool>();
    const bool hasAnswers = job.details.contains("answers");
    const LibraryChoice library = LibraryFrom(job.details.at("library"));
    if (library.kind == LibraryChoice::Kind::Twin) {
        tavro::platform::ForbidCrashDumps();  // a host file may hold secrets
    }
    Watch watch(SourceOf(library), JournalFileIn(job.folder));
    JournalWriter& journal = watch.Writer();
    tavro::UseLibrary(watch.Watched());
    AskingRun asking{
        .messageIn = [&](std::wstring_view line) { return watch.MessageIn(line); },
        .trouble = [&](const std::string& sentence) { journal.NoteTrouble(sentence); }};
    console::Device device = keepsOutput ? KeptOutput() : console::StandardDevice();
    if (hasAnswers || NobodySeesQuestions(keepsOutput)) {
        device = Answering(std::move(device),
                           hasAnswers ? AnswerBook(job.details["answers"]) : AnswerBook(),
                           std::move(asking));
    } else if (keepsOutput || library.kind == LibraryChoice::Kind::Twin) {
        device = EndingWithInput(std::move(device), std::move(asking));
    }
    std::wstring failure;
    bool outputIsLost = false;
    {
        const console::Redirect redirect(std::move(device));
        failure = tavro::RunCommandLine(argc, argv);
        outputIsLost = console::OutputIsLost();
    }
    if (!failure.empty()) {
        tavro::platform::WriteStandardError(failure);
        journal.NoteTrouble("the command failed: " + SentenceIn(failure));
    }
    if (outputIsLost) {
        journal.NoteTrouble(keepsOutput
                                ? "the output of the command is too large, or cannot be kept"
                                : "standard output cannot be written");
    }
    journal.Close();
    return 0;
}

}  // namespace tavrohost
