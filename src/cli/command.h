// What a command is: one row with everything that the grammar, the main flow and the tests know of
// it. The rows of a group of commands stand in the source file of their handlers.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "cli/operand.h"

namespace tavro {

struct Invocation;

// What the command line asks for: the code of a row, 0 to 63. 31 is never produced.
enum class CommandCode : std::uint32_t {
    NotRecognised = 0,
    TooFewArguments = 1,
};

inline constexpr std::uint32_t LastCommandCode = 63;

// What becomes of a command while the adapter state is restricted.
enum class AccessClass {
    Runs,     // runs without a word
    Warns,    // runs after a warning
    Blocked,  // changes adapters: is not run
};

// How an operand that is left out is taken.
enum class Presence {
    Needed,     // the grammar finds too few arguments
    Uncounted,  // the command needs it, yet the grammar does not count it: the handler finds out
    Optional,   // the command does without
};

// One word of a form as it is typed: a keyword, or an operand. Both convert, so that a form reads
// as it is typed.
struct FormElement {
    constexpr FormElement() = default;
    // NOLINTBEGIN(google-explicit-constructor)
    constexpr FormElement(const char* keyword) : word(keyword) {}
    constexpr FormElement(const Operand& typed, Presence taken = Presence::Needed)
        : operand(&typed), presence(taken) {}
    // NOLINTEND(google-explicit-constructor)

    std::string_view word;             // empty when an operand stands here
    const Operand* operand = nullptr;  // null when a keyword stands here, and past the form's end
    Presence presence = Presence::Needed;
};

constexpr FormElement Uncounted(const Operand& operand) {
    return {operand, Presence::Uncounted};
}

constexpr FormElement Optional(const Operand& operand) {
    return {operand, Presence::Optional};
}

// A command as it is typed, from the first argument on. Elements past its end are empty; a form
// that is empty altogether is typed by nobody.
struct CommandForm {
    static constexpr std::size_t MostElements = 9;
    std::array<FormElement, MostElements> elements;

    // The position of an element's argument; the program's name is at position 0.
    static constexpr std::size_t PositionOf(std::size_t index) { return index + 1; }

    // The elements up to the form's end.
    constexpr std::span<const FormElement> Elements() const {
        std::size_t count = 0;
        while (count < MostElements &&
               (!elements[count].word.empty() || elements[count].operand != nullptr)) {
            ++count;
        }
        return std::span(elements).first(count);
    }
};

// Words behind those of a form.
enum class FurtherWords { Ignored, Refused };

// One row of the command table. Code, form, access class and handler have no defaults: a row that
// leaves one out does not compile.
// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init)
struct Command {
    CommandCode code;
    CommandForm form;
    // Another form of the same command, which differs in its operands only.
    CommandForm otherForm{};
    // What an operand that is needed gives when it is missing.
    CommandCode tooFew = CommandCode::NotRecognised;
    FurtherWords furtherWords = FurtherWords::Ignored;
    AccessClass access;
    void (*handler)(const Invocation&);
};

}  // namespace tavro
