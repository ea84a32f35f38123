#include "cli/login_options.h"

#include <algorithm>
#include <string_view>

#include "cli/questions.h"

namespace tavro {

namespace {

constexpr std::size_t ShortestSecret = 12;
constexpr std::size_t LongestSecret = 16;

void AskChapSecret(std::string& secret, MessageId prompt) {
    AskSecret(secret, {prompt, Refusal::RetryPrompt(MessageId::ChapSecretRefused)},
              [](const std::string& entered) {
                  return entered.size() >= ShortestSecret && entered.size() <= LongestSecret;
              });
}

void AskTargetChap(tavroapi::LoginOptions& options) {
    options.targetChapName = AskLine(MessageId::AskTargetChapName);
    AskChapSecret(options.targetSecret, MessageId::AskTargetSecret);
}

void AskInitiatorChap(tavroapi::LoginOptions& options) {
    options.initiatorChapName = AskLine(MessageId::AskInitiatorChapName);
    AskChapSecret(options.initiatorSecret, MessageId::AskInitiatorSecret);
}

// What each option does to the options.
constexpr struct {
    std::string_view word;
    void (*take)(tavroapi::LoginOptions& options);
} OptionWords[] = {
    {"-mp", [](tavroapi::LoginOptions& options) { options.multipath = "No"; }},
    {"-hd", [](tavroapi::LoginOptions& options) { options.headerDigest = "CRC32C"; }},
    {"-dd", [](tavroapi::LoginOptions& options) { options.dataDigest = "CRC32C"; }},
    {"-mutualchap",
     [](tavroapi::LoginOptions& options) {
         options.authentication = "Mutual CHAP";
         AskTargetChap(options);
         AskInitiatorChap(options);
     }},
    {"-onewaychap",
     [](tavroapi::LoginOptions& options) {
         options.authentication = "One-way CHAP";
         AskTargetChap(options);
     }},
};

}  // namespace

void ResetLoginOptions(tavroapi::LoginOptions& options) {
    options = {};
    options.multipath = "Yes";
    options.headerDigest = "No";
    options.dataDigest = "No";
    options.authentication = "None";
}

std::vector<std::string_view> LoginOptionWords() {
    std::vector<std::string_view> words;
    for (const auto& option : OptionWords) {
        words.push_back(option.word);
    }
    return words;
}

bool IsLoginOption(std::string_view word) {
    return std::ranges::any_of(OptionWords,
                               [&](const auto& option) { return option.word == word; });
}

int ParseLoginOptions(tavroapi::LoginOptions& options, Arguments arguments, std::size_t first) {
    for (std::size_t position = first; position < arguments.size(); ++position) {
        for (const auto& [word, take] : OptionWords) {
            if (word == arguments[position]) {
                take(options);
            }
        }
    }
    return 0;
}

}  // namespace tavro
