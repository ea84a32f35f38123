#include "library/calls/operations.h"

#include <array>

#include "library/records/record_type_of.h"
#include "tavroapi/described_operations.h"

namespace tavrolib {
namespace {

using tavroapi::OperationCode;

// The compiler spells the template argument out in the function's name, "...
// OperationCode::ListPortals]".
template <OperationCode Code>
constexpr std::string_view EnumeratorName() {
    constexpr std::string_view Function = __PRETTY_FUNCTION__;
    constexpr std::string_view Scope = "OperationCode::";
    constexpr std::size_t Start = Function.rfind(Scope) + Scope.size();
    constexpr std::size_t End = Function.find_first_of("];,", Start);
    static_assert(Function.rfind(Scope) != std::string_view::npos && End != std::string_view::npos);
    return Function.substr(Start, End - Start);
}

static_assert(EnumeratorName<OperationCode::ReadAdapterState>() == "ReadAdapterState");

template <OperationCode... Codes>
constexpr auto MakeTable(tavroapi::OperationList<Codes...>) {
    return std::array{Operation{Codes, EnumeratorName<Codes>(),
                                RecordTypeOf<tavroapi::InputOf<Codes>>(),
                                RecordTypeOf<tavroapi::OutputOf<Codes>>()}...};
}

constexpr auto Table = MakeTable(tavroapi::DescribedOperations{});

}  // namespace

std::span<const Operation> Operations() {
    return Table;
}

const Operation* FindOperation(std::uint32_t code) {
    for (const Operation& operation : Table) {
        if (static_cast<std::uint32_t>(operation.code) == code) {
            return &operation;
        }
    }
    return nullptr;
}

}  // namespace tavrolib
