#include "ethernet/value_editor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "console/console.h"
#include "console/redirect.h"

namespace tavro {
namespace {

using tavroapi::AdapterSetting;
using testing::HasSubstr;
using testing::Not;

AdapterSetting ListSetting(const std::string& value) {
    AdapterSetting setting;
    setting.libraryNumber = 7;
    setting.value = value;
    setting.libraryText = "text";
    setting.choices = {{0, L"Disabled"}, {1, L"Enabled"}, {5, L"Auto"}, {-2, L"Minus two"}};
    return setting;
}

AdapterSetting RangeSetting(const std::string& value, std::int32_t minimum, std::int32_t step,
                            std::int32_t maximum) {
    AdapterSetting setting;
    setting.value = value;
    setting.choices = {{minimum, L"min"}, {step, L"step"}, {maximum, L"max"}};
    return setting;
}

// Edits the setting, the user typing `answer`; returns what was printed.
std::string Edit(AdapterSetting& setting, EditKind kind, const std::string& answer) {
    const console::MemoryConsole memory(answer + "\nleft over\n");
    EditAdapterSetting(setting, MessageId::AdapterSetting1, kind);
    console::Flush();
    return memory.Output();
}

struct Answered {
    const char* answer;
    const char* value;
    const char* changed;
};

TEST(EditByList, TheAnswerSelectsAChoiceByItsNumber) {
    constexpr Answered Cases[] = {
        {"1", "Enabled", "1"},
        {"5", "Auto", "1"},
        {" 1", "Enabled", "1"},
        {"1x", "Enabled", "1"},
        {"+5", "Auto", "1"},
        {"-2", "Minus two", "1"},
        {"0", "Disabled", ""},
        {"letters", "Disabled", ""},
        {"", "Disabled", ""},
        {"2", "Disabled", ""},
        {"99999999999", "Disabled", ""},
    };
    for (const Answered& expected : Cases) {
        AdapterSetting setting = ListSetting("Disabled");
        Edit(setting, EditKind::List, expected.answer);
        EXPECT_EQ(setting.value, expected.value) << '"' << expected.answer << '"';
        EXPECT_EQ(setting.changed, expected.changed) << '"' << expected.answer << '"';
    }
}

TEST(EditByList, LettersSelectTheChoiceNumberedZero) {
    AdapterSetting setting = ListSetting("Enabled");
    EXPECT_THAT(Edit(setting, EditKind::List, "letters"),
                HasSubstr("\tNew Value is set to : Disabled\n"));
    EXPECT_EQ(setting.value, "Disabled");
    EXPECT_EQ(setting.changed, "1");
}

TEST(EditByList, AnUnknownNumberSetsNothing) {
    AdapterSetting setting = ListSetting("Enabled");
    EXPECT_THAT(Edit(setting, EditKind::List, "4"), Not(HasSubstr("New Value")));
    EXPECT_EQ(setting.value, "Enabled");
    EXPECT_EQ(setting.changed, "");
}

TEST(EditByList, TheSameValueIsSetWithoutAMark) {
    AdapterSetting setting = ListSetting("Enabled");
    EXPECT_THAT(Edit(setting, EditKind::List, "1"), HasSubstr("\tNew Value is set to : Enabled\n"));
    EXPECT_EQ(setting.changed, "");
}

TEST(EditByList, WideChoicesKeepTheirLowBytes) {
    AdapterSetting setting = ListSetting("Enabled");
    setting.choices = {{3, L"A\u0142\u00e9"}};
    Edit(setting, EditKind::List, "3");
    EXPECT_EQ(setting.value, "A\x42\xe9");
}

TEST(EditByList, WithoutChoicesEveryAnswerIsRefused) {
    AdapterSetting setting = ListSetting("Enabled");
    setting.choices.clear();
    Edit(setting, EditKind::List, "0");
    EXPECT_EQ(setting.value, "Enabled");
    EXPECT_EQ(setting.changed, "");
}

TEST(EditByRange, MultiplesOfTheStepWithinTheBoundsAreAccepted) {
    constexpr Answered Cases[] = {
        {"0", "0", "1"},
        {"90", "90", "1"},
        {"5", "5", "1"},
        {"007", "50", ""},
        {"005", "005", "1"},
        {" 10", " 10", "1"},
        {"+15", "+15", "1"},
        {"10abc", "10abc", "1"},
        {"50", "50", ""},
        {"7", "50", ""},
        {"91", "50", ""},
        {"95", "50", ""},
        {"-5", "50", ""},
        {"", "50", ""},
        {"abc", "50", ""},
        {"4294967295", "50", ""},
        {"4294967296", "50", ""},
        {"4294967300", "50", ""},
        {"99999999999999999999999", "50", ""},
        {"-99999999999999999999999", "50", ""},
    };
    for (const Answered& expected : Cases) {
        AdapterSetting setting = RangeSetting("50", 0, 5, 90);
        EXPECT_THAT(Edit(setting, EditKind::Range, expected.answer),
                    HasSubstr("\n\tNew Value (0~90, step: 5) : "));
        EXPECT_EQ(setting.value, expected.value) << '"' << expected.answer << '"';
        EXPECT_EQ(setting.changed, expected.changed) << '"' << expected.answer << '"';
    }
}

TEST(EditByRange, TheTypedTextIsKept) {
    AdapterSetting setting = RangeSetting("50", 0, 10, 1000);
    Edit(setting, EditKind::Range, "100 percent");
    EXPECT_EQ(setting.value, "100 percent");
    EXPECT_EQ(setting.changed, "1");
}

TEST(EditByRange, TheStepDividesTheAnswerItself) {
    AdapterSetting setting = RangeSetting("2", 1, 2, 9);
    Edit(setting, EditKind::Range, "3");
    EXPECT_EQ(setting.value, "2");
    Edit(setting, EditKind::Range, "8");
    EXPECT_EQ(setting.value, "8");
}

TEST(EditByRange, NumbersAreUnsigned) {
    // The greatest number stands as -1 among the keys.
    AdapterSetting setting = RangeSetting("7", 3, 1, -1);
    EXPECT_THAT(Edit(setting, EditKind::Range, "4294967295"),
                HasSubstr("\n\tNew Value (3~-1, step: 1) : "));
    EXPECT_EQ(setting.value, "4294967295");
    Edit(setting, EditKind::Range, "-2");
    EXPECT_EQ(setting.value, "-2");
    Edit(setting, EditKind::Range, "2147483648");
    EXPECT_EQ(setting.value, "2147483648");
    Edit(setting, EditKind::Range, "2");
    EXPECT_EQ(setting.value, "2147483648");
}

TEST(EditByRange, AStepOfZeroRefusesEveryAnswer) {
    for (const char* answer : {"0", "5", "100"}) {
        AdapterSetting setting = RangeSetting("5", 1, 0, 90);
        Edit(setting, EditKind::Range, answer);
        EXPECT_EQ(setting.value, "5");
        EXPECT_EQ(setting.changed, "");
    }
}

TEST(EditByRange, AMissingBoundRefusesEveryAnswer) {
    struct Missing {
        std::int32_t key;
        const char* prompt;
    };
    for (const auto& [key, prompt] :
         {Missing{0, "\tNew Value (~90, step: 5) : "}, Missing{5, "\tNew Value (0~90, step: ) : "},
          Missing{90, "\tNew Value (0~, step: 5) : "}}) {
        AdapterSetting setting = RangeSetting("50", 0, 5, 90);
        setting.choices.erase(key);
        EXPECT_THAT(Edit(setting, EditKind::Range, "10"), HasSubstr(prompt));
        EXPECT_EQ(setting.value, "50");
        EXPECT_EQ(setting.changed, "");
    }
}

TEST(EditByRange, BoundsAreFoundByTheirExactNames) {
    AdapterSetting setting = RangeSetting("50", 0, 5, 90);
    setting.choices.at(0) = L"Min";
    setting.choices.at(90) = L"max ";
    EXPECT_THAT(Edit(setting, EditKind::Range, "10"), HasSubstr("\tNew Value (~, step: 5) : "));
    EXPECT_EQ(setting.value, "50");
}

TEST(EditByAddress, EveryTextIsTaken) {
    constexpr Answered Cases[] = {
        {"02-00-5E-10-00-99", "02-00-5E-10-00-99", "1"},
        {"no address", "no address", "1"},
        {" ", " ", "1"},
        {"", "", "1"},
        {"0", "0", ""},
    };
    for (const Answered& expected : Cases) {
        AdapterSetting setting;
        setting.value = "0";
        EXPECT_THAT(Edit(setting, EditKind::Address, expected.answer),
                    HasSubstr("\n\tNew Value ( 0 or XX-XX-XX-XX-XX-XX ): "));
        EXPECT_EQ(setting.value, expected.value);
        EXPECT_EQ(setting.changed, expected.changed);
    }
}

TEST(EditOtherwise, NothingIsAsked) {
    for (const EditKind kind : {EditKind::ShowOnly, static_cast<EditKind>(4)}) {
        const console::MemoryConsole memory("1\n");
        AdapterSetting setting = ListSetting("Disabled");
        EditAdapterSetting(setting, MessageId::AdapterSetting1, kind);
        EXPECT_EQ(console::ReadLine(), "1");
        EXPECT_EQ(setting.value, "Disabled");
        EXPECT_EQ(setting.changed, "");
    }
}

TEST(EditAdapterSetting, OneLineIsReadAndNothingElseIsTouched) {
    for (const EditKind kind : {EditKind::List, EditKind::Range, EditKind::Address}) {
        const console::MemoryConsole memory("4\nnext\n");
        AdapterSetting setting = ListSetting("Disabled");
        const auto choices = setting.choices;
        EditAdapterSetting(setting, MessageId::AdapterSetting1, kind);
        EXPECT_EQ(console::ReadLine(), "next");
        EXPECT_EQ(setting.libraryNumber, 7);
        EXPECT_EQ(setting.libraryText, "text");
        EXPECT_EQ(setting.choices, choices);
    }
}

TEST(EditAdapterSetting, TheMarkStaysWhenTheOldValueComesBack) {
    AdapterSetting setting = ListSetting("Disabled");
    Edit(setting, EditKind::List, "1");
    Edit(setting, EditKind::List, "0");
    EXPECT_EQ(setting.value, "Disabled");
    EXPECT_EQ(setting.changed, "1");
}

TEST(EditAdapterSetting, AForeignMarkStaysAsItWas) {
    AdapterSetting setting = ListSetting("Disabled");
    setting.changed = "old";
    Edit(setting, EditKind::List, "0");
    EXPECT_EQ(setting.changed, "old");
    Edit(setting, EditKind::List, "4");
    EXPECT_EQ(setting.changed, "old");
}

}  // namespace
}  // namespace tavro
