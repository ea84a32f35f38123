#include "cli/login_options.h"

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

}  // namespace

void ResetLoginOptions(tavroapi::LoginOptions& options) {
    options = {};
    options.multipath = "Yes";
    options.headerDigest = "No";
    options.dataDigest = "No";
    options.authentication = "None";
}

int ParseLoginOptions(tavroapi::LoginOptions& options, Arguments arguments, std::size_t first) {
    for (std::size_t position = first; position < arguments.size(); ++position) {
        const std::string_view word = arguments[position];
        if (word == "-mp") {
            options.multipath = "No";
        } else if (word == "-hd") {
            options.headerDigest = "CRC32C";
        } else if (word == "-dd") {
            options.dataDigest = "CRC32C";
        } else if (word == "-mutualchap") {
            options.authentication = "Mutual CHAP";
            AskTargetChap(options);
            AskInitiatorChap(options);
        } else if (word == "-onewaychap") {
            options.authentication = "One-way CHAP";
            AskTargetChap(options);
        }
    }
    return 0;
}

}  // namespace tavro
