// The questions of `-iscsi <MAC> -setbootconfig`.
#include "iscsi/boot_dialogue.h"

#include "adapters/address_lookup.h"
#include "cli/prompts.h"
#include "cli/validation.h"
#include "cli/yes_no.h"
#include "console/question.h"
#include "console/wipe.h"
#include "mgmt/message.h"

namespace tavro {

namespace {

using tavroapi::IscsiBootConfig;
namespace position = tavroapi::iscsi_boot;

constexpr const char* DefaultIscsiPort = "3260";
constexpr std::int32_t LongestLinkUpDelay = 60;
constexpr std::int32_t MostRetries = 99;

// The questions about one boot target. They differ in their order and in what is checked: the LUN
// of the first target must be digits, that of the second may be any line.
struct TargetQuestions {
    std::size_t target;  // where the target's texts start
    MessageId used;
    MessageId address;
    MessageId port;
    MessageId portRefused;
    MessageId lun;
    MessageId name;
    MessageId chapName;
    MessageId chapSecret;
};

constexpr TargetQuestions FirstTargetQuestions = {
    .target = position::FirstTarget,
    .used = MessageId::AskFirstBootTargetUsed,
    .address = MessageId::AskFirstBootTargetAddress,
    .port = MessageId::AskFirstBootTargetPort,
    .portRefused = MessageId::BootTargetPortRefused,
    .lun = MessageId::AskFirstBootTargetLun,
    .name = MessageId::AskFirstBootTargetName,
    .chapName = MessageId::AskFirstBootTargetChapName,
    .chapSecret = MessageId::AskFirstBootTargetChapSecret,
};

constexpr TargetQuestions SecondTargetQuestions = {
    .target = position::SecondTarget,
    .used = MessageId::AskSecondBootTargetUsed,
    .address = MessageId::AskSecondBootTargetAddress,
    .port = MessageId::AskSecondBootTargetPort,
    .portRefused = MessageId::BootTargetNumberRefused,
    .lun = MessageId::AskSecondBootTargetLun,
    .name = MessageId::AskSecondBootTargetName,
    .chapName = MessageId::AskSecondBootTargetChapName,
    .chapSecret = MessageId::AskSecondBootTargetChapSecret,
};

const char* SwitchText(bool isOn) {
    return isOn ? "Enabled" : "Disabled";
}

std::string AskSwitch(MessageId prompt) {
    return SwitchText(AskYesNo(AskLine(prompt)));
}

template <class Accept>
std::string AskUntil(MessageId prompt, Accept accept, MessageId retryPrompt) {
    return console::AskWithRetryPrompt([=] { ShowPrompt(prompt); },
                                       [=] { ShowPrompt(retryPrompt); }, accept);
}

std::string AskNumber(MessageId prompt, std::int32_t maximum, MessageId retryPrompt) {
    const auto isInRange = [=](const std::string& answer) {
        return IsNumberInRange(answer, maximum);
    };
    return AskUntil(prompt, isInRange, retryPrompt);
}

std::string AskAddress(MessageId prompt) {
    return AskUntil(
        prompt, [](const std::string& answer) { return IsValidIPv4(answer); },
        MessageId::InvalidAddress);
}

std::string AskDigits(MessageId prompt, MessageId retryPrompt) {
    return AskUntil(
        prompt, [](const std::string& answer) { return !HasNonDigit(answer); }, retryPrompt);
}

// Asks for a secret twice, from the first again while the two differ.
void AskConfirmedSecret(std::string& secret, MessageId prompt, MessageId confirmation) {
    std::string repeated;
    const console::SecretGuard guard(repeated);
    do {
        ShowPrompt(prompt);
        console::ReadSecret(secret);
        ShowPrompt(confirmation);
        console::ReadSecret(repeated);
    } while (secret != repeated);
}

void AskGeneral(IscsiBootConfig& config) {
    ShowSectionTitle(MessageId::IscsiBootGeneralSection);
    config.texts[position::TcpIpByDhcp] = AskSwitch(MessageId::AskIscsiBootTcpIpByDhcp);
    config.texts[position::ParametersByDhcp] = AskSwitch(MessageId::AskIscsiBootParametersByDhcp);
    config.texts[position::LinkUpDelay] =
        AskNumber(MessageId::AskIscsiBootLinkUpDelay, LongestLinkUpDelay,
                  MessageId::IscsiBootLinkUpDelayRefused);
    config.texts[position::RetryCount] = AskNumber(MessageId::AskIscsiBootRetryCount, MostRetries,
                                                   MessageId::IscsiBootRetryCountRefused);
}

void AskInitiator(IscsiBootConfig& config) {
    ShowSectionTitle(MessageId::IscsiBootInitiatorSection);
    config.texts[position::IpAddress] = AskAddress(MessageId::AskIscsiBootIpAddress);
    config.texts[position::SubnetMask] = AskAddress(MessageId::AskIscsiBootSubnetMask);
    config.texts[position::Gateway] = AskAddress(MessageId::AskIscsiBootGateway);
    config.texts[position::InitiatorName] = AskLine(MessageId::AskIscsiBootInitiatorName);
    config.texts[position::ChapName] = AskLine(MessageId::AskIscsiBootChapName);
    AskConfirmedSecret(config.texts[position::ChapSecret], MessageId::AskIscsiBootChapSecret,
                       MessageId::ConfirmIscsiBootChapSecret);
}

// False, and nothing more is to be asked about the target, when it is not used.
bool AskTargetUsed(IscsiBootConfig& config, const TargetQuestions& questions) {
    const bool isUsed = AskYesNo(AskLine(questions.used));
    config.texts[questions.target + position::TargetUsed] = SwitchText(isUsed);
    return isUsed;
}

void AskTargetAddress(IscsiBootConfig& config, const TargetQuestions& questions) {
    config.texts[questions.target + position::TargetAddress] = AskAddress(questions.address);
}

// An empty answer keeps the default port.
void AskTargetPort(IscsiBootConfig& config, const TargetQuestions& questions) {
    const std::string answer = AskDigits(questions.port, questions.portRefused);
    config.texts[questions.target + position::TargetPort] =
        answer.empty() ? DefaultIscsiPort : answer;
}

void AskTargetNames(IscsiBootConfig& config, const TargetQuestions& questions) {
    config.texts[questions.target + position::TargetName] = AskLine(questions.name);
    config.texts[questions.target + position::TargetChapName] = AskLine(questions.chapName);
    AskConfirmedSecret(config.texts[questions.target + position::TargetChapSecret],
                       questions.chapSecret, MessageId::ConfirmBootTargetChapSecret);
}

void AskFirstTarget(IscsiBootConfig& config) {
    ShowSectionTitle(MessageId::FirstBootTargetSection);
    if (!AskTargetUsed(config, FirstTargetQuestions)) {
        return;
    }
    AskTargetAddress(config, FirstTargetQuestions);
    AskTargetPort(config, FirstTargetQuestions);
    config.texts[FirstTargetQuestions.target + position::TargetLun] =
        AskDigits(FirstTargetQuestions.lun, MessageId::BootTargetNumberRefused);
    AskTargetNames(config, FirstTargetQuestions);
}

void AskSecondTarget(IscsiBootConfig& config) {
    ShowSectionTitle(MessageId::SecondBootTargetSection);
    if (!AskTargetUsed(config, SecondTargetQuestions)) {
        return;
    }
    AskTargetAddress(config, SecondTargetQuestions);
    config.texts[SecondTargetQuestions.target + position::TargetLun] =
        AskLine(SecondTargetQuestions.lun);
    AskTargetPort(config, SecondTargetQuestions);
    AskTargetNames(config, SecondTargetQuestions);
}

void AskAddressBinding(const std::string& mac, EntryCache& cache, IscsiBootConfig& config) {
    const bool isBound = AskYesNo(AskLine(MessageId::AskIscsiBootAddressBinding));
    config.texts[position::AddressBinding] = SwitchText(isBound);
    if (!isBound) {
        return;
    }
    if (const auto address = FindFunctionAddress(cache, mac)) {
        config.texts[position::BoundAddress] = *address;
        console::EndLine();
        ShowMessage(MessageId::IscsiBootAddressFound, *address, Layout::Row);
    } else {
        ShowMessage(MessageId::IscsiBootAddressNotFound, NoValue, Layout::Row);
        config.texts[position::AddressBinding] = SwitchText(false);
    }
}

void AskOptions(const std::string& mac, EntryCache& cache, IscsiBootConfig& config) {
    ShowSectionTitle(MessageId::IscsiBootOptionsSection);
    AskAddressBinding(mac, cache, config);
    config.texts[position::TargetIsFirstDisk] = AskSwitch(MessageId::AskIscsiBootTargetIsFirstDisk);
    config.texts[position::BootFromTarget] = AskSwitch(MessageId::AskIscsiBootFromTarget);
}

}  // namespace

void ShowSectionTitle(MessageId title) {
    ShowMessage(title, "", Layout::Title);
}

void AskIscsiBoot(const std::string& mac, EntryCache& cache, IscsiBootConfig& config) {
    AskGeneral(config);
    AskInitiator(config);
    AskFirstTarget(config);
    AskSecondTarget(config);
    AskOptions(mac, cache, config);
}

}  // namespace tavro
