#include "cli/invocation.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace tavro {
namespace {

constexpr Operand Name{"Name", OperandKind::IscsiName};
constexpr Operand Number{"Number", OperandKind::Number};
constexpr Operand Other{"Other", OperandKind::Wwn};
constexpr Operand Foreign{"Name", OperandKind::IscsiName};

constexpr Command TestCommand{
    .code = CommandCode{64},
    .form = {"-family", operand::PortMac, "-do", Name, Optional(Number)},
    .otherForm = {"-family", operand::PortMac, "-do", Name, Optional(Other)},
    .access = AccessClass::Runs,
    .decidedBy = Decision::Never(),
    .handler = nullptr};

class InvocationTest : public testing::Test {
  protected:
    EntryCache cache;

    Invocation Typed(std::span<const char* const> arguments) {
        return {TestCommand, "M", arguments, cache};
    }
};

TEST_F(InvocationTest, FindsOperandsWhereTheFormHasThem) {
    const char* const arguments[] = {"tavrocli", "-family", "M", "-do", "a name", "5", "six"};
    const Invocation invocation = Typed(arguments);
    EXPECT_EQ(invocation.Text(Name), "a name");
    EXPECT_EQ(invocation.Text(Number), "5");
    EXPECT_TRUE(invocation.Has(Number));
    EXPECT_FALSE(invocation.EndsWith(Number));
    EXPECT_EQ(invocation.From(Number).size(), 2U);
    EXPECT_EQ(invocation.From(Number)[1], std::string("six"));
}

TEST_F(InvocationTest, FindsOperandsOfTheOtherForm) {
    const char* const arguments[] = {"tavrocli", "-family", "M", "-do", "a name", "5"};
    EXPECT_EQ(Typed(arguments).Text(Other), "5");
}

TEST_F(InvocationTest, MissingOperandsAreEmpty) {
    const char* const arguments[] = {"tavrocli", "-family", "M", "-do", "a name"};
    const Invocation invocation = Typed(arguments);
    EXPECT_FALSE(invocation.Has(Number));
    EXPECT_EQ(invocation.Text(Number), "");
    EXPECT_TRUE(invocation.From(Number).empty());
    EXPECT_TRUE(invocation.EndsWith(Name));
    EXPECT_FALSE(invocation.EndsWith(Number));
}

TEST_F(InvocationTest, OperandsAreFarBeyondTheLastArgument) {
    const char* const arguments[] = {"tavrocli", "-family"};
    const Invocation invocation = Typed(arguments);
    EXPECT_FALSE(invocation.Has(Name));
    EXPECT_EQ(invocation.Text(Number), "");
    EXPECT_TRUE(invocation.From(Number).empty());
}

// An operand is known by itself, not by its name.
TEST_F(InvocationTest, OperandThatTheRowDoesNotNameIsAnError) {
    const char* const arguments[] = {"tavrocli", "-family", "M", "-do", "a name"};
    EXPECT_THROW(Typed(arguments).Text(Foreign), std::logic_error);
    EXPECT_THROW(Typed(arguments).Has(Foreign), std::logic_error);
}

}  // namespace
}  // namespace tavro
