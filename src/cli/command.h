// What a command is: one row with everything that the grammar, the main flow and the tests know of
// it. The rows of a group of commands stand in the source file of their handlers.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "cli/operand.h"
#include "tavroapi/entry_points.h"
#include "tavroapi/operation_code.h"
#include "tavroapi/operations.h"

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

// A call of the library that tells how a command went: an operation, or an entry point by its name.
struct DecidingCall {
    constexpr DecidingCall() = default;
    // NOLINTBEGIN(google-explicit-constructor)
    constexpr DecidingCall(tavroapi::OperationCode code)
        : entryPoint(tavroapi::DoOperationEntry::Name), operation(code) {}
    constexpr DecidingCall(const char* entryPointName) : entryPoint(entryPointName) {}
    // NOLINTEND(google-explicit-constructor)

    std::string_view entryPoint;          // empty past the end of a list
    tavroapi::OperationCode operation{};  // of DoOperation
};

// Which calls decide whether a command did what was asked for. It did when none of them failed and
// those that had to come were made.
class Decision {
  public:
    enum class Rule {
        Always,  // by no call: it is done once it runs
        Never,   // it stands for a command line that asks for nothing
        EachOf,  // each of the calls has to come
        SomeOf,  // at least one of the operations has to come
    };
    static constexpr std::size_t MostCalls = 6;

    // Whether the records of a call that has returned 0 tell that all was done.
    using RecordsTellSuccess = bool(const void* input, const void* output);

    static constexpr Decision Always() { return {Rule::Always, {}}; }
    static constexpr Decision Never() { return {Rule::Never, {}}; }
    static constexpr Decision EachOf(std::array<DecidingCall, MostCalls> calls) {
        return {Rule::EachOf, calls};
    }
    static constexpr Decision SomeOf(std::array<DecidingCall, MostCalls> calls) {
        return {Rule::SomeOf, calls};
    }

    // One operation decides, as with most commands.
    // NOLINTNEXTLINE(google-explicit-constructor)
    constexpr Decision(tavroapi::OperationCode code) : Decision(Rule::EachOf, {code}) {}

    // One operation decides, and where it has returned 0 its records do: AllWasDone(input, output).
    template <tavroapi::OperationCode Code, auto AllWasDone>
    static constexpr Decision ByRecordsOf() {
        Decision decision(Code);
        decision.recordsTellSuccess_ = [](const void* input, const void* output) {
            return AllWasDone(*static_cast<const tavroapi::InputOf<Code>*>(input),
                              *static_cast<const tavroapi::OutputOf<Code>*>(output));
        };
        return decision;
    }

    constexpr Rule HowToDecide() const { return rule_; }

    // Null where the records do not matter.
    constexpr RecordsTellSuccess* SuccessInRecords() const { return recordsTellSuccess_; }

    constexpr std::span<const DecidingCall> Calls() const {
        std::size_t count = 0;
        while (count < MostCalls && !calls_[count].entryPoint.empty()) {
            ++count;
        }
        return std::span(calls_).first(count);
    }

  private:
    constexpr Decision(Rule rule, std::array<DecidingCall, MostCalls> calls)
        : rule_(rule), calls_(calls) {}

    Rule rule_;
    std::array<DecidingCall, MostCalls> calls_;
    RecordsTellSuccess* recordsTellSuccess_ = nullptr;
};

// One row of the command table. Code, form, access class, decision and handler have no defaults: a
// row that leaves one out does not compile.
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
    Decision decidedBy;
    void (*handler)(const Invocation&);
};

}  // namespace tavro
