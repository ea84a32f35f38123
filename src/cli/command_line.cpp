#include "cli/command_line.h"

#include <algorithm>
#include <limits>
#include <string_view>

namespace tavro {

std::string CurrentMacText;
std::string CurrentWwnText;

namespace {

using CommandRows = std::span<const Command* const>;

// Where a form has its family, and, when its commands are addressed to one, the port.
constexpr std::size_t FamilyIndex = 0;
constexpr std::size_t PortIndex = 1;

// In a family of ports, fewer arguments than these are never recognised, and no identifier is
// stored. With as many it is stored, whatever the further arguments are.
constexpr std::size_t FewestArgumentsWithPort = 4;

std::string_view WordAt(Arguments arguments, std::size_t index) {
    const std::size_t position = CommandForm::PositionOf(index);
    return position < arguments.size() ? arguments[position] : std::string_view{};
}

// Where the identifier of a form's port is stored; null when the form is about the whole host.
std::string* IdentifierOf(const CommandForm& form) {
    const Operand* const port = form.elements[PortIndex].operand;
    if (port == &operand::PortMac) {
        return &CurrentMacText;
    }
    return port == &operand::PortWwn ? &CurrentWwnText : nullptr;
}

// Where the identifier in these arguments is to be stored; null when there is none. A word that
// some command of the family has in the place of the port is a keyword, never an identifier.
std::string* IdentifierIn(Arguments arguments, CommandRows commands) {
    const std::string_view family = WordAt(arguments, FamilyIndex);
    const std::string_view port = WordAt(arguments, PortIndex);
    std::string* identifier = nullptr;
    for (const Command* const command : commands) {
        const auto& elements = command->form.elements;
        if (family.empty() || elements[FamilyIndex].word != family) {
            continue;
        }
        if (!port.empty() && elements[PortIndex].word == port) {
            return nullptr;
        }
        if (identifier == nullptr) {
            identifier = IdentifierOf(command->form);
        }
    }
    return identifier;
}

// Whether the keywords are where the form has them.
bool Matches(const CommandForm& form, Arguments arguments) {
    const auto elements = form.Elements();
    for (std::size_t index = 0; index < elements.size(); ++index) {
        const std::string_view word = elements[index].word;
        if (!word.empty() && word != WordAt(arguments, index)) {
            return false;
        }
    }
    return !elements.empty();
}

// With fewer arguments than these a keyword or an operand is missing that is needed.
std::size_t FewestArguments(const CommandForm& form) {
    std::size_t fewest = 0;
    const auto elements = form.Elements();
    for (std::size_t index = 0; index < elements.size(); ++index) {
        if (elements[index].presence == Presence::Needed) {
            fewest = CommandForm::PositionOf(index) + 1;
        }
    }
    return fewest;
}

std::size_t MostArguments(const Command& command) {
    return command.furtherWords == FurtherWords::Refused
               ? CommandForm::PositionOf(command.form.Elements().size())
               : std::numeric_limits<std::size_t>::max();
}

}  // namespace

CommandCode ParseCommandLine(Arguments arguments, CommandRows commands) {
    std::string* const identifier = IdentifierIn(arguments, commands);
    if (identifier != nullptr) {
        if (arguments.size() < FewestArgumentsWithPort) {
            return CommandCode::NotRecognised;
        }
        *identifier = arguments[CommandForm::PositionOf(PortIndex)];
    }
    for (const Command* const command : commands) {
        if (IdentifierOf(command->form) != identifier || !Matches(command->form, arguments)) {
            continue;
        }
        if (arguments.size() > MostArguments(*command)) {
            return CommandCode::NotRecognised;
        }
        return arguments.size() < FewestArguments(command->form) ? command->tooFew : command->code;
    }
    return CommandCode::NotRecognised;
}

std::string PortIdentifierOf(const Command& command) {
    const std::string* const identifier = IdentifierOf(command.form);
    return identifier == nullptr ? std::string() : *identifier;
}

}  // namespace tavro
