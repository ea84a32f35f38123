#pragma once

#include <concepts>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <type_traits>

#include "library/calls/call.h"
#include "library/journal/call_line.h"
#include "library/json/json.h"
#include "library/records/secrets.h"
#include "mgmt/record_secrets.h"
#include "tavroapi/operations.h"
#include "twin/capture/library_caller.h"
#include "twin/capture/operation_call.h"

namespace tavrohost {

namespace detail {

template <class AnyField>
struct FieldValue;
template <class Record, class Member>
struct FieldValue<tavroapi::Field<Record, Member>> {
    using Type = Member;
};
template <class Record, class Member>
struct FieldValue<tavroapi::SpreadField<Record, Member>> {
    using Type = typename Member::value_type;
};

// Whether a record of this type, or one that stands in it, declares a secret.
template <class Value>
consteval bool HoldsSecrets() {
    if constexpr (tavroapi::DescribedRecord<Value>) {
        for (std::size_t i = 0; i < tavroapi::FieldCount<Value>(); ++i) {
            if (tavroapi::IsSecretPosition<Value>(i)) {
                return true;
            }
        }
        return Value::Fields([]<class... AnyField>(const AnyField&...) {
            return (HoldsSecrets<typename FieldValue<AnyField>::Type>() || ...);
        });
    } else {
        return false;
    }
}

}  // namespace detail

// Makes calls and keeps the answers. A call that was made before is not made again: whoever plays
// the answers could not tell the two apart.
class CallRecorder {
  public:
    CallRecorder(LibraryCaller& library, tavrolib::Secrets secrets)
        : library_(library), secrets_(secrets) {}

    // Performs an operation that takes no input. What the library filled in; nothing when it was
    // not performed with success, was performed before, or fills in secrets, which are wiped.
    template <tavroapi::OperationCode Code>
    std::optional<tavroapi::OutputOf<Code>> Ask(const std::string& request) {
        return AskWith<Code>(request, nullptr);
    }

    // The same with an input, a text for a character string.
    template <tavroapi::OperationCode Code, class Input>
    std::optional<tavroapi::OutputOf<Code>> Ask(const std::string& request, Input input) {
        if constexpr (std::same_as<Input, std::string>) {
            return AskWith<Code>(request, input.data());
        } else {
            static_assert(std::same_as<Input, tavroapi::InputOf<Code>>);
            return AskWith<Code>(request, &input);
        }
    }

    // Performs an operation whose input and result are one record, as the program does.
    template <tavroapi::OperationCode Code>
    std::optional<tavroapi::OutputOf<Code>> Exchange(const std::string& request,
                                                     tavroapi::OutputOf<Code> record) {
        static_assert(!detail::HoldsSecrets<tavroapi::OutputOf<Code>>());
        tavrolib::Call call = OperationCall(Code, request);
        call.input = &record;
        call.output = &record;
        return Perform(call) ? std::optional(std::move(record)) : std::nullopt;
    }

    // The same where it is a guess that there is something: an answer is kept only when there is,
    // and otherwise the call counts as not made.
    template <tavroapi::OperationCode Code>
    std::optional<tavroapi::OutputOf<Code>> Guess(const std::string& request,
                                                  tavroapi::OutputOf<Code> record) {
        static_assert(!detail::HoldsSecrets<tavroapi::OutputOf<Code>>());
        tavrolib::Call call = OperationCall(Code, request);
        call.input = &record;
        call.output = &record;
        return PerformGuess(call) ? std::optional(std::move(record)) : std::nullopt;
    }

    // Asks one of the queries that are no operations, about what the call names besides.
    template <tavrolib::EntryPoint Entry>
    std::optional<tavrolib::FilledType<Entry>> Query(tavrolib::Call call = {}) {
        tavrolib::FilledType<Entry> output{};
        call.entryPoint = Entry;
        call.output = &output;
        return Perform(call) ? std::optional(std::move(output)) : std::nullopt;
    }

    // A JSON array.
    tavrolib::Json TakeAnswers() { return std::move(answers_); }

  private:
    template <tavroapi::OperationCode Code>
    std::optional<tavroapi::OutputOf<Code>> AskWith(const std::string& request, void* input) {
        tavroapi::OutputOf<Code> output{};
        tavrolib::Call call = OperationCall(Code, request);
        call.input = input;
        call.output = &output;
        if constexpr (detail::HoldsSecrets<tavroapi::OutputOf<Code>>()) {
            // Its secrets are kept in the answer or nowhere.
            const tavro::RecordSecretsGuard guard(output);
            Perform(call);
            return std::nullopt;
        } else {
            return Perform(call) ? std::optional(std::move(output)) : std::nullopt;
        }
    }

    // Whether the call was made and succeeded.
    bool Perform(const tavrolib::Call& call);

    // The same, but where the call does not succeed, nothing is kept and it was not made.
    bool PerformGuess(const tavrolib::Call& call);

    // Keeps the answer, a refusal with the library's error. Whether it is none.
    bool Keep(tavrolib::Json line, const tavrolib::Call& call, std::uint32_t status);

    LibraryCaller& library_;
    tavrolib::Secrets secrets_;
    std::set<std::string> made_;
    tavrolib::Json answers_ = tavrolib::Json::array();
};

}  // namespace tavrohost
