#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <string>

#include "library/messages/catalogue.h"
#include "library/messages/language.h"

namespace tavrolib {
namespace {

std::set<std::uint32_t> IdsOf(Language language) {
    std::set<std::uint32_t> ids;
    for (const Message& message : Catalogue(language)) {
        ids.insert(message.id);
    }
    return ids;
}

// The numbers of the program's enumeration, from its lines "    Name = 12345,".
std::set<std::uint32_t> ProgramIds() {
    std::ifstream file(TAVRO_SOURCE_DIR "/src/mgmt/message_id.h");
    EXPECT_TRUE(file.is_open());
    std::set<std::uint32_t> ids;
    bool isInside = false;
    for (std::string line; std::getline(file, line);) {
        if (line.find("enum class MessageId") != std::string::npos) {
            isInside = true;
        }
        const std::size_t sign = line.find(" = ");
        if (isInside && sign != std::string::npos && line.find("//") == std::string::npos) {
            ids.insert(static_cast<std::uint32_t>(std::stoul(line.substr(sign + 3))));
        }
    }
    return ids;
}

constexpr Language Languages[] = {Language::English, Language::Japanese, Language::Chinese};

TEST(Messages, EveryLanguageHasExactlyTheProgramsMessages) {
    const auto wanted = ProgramIds();
    EXPECT_GT(wanted.size(), 20U);
    for (const Language language : Languages) {
        EXPECT_EQ(IdsOf(language), wanted);
    }
}

TEST(Messages, NoTextIsEmptyOrBroken) {
    for (const Language language : Languages) {
        for (const Message& message : Catalogue(language)) {
            const std::wstring text = message.text;
            ASSERT_FALSE(text.empty()) << message.id;
            EXPECT_EQ(text.find_first_of(L"\n\r\t"), std::wstring::npos) << message.id;
            EXPECT_NE(text.front(), L' ') << message.id;
            EXPECT_NE(text.back(), L' ') << message.id;
        }
    }
}

// Terms such as "VLAN ID" and "IPv4" are the same in every language; words are not.
bool HoldsAWord(std::wstring_view text) {
    int run = 0;
    for (const wchar_t character : text) {
        run = character >= L'a' && character <= L'z' ? run + 1 : 0;
        if (run == 3) {
            return true;
        }
    }
    return false;
}

TEST(Messages, LanguagesAreTranslated) {
    for (const Message& english : Catalogue(Language::English)) {
        if (!HoldsAWord(english.text)) {
            continue;
        }
        for (const Language language : {Language::Japanese, Language::Chinese}) {
            const wchar_t* text = FindMessage(language, english.id);
            ASSERT_NE(text, nullptr) << english.id;
            EXPECT_NE(std::wstring(text), english.text) << english.id;
        }
    }
}

TEST(Messages, LabelsOfRowsAreShorterThanTheirColumn) {
    for (const Language language : Languages) {
        for (const std::uint32_t label : {24834U, 24840U, 24841U, 24842U, 24848U, 24849U, 29726U}) {
            EXPECT_LT(std::wstring(FindMessage(language, label)).size(), 36U) << label;
        }
    }
}

TEST(Messages, UnknownIdsHaveNoText) {
    for (const std::uint32_t id : {0U, 255U, 262U, 24847U, 4294967295U}) {
        EXPECT_EQ(FindMessage(Language::English, id), nullptr) << id;
    }
}

TEST(LanguageOfLocale, NamesOfEveryCLibrary) {
    const struct {
        const wchar_t* locale;
        Language language;
    } cases[] = {
        {L"en_US.UTF-8", Language::English},
        {L"English_United States.1252", Language::English},
        {L"ja_JP.UTF-8", Language::Japanese},
        {L"ja_JP.eucJP", Language::Japanese},
        {L"ja", Language::Japanese},
        {L"ja-JP", Language::Japanese},
        {L"Japanese_Japan.932", Language::Japanese},
        {L"zh_CN.UTF-8", Language::Chinese},
        {L"zh_TW", Language::Chinese},
        {L"Chinese (Simplified)_China.936", Language::Chinese},
        {L"Chinese (Simplified)_China.93", Language::Chinese},
        {L"Chinese_China.936", Language::Chinese},
        {L"C", Language::English},
        {L"C.UTF-8", Language::English},
        {L"POSIX", Language::English},
        {L"", Language::English},
        {L"de_DE.UTF-8", Language::English},
        {L"jav_ID", Language::English},
        {L"LC_CTYPE=ja_JP.UTF-8;LC_NUMERI", Language::Japanese},
        {L"LC_CTYPE=en_US.UTF-8;LC_TIME=ja", Language::English},
        {L"LC_COLLATE=C;LC_CTYPE=Japanese", Language::Japanese},
        {L"LC_CTYPE=", Language::English},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(LanguageOfLocale(row.locale), row.language)
            << std::string(row.locale, row.locale + std::wstring(row.locale).size());
    }
}

}  // namespace
}  // namespace tavrolib
