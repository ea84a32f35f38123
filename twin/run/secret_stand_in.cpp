#include "twin/run/secret_stand_in.h"

#include <ranges>
#include <string_view>
#include <type_traits>

#include "console/wipe.h"
#include "tavroapi/described_operations.h"
#include "tavroapi/record.h"

namespace tavrohost {
namespace {

using tavroapi::OperationCode;

template <class Record>
constexpr bool NamesSecrets() {
    if constexpr (requires { Record::SecretPositions; }) {
        return !Record::SecretPositions.empty();
    } else {
        return false;
    }
}

// Whether a value of the type, or what it holds, has a place for secrets.
template <class Value>
constexpr bool HoldsSecrets() {
    if constexpr (tavroapi::DescribedRecord<Value>) {
        return Value::Fields([](const auto&... field) {
            const auto holds = []<class Record, class Member>(Member Record::*) {
                return HoldsSecrets<Member>();
            };
            return NamesSecrets<Value>() || (holds(field.member) || ...);
        });
    } else if constexpr (std::ranges::range<Value>) {
        using Element = std::ranges::range_value_t<Value>;
        return !std::is_arithmetic_v<Element> && HoldsSecrets<Element>();
    } else {
        return false;
    }
}

// Calls `visit` with each secret of the value. Where `isSecret`, all of it is one.
template <class Value, class Visitor>
void VisitSecrets(Value& value, bool isSecret, const Visitor& visit) {
    if constexpr (tavroapi::DescribedRecord<Value>) {
        tavroapi::ForEachField(value, [&](std::size_t position, std::string_view, auto& member) {
            VisitSecrets(member, isSecret || tavroapi::IsSecretPosition<Value>(position), visit);
        });
    } else if constexpr (std::is_same_v<Value, std::string>) {
        if (isSecret) {
            visit(value);
        }
    } else if constexpr (HoldsSecrets<Value>()) {
        for (auto& element : value) {
            VisitSecrets(element, isSecret, visit);
        }
    }
}

// What is done with the secrets of one operation's input; nothing where it has none.
using VisitInput = void (*)(void* input, const std::set<std::string>& known,
                            const std::string& standIn);

void Replace(std::string& secret, const std::set<std::string>& known, const std::string& standIn) {
    if (!secret.empty() && !known.contains(secret)) {
        tavro::console::WipeSecret(secret);
        secret = standIn;
    }
}

template <class Record>
void ReplaceIn(void* input, const std::set<std::string>& known, const std::string& standIn) {
    VisitSecrets(*static_cast<Record*>(input), false,
                 [&](std::string& secret) { Replace(secret, known, standIn); });
}

template <class Record>
constexpr VisitInput VisitorFor() {
    if constexpr (HoldsSecrets<Record>()) {
        return ReplaceIn<Record>;
    } else {
        return nullptr;
    }
}

template <OperationCode... Codes>
VisitInput FindVisitor(tavroapi::OperationList<Codes...>, std::uint32_t operation) {
    VisitInput found = nullptr;
    ((static_cast<std::uint32_t>(Codes) == operation
          ? void(found = VisitorFor<tavroapi::InputOf<Codes>>())
          : void()),
     ...);
    return found;
}

VisitInput VisitorOf(std::uint32_t operation) {
    return FindVisitor(tavroapi::DescribedOperations{}, operation);
}

// A text that is no secret of the twin's own.
std::string StandInBeside(const std::set<std::string>& known) {
    std::string standIn = "(secret)";
    while (known.contains(standIn)) {
        standIn += ')';
    }
    return standIn;
}

}  // namespace

void ReplaceSecrets(std::uint32_t operation, void* input, const std::set<std::string>& known) {
    const VisitInput visit = VisitorOf(operation);
    if (visit != nullptr && input != nullptr) {
        visit(input, known, StandInBeside(known));
    }
}

bool TakesSecrets(std::uint32_t operation) {
    return VisitorOf(operation) != nullptr;
}

}  // namespace tavrohost
