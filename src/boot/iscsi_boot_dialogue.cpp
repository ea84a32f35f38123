// The questions of `-iscsi <MAC> -setbootconfig`.
#include "boot/iscsi_boot_dialogue.h"

#include "adapters/address_lookup.h"
#include "cli/questions.h"
#include "console/console.h"
#include "mgmt/message.h"

namespace tavro {

namespace {

using tavroapi::IscsiBootConfig;
namespace position = tavroapi::iscsi_boot;

constexpr const char* DefaultIscsiPort = "3260";
constexpr std::int32_t LongestLinkUpDelay = 60;
constexpr std::int32_t MostRetries = 99;

constexpr Refusal IscsiSwitchRefusal = Refusal::RetryPrompt(MessageId::AskYesOrNo);

// The questions about one boot target. They differ in their order and in what is checked: the LUN
// of the first target must be digits, that of the second may be any line.
struct TargetQuestions {
    std::size_t target = 0;  // where the target's texts start
    MessageId used{};
    MessageId address{};
    Question port;
    MessageId lun{};
    MessageId name{};
    MessageId chapName{};
    MessageId chapSecret{};
};

constexpr TargetQuestions FirstTargetQuestions = {
    .target = position::FirstTarget,
    .used = MessageId::AskFirstBootTargetUsed,
    .address = MessageId::AskFirstBootTargetAddress,
    .port = {MessageId::AskFirstBootTargetPort,
             Refusal::RetryPrompt(MessageId::BootTargetPortRefused)},
    .lun = MessageId::AskFirstBootTargetLun,
    .name = MessageId::AskFirstBootTargetName,
    .chapName = MessageId::AskFirstBootTargetChapName,
    .chapSecret = MessageId::AskFirstBootTargetChapSecret,
};

constexpr TargetQuestions SecondTargetQuestions = {
    .target = position::SecondTarget,
    .used = MessageId::AskSecondBootTargetUsed,
    .address = MessageId::AskSecondBootTargetAddress,
    .port = {MessageId::AskSecondBootTargetPort,
             Refusal::RetryPrompt(MessageId::BootTargetNumberRefused)},
    .lun = MessageId::AskSecondBootTargetLun,
    .name = MessageId::AskSecondBootTargetName,
    .chapName = MessageId::AskSecondBootTargetChapName,
    .chapSecret = MessageId::AskSecondBootTargetChapSecret,
};

void AskGeneral(IscsiBootConfig& config) {
    ShowSectionTitle(MessageId::IscsiBootGeneralSection);
    config.texts[position::TcpIpByDhcp] =
        AskSwitch({MessageId::AskIscsiBootTcpIpByDhcp, IscsiSwitchRefusal});
    config.texts[position::ParametersByDhcp] =
        AskSwitch({MessageId::AskIscsiBootParametersByDhcp, IscsiSwitchRefusal});
    config.texts[position::LinkUpDelay] =
        AskNumber({MessageId::AskIscsiBootLinkUpDelay,
                   Refusal::RetryPrompt(MessageId::IscsiBootLinkUpDelayRefused)},
                  LongestLinkUpDelay);
    config.texts[position::RetryCount] =
        AskNumber({MessageId::AskIscsiBootRetryCount,
                   Refusal::RetryPrompt(MessageId::IscsiBootRetryCountRefused)},
                  MostRetries);
}

void AskInitiator(IscsiBootConfig& config) {
    ShowSectionTitle(MessageId::IscsiBootInitiatorSection);
    config.texts[position::IpAddress] = AskIPv4Address(MessageId::AskIscsiBootIpAddress);
    config.texts[position::SubnetMask] = AskIPv4Address(MessageId::AskIscsiBootSubnetMask);
    config.texts[position::Gateway] = AskIPv4Address(MessageId::AskIscsiBootGateway);
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
    config.texts[questions.target + position::TargetAddress] = AskIPv4Address(questions.address);
}

// An empty answer keeps the default port.
void AskTargetPort(IscsiBootConfig& config, const TargetQuestions& questions) {
    const std::string answer = AskDigits(questions.port);
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
    config.texts[FirstTargetQuestions.target + position::TargetLun] = AskDigits(
        {FirstTargetQuestions.lun, Refusal::RetryPrompt(MessageId::BootTargetNumberRefused)});
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

void AskAddressBinding(const std::string& mac, IscsiBootConfig& config) {
    const bool isBound = AskYesNo(AskLine(MessageId::AskIscsiBootAddressBinding));
    config.texts[position::AddressBinding] = SwitchText(isBound);
    if (!isBound) {
        return;
    }
    if (const auto address = FindFunctionAddress(mac)) {
        config.texts[position::BoundAddress] = *address;
        console::EndLine();
        ShowMessage(MessageId::IscsiBootAddressFound, *address, Layout::Row);
    } else {
        ShowMessage(MessageId::IscsiBootAddressNotFound, NoValue, Layout::Row);
        config.texts[position::AddressBinding] = SwitchText(false);
    }
}

void AskOptions(const std::string& mac, IscsiBootConfig& config) {
    ShowSectionTitle(MessageId::IscsiBootOptionsSection);
    AskAddressBinding(mac, config);
    config.texts[position::TargetIsFirstDisk] =
        AskSwitch({MessageId::AskIscsiBootTargetIsFirstDisk, IscsiSwitchRefusal});
    config.texts[position::BootFromTarget] =
        AskSwitch({MessageId::AskIscsiBootFromTarget, IscsiSwitchRefusal});
}

}  // namespace

void ShowSectionTitle(MessageId title) {
    ShowMessage(title, "", Layout::Title);
}

void AskIscsiBoot(const std::string& mac, IscsiBootConfig& config) {
    AskGeneral(config);
    AskInitiator(config);
    AskFirstTarget(config);
    AskSecondTarget(config);
    AskOptions(mac, config);
}

}  // namespace tavro
