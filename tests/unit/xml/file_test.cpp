// Files: how they are opened, measured and decoded.
#include "xml/file.h"

#include <gtest/gtest.h>

#include <clocale>
#include <filesystem>
#include <fstream>
#include <random>

#include "platform/encoding.h"
#include "unit/xml/helpers.h"

namespace tavro::xml {
namespace {

// A file of the test's own that is removed when the test ends.
class TestFile {
  public:
    explicit TestFile(std::string_view bytes, std::u8string_view name = u8"document")
        : path(std::filesystem::temp_directory_path() /
               ("tavro-" + std::to_string(std::random_device()()))) {
        path += name;
        std::ofstream file(path, std::ios::binary);
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
    ~TestFile() {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }
    TestFile(const TestFile&) = delete;
    TestFile& operator=(const TestFile&) = delete;

    // Wide as the reader takes it.
    std::wstring Path() const {
        const std::u8string name = path.u8string();
        return platform::DecodeText({reinterpret_cast<const char*>(name.data()), name.size()},
                                    platform::Utf8CodePage)
            .value_or(L"");
    }

  private:
    std::filesystem::path path;
};

// Sets the process's locale for the time of a test.
class LocaleForTest {
  public:
    explicit LocaleForTest(const char* name) : former(std::setlocale(LC_ALL, nullptr)) {
        std::setlocale(LC_ALL, name);
    }
    ~LocaleForTest() { std::setlocale(LC_ALL, former.c_str()); }
    LocaleForTest(const LocaleForTest&) = delete;
    LocaleForTest& operator=(const LocaleForTest&) = delete;

  private:
    std::string former;
};

struct Parsed {
    XmlNode top;
    XmlResults results;
};

Parsed ParseBytes(std::string_view bytes) {
    const TestFile file(bytes);
    Parsed parsed;
    parsed.top = ParseXmlFile(file.Path(), parsed.results);
    return parsed;
}

std::string Utf16(std::u16string_view text) {
    std::string bytes;
    for (const char16_t unit : text) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
}

// A document in which every second byte is zero often enough for every system to see UTF-16.
constexpr std::u16string_view Utf16Document =
    u"<?xml version=\"1.0\"?>\r\n<settings><Initiator_Name value=\"iqn.2001-04.example\"/>"
    u"</settings>\r\n";
constexpr std::wstring_view Utf16Tree = L"settings (Initiator_Name @value='iqn.2001-04.example')";

TEST(XmlFile, ThatIsMissingIsNotOpened) {
    XmlResults results{99, 99, 99};
    const std::wstring folder = std::filesystem::temp_directory_path().wstring();
    EXPECT_TRUE(ParseXmlFile(folder + L"/tavro-no-such-file.xml", results).IsEmpty());
    EXPECT_EQ(Describe(results), "10 at 0:0");
    EXPECT_TRUE(ParseXmlFile(folder, results).IsEmpty());
    EXPECT_EQ(Describe(results), "10 at 0:0");
    EXPECT_TRUE(ParseXmlFile(L"", results).IsEmpty());
    EXPECT_EQ(Describe(results), "10 at 0:0");
}

TEST(XmlFile, ThatIsEmptyHasItsOwnCode) {
    const Parsed parsed = ParseBytes("");
    EXPECT_EQ(Describe(parsed.results), "3 at 0:0");
    EXPECT_EQ(parsed.top, XmlNode());
    EXPECT_TRUE(parsed.top.Child(0).IsEmpty());
}

TEST(XmlFile, ThatIsTooLargeHasItsOwnCode) {
    const TestFile file("<a/>");
    XmlResults results;
    EXPECT_EQ(ParseXmlFile(file.Path(), results, 4).Name(), L"a");
    EXPECT_TRUE(ParseXmlFile(file.Path(), results, 3).IsEmpty());
    EXPECT_EQ(Describe(results), "17 at 0:0");
}

TEST(XmlFile, ResultsAreClearedBySuccess) {
    const TestFile file("<a/>");
    XmlResults results{99, 99, 99};
    const XmlNode top = ParseXmlFile(file.Path(), results);
    EXPECT_EQ(Describe(results), "0 at 0:0");
    EXPECT_EQ(top.Name(), L"a");
}

TEST(XmlFile, NameMayHoldAnyCharacter) {
    const LocaleForTest locale("C.UTF-8");
    const TestFile file("<a/>", u8"\u8A2D\u5B9A.xml");
    XmlResults results;
    EXPECT_EQ(ParseXmlFile(file.Path(), results).Name(), L"a");
}

TEST(XmlFile, OfUtf8IsReadWithAndWithoutMark) {
    const LocaleForTest locale("C.UTF-8");
    const std::string document = "<a b='\xE6\x97\xA5'>\xF0\x9F\x98\x80</a>";
    const std::wstring tree = L"a @b='\u65E5' \"\U0001F600\"";
    EXPECT_EQ(Describe(ParseBytes("\xEF\xBB\xBF" + document).top), tree);
    EXPECT_EQ(Describe(ParseBytes("\xEF\xBB\xBF<a b='x'/>").top), L"a @b='x'");
    EXPECT_EQ(Describe(ParseBytes("<a b='x'/>").top), L"a @b='x'");
    // Where the system's code page is UTF-8 other characters are the same as well.
    if (platform::DecodeText("\xE6\x97\xA5", platform::SystemCodePage) == L"\u65E5") {
        EXPECT_EQ(Describe(ParseBytes(document).top), tree);
    }
}

TEST(XmlFile, WithoutMarkIsReadInTheSystemCodePage) {
    const LocaleForTest locale("C");
    // Latin-1 in the "C" locale, the ANSI code page on Windows; both read these as letters.
    const std::optional<std::wstring> letters =
        platform::DecodeText("\xE4\xF6", platform::SystemCodePage);
    ASSERT_TRUE(letters.has_value());
    EXPECT_EQ(Describe(ParseBytes("<a b='\xE4\xF6'/>").top),
              L"a @b='" + letters.value_or(L"") + L"'");
    EXPECT_EQ(letters, L"\u00E4\u00F6");
}

TEST(XmlFile, OnlyOneMarkIsSkipped) {
    EXPECT_EQ(Describe(ParseBytes("\xEF\xBB\xBF\xEF\xBB\xBF<a/>").results), "152 at 1:1");
}

TEST(XmlFile, ThatIsOnlyAMarkHasNoElement) {
    EXPECT_EQ(Describe(ParseBytes("\xEF\xBB\xBF").results), "150 at 1:1");
    EXPECT_NE(ParseBytes("\xFF\xFE").results.error, 0U);
}

TEST(XmlFile, MalformedUtf8IsReplacedAndNotRefused) {
    EXPECT_EQ(Describe(ParseBytes("\xEF\xBB\xBF<a>x\xFFy</a>").top), L"a \"x\uFFFDy\"");
}

TEST(XmlFile, OfUtf16IsReadWithAndWithoutMark) {
    EXPECT_EQ(Describe(ParseBytes("\xFF\xFE" + Utf16(Utf16Document)).top), Utf16Tree);
    EXPECT_EQ(Describe(ParseBytes(Utf16(Utf16Document)).top), Utf16Tree);
}

TEST(XmlFile, OfUtf16HasItsSecondKnownBeginningSkipped) {
    EXPECT_EQ(Describe(ParseBytes("\xEF\xFF" + Utf16(Utf16Document)).top), Utf16Tree);
    // That is no beginning of 8-bit text, which the two bytes alone do not turn into UTF-16.
    EXPECT_NE(ParseBytes("\xEF\xFF<settings><Initiator_Name value='x'/></settings>").results.error,
              0U);
}

TEST(XmlFile, OfUtf16MayHoldCharactersInPairs) {
    EXPECT_EQ(Describe(ParseBytes("\xFF\xFE" + Utf16(u"<a b='\U0001F600'>\u65E5</a>")).top),
              L"a @b='\U0001F600' \"\u65E5\"");
    EXPECT_EQ(Describe(ParseBytes("\xFF\xFE" + Utf16(u"<a>\xDE00\xD83D</a>")).results),
              "100 at 1:4");
    EXPECT_EQ(Describe(ParseBytes("\xFF\xFE" + Utf16(u"<a>\xD83D")).results), "100 at 1:4");
}

TEST(XmlFile, OfUtf16WithHalfAUnitIsCompletedByAZero) {
    const std::string document = "\xFF\xFE" + Utf16(Utf16Document);
    for (const std::string& bytes :
         {document + "\n", document + '\0', document.substr(0, document.size() - 1)}) {
        const Parsed parsed = ParseBytes(bytes);
        // For a system that does not see UTF-16 in it the document begins with two characters of
        // 8-bit text.
        if (platform::LooksLikeUtf16(bytes)) {
            EXPECT_EQ(Describe(parsed.top), Utf16Tree);
        } else {
            EXPECT_EQ(Describe(parsed.results), "152 at 1:1");
        }
    }
}

#ifndef _WIN32
TEST(XmlFile, OfUtf16MayHaveAnOddLength) {
    EXPECT_EQ(Describe(ParseBytes("\xFF\xFE" + Utf16(u"<a b='\u65E5'/>") + "\n").top),
              L"a @b='\u65E5'");
    EXPECT_EQ(Describe(ParseBytes(Utf16(Utf16Document) + "\n").top), Utf16Tree);
    // The last unit would be another character without its second byte.
    EXPECT_EQ(Describe(ParseBytes("\xFF\xFE" + Utf16(u"<a/>") + "x").results), "152 at 1:5");
}
#endif

TEST(XmlFile, EndsAtItsFirstZero) {
    const LocaleForTest locale("C.UTF-8");
    const std::string document =
        "<?xml version='1.0'?><settings><Initiator_Name value='iqn.2001-04.example'/></settings>";
    const std::string wide = Utf16(Utf16Document);
    // An even and an odd number of bytes: with two bytes to a unit, zeros lie differently.
    for (const std::string& bytes :
         {document, document + "\n", "\xEF\xBB\xBF" + document, "\xEF\xBB\xBF" + document + "\n"}) {
        EXPECT_EQ(Describe(ParseBytes(bytes + '\0').top), Utf16Tree);
    }
    EXPECT_EQ(Describe(ParseBytes("\xFF\xFE" + wide + std::string(2, '\0')).top), Utf16Tree);
    EXPECT_EQ(Describe(ParseBytes(wide + std::string(2, '\0')).top), Utf16Tree);
    // What follows the zero is no part of the document, whatever it is. (A system may refuse UTF-16
    // that has a zero near its beginning.)
    const std::string blanks = Utf16(std::u16string(300, u' '));
    EXPECT_EQ(Describe(ParseBytes("\xFF\xFE" + wide + blanks + Utf16({u"\0<b/>\0", 6})).top),
              Utf16Tree);
    EXPECT_EQ(
        Describe(ParseBytes("\xFF\xFE" + Utf16(u"<a>") + blanks + Utf16({u"\0</a>", 5})).results),
        "102 at 1:304");
}

TEST(XmlFile, WhatFollowsTheFirstZeroDoesNotStayInMemory) {
    const std::string_view bytes("\xEF\xBB\xBF<settings/>\0secret", 21);
    const std::optional<std::wstring> text = DecodeXmlBytes(bytes);
    ASSERT_EQ(text, L"<settings/>");
    ASSERT_GE(text->capacity(), 18U);
    EXPECT_EQ(std::wstring_view(text->data() + 11, 7), std::wstring(7, L'\0'));
}

TEST(XmlFile, OfZerosIsRefused) {
    for (const std::size_t size : {1U, 2U, 3U, 4U, 4096U, 100001U}) {
        const Parsed parsed = ParseBytes(std::string(size, '\0'));
        EXPECT_TRUE(parsed.top.IsEmpty());
        EXPECT_NE(parsed.results.error, 0U) << size;
    }
}

TEST(XmlFile, CutOffAnywhereIsRefused) {
    const std::string document =
        "\xEF\xBB\xBF<?xml version='1.0' encoding='UTF-8'?>\r\n<!DOCTYPE a [<!ENTITY e '>'>]>\r\n"
        "<a><!-- c --><b value='&amp;\xE6\x97\xA5'/>&e;&#65;<![CDATA[<>]]><PRE><</PRE><?p q?>"
        "\xF0\x9F\x98\x80</a>";
    ASSERT_EQ(ParseBytes(document).results.error, 0U);
    for (std::size_t size = 0; size < document.size(); ++size) {
        const Parsed parsed = ParseBytes(document.substr(0, size));
        EXPECT_NE(parsed.results.error, 0U) << size;
        EXPECT_TRUE(parsed.top.IsEmpty()) << size;
    }
}

TEST(XmlFile, OfUtf16CutOffAnywhereIsRefused) {
    const std::string document =
        "\xFF\xFE" + Utf16(u"<?xml version='1.0'?><a b='\U0001F600'>x</a>");
    ASSERT_EQ(ParseBytes(document).results.error, 0U);
    // But for the last byte, which is a zero.
    for (std::size_t size = 0; size + 1 < document.size(); ++size) {
        const Parsed parsed = ParseBytes(document.substr(0, size));
        EXPECT_NE(parsed.results.error, 0U) << size;
        EXPECT_TRUE(parsed.top.IsEmpty()) << size;
    }
}

}  // namespace
}  // namespace tavro::xml
