#include "completions/program_forms.h"

#include <algorithm>
#include <string_view>

#include "cli/login_options.h"
#include "cli/startup.h"

namespace completions {
namespace {

// Whose ports the commands of a family are addressed to, in the words of the adapter listing.
constexpr struct {
    std::string_view family;
    std::string_view protocol;
} PortsOfFamilies[] = {{"-iscsi", "iSCSI"}, {"-fcoe", "FCoE"}, {"-ethernet", "Ethernet"}};

constexpr std::string_view PortOfAnyKind = "any";

std::string_view PortsOf(std::string_view family) {
    const auto* const found =
        std::ranges::find(PortsOfFamilies, family, [](const auto& row) { return row.family; });
    return found == std::end(PortsOfFamilies) ? PortOfAnyKind : found->protocol;
}

bool IsPort(const tavro::Operand& operand) {
    return &operand == &tavro::operand::PortMac || &operand == &tavro::operand::PortWwn;
}

std::string LoginOptions() {
    std::string words;
    for (const std::string_view option : tavro::LoginOptionWords()) {
        words.append(option).append("|");
    }
    return words.append(tavro::DebugSwitch).append("...");
}

std::string WordOf(const tavro::Operand& operand, std::string_view family) {
    switch (operand.kind) {
        case tavro::OperandKind::Word:
            return std::string(operand.name);
        case tavro::OperandKind::LoginOptions:
            return LoginOptions();
        default:
            break;
    }
    std::string name(operand.name);
    std::ranges::replace(name, ' ', '_');
    if (IsPort(operand)) {
        name.append("@").append(PortsOf(family));
    }
    return "<" + name + ">" + (operand.isRepeated ? "..." : "");
}

// Whether the switch behind the last word of the form is nothing but the switch. Behind words that
// may come again it would be one of them, and options that may be left out count only when nothing
// follows.
bool TakesDebugSwitch(const tavro::Command& command, const tavro::CommandForm& form) {
    return command.furtherWords == tavro::FurtherWords::Ignored &&
           std::ranges::none_of(form.Elements(), [](const tavro::FormElement& element) {
               const tavro::Operand* const operand = element.operand;
               return operand != nullptr &&
                      (operand->isRepeated || operand->kind == tavro::OperandKind::LoginOptions ||
                       (operand->kind == tavro::OperandKind::Word &&
                        element.presence == tavro::Presence::Optional));
           });
}

std::string LineOf(const tavro::Command& command, const tavro::CommandForm& form) {
    const auto elements = form.Elements();
    const std::string_view family = elements.front().word;
    std::string line;
    for (const tavro::FormElement& element : elements) {
        line += line.empty() ? "" : " ";
        line += element.operand == nullptr ? std::string(element.word)
                                           : WordOf(*element.operand, family);
    }
    return TakesDebugSwitch(command, form) ? line.append(" ").append(tavro::DebugSwitch) : line;
}

}  // namespace

std::vector<std::string> ProgramForms(std::span<const tavro::Command* const> commands) {
    std::vector<std::string> lines;
    for (const tavro::Command* const command : commands) {
        for (const tavro::CommandForm* const form : {&command->form, &command->otherForm}) {
            if (!form->Elements().empty()) {
                lines.push_back(LineOf(*command, *form));
            }
        }
    }
    return lines;
}

}  // namespace completions
