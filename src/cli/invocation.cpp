#include "cli/invocation.h"

#include <stdexcept>

namespace tavro {

namespace {

std::size_t PositionOf(const Command& command, const Operand& operand) {
    for (const CommandForm* const form : {&command.form, &command.otherForm}) {
        const auto elements = form->Elements();
        for (std::size_t index = 0; index < elements.size(); ++index) {
            if (elements[index].operand == &operand) {
                return CommandForm::PositionOf(index);
            }
        }
    }
    throw std::logic_error("the command has no operand " + std::string(operand.name));
}

}  // namespace

bool Invocation::Has(const Operand& operand) const {
    return PositionOf(command, operand) < arguments.size();
}

std::string Invocation::Text(const Operand& operand) const {
    return ArgumentAt(arguments, PositionOf(command, operand));
}

Arguments Invocation::From(const Operand& operand) const {
    return Has(operand) ? arguments.subspan(PositionOf(command, operand)) : Arguments();
}

bool Invocation::EndsWith(const Operand& operand) const {
    return PositionOf(command, operand) + 1 == arguments.size();
}

}  // namespace tavro
