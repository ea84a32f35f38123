#include "library/messages/error_text.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace tavrolib {
namespace {

constexpr ErrorTextRow Rows[] = {{L"One.", L"一。", L"壹。"}, {L"Two.", L"二。", L"贰。"}};
constexpr ErrorTextRow Twice[] = {{L"One.", L"一。", L"壹。"}, {L"One.", L"二。", L"贰。"}};
constexpr ErrorTextRow WithoutChinese[] = {{L"One.", L"一。", L""}};

// Whether code that uses the text compiles.
template <const auto& Table, const auto& Text>
concept Compiles = requires {
    typename std::bool_constant<(ErrorTextOf<Table>(Text), true)>;
};

constexpr wchar_t Known[] = L"Two.";
constexpr wchar_t Unknown[] = L"Three.";
constexpr wchar_t Shorter[] = L"Two";
static_assert(Compiles<Rows, Known>);
static_assert(!Compiles<Rows, Unknown>);
static_assert(!Compiles<Rows, Shorter>);

static_assert(AreCompleteAndUnique(Rows));
static_assert(!AreCompleteAndUnique(Twice));
static_assert(!AreCompleteAndUnique(WithoutChinese));

TEST(ErrorText, IsToldInEveryLanguage) {
    const ErrorTextOf<Rows> two = L"Two.";
    EXPECT_TRUE(two.text.IsSet());
    EXPECT_EQ(two.text.In(Language::English), L"Two.");
    EXPECT_EQ(two.text.In(Language::Japanese), L"二。");
    EXPECT_EQ(two.text.In(Language::Chinese), L"贰。");
}

TEST(ErrorText, IsEmptyUntilItIsSet) {
    EXPECT_FALSE(ErrorText().IsSet());
    EXPECT_TRUE(ErrorText().In(Language::Japanese).empty());
}

}  // namespace
}  // namespace tavrolib
