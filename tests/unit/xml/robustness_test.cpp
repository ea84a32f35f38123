// Documents that are meant to break the reader: deep, wide, long, cut off, and those that a fuzzer
// starts from.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/encoding.h"
#include "platform/file.h"
#include "unit/xml/helpers.h"
#include "xml/file.h"
#include "xml/parser.h"

namespace tavro::xml {
namespace {

using enum XmlError;

constexpr std::size_t Million = 1'000'000;

std::wstring Repeated(std::wstring_view text, std::size_t count) {
    std::wstring result;
    result.reserve(text.size() * count);
    for (std::size_t index = 0; index < count; ++index) {
        result += text;
    }
    return result;
}

XmlNode ParseText(std::wstring text) {
    XmlResults results;
    XmlNode top = ParseXmlText(std::move(text), results);
    EXPECT_EQ(Describe(results), "0 at 0:0");
    return top;
}

TEST(XmlRobustness, AMillionNestedElementsAreReadAndReleased) {
    XmlNode node = ParseText(Repeated(L"<a>", Million) + Repeated(L"</a>", Million));
    std::size_t depth = 0;
    // Each step releases the parent of the node that it goes to, and that one only.
    while (!node.IsEmpty()) {
        node = node.Child(0);
        ++depth;
    }
    EXPECT_EQ(depth, Million);
}

TEST(XmlRobustness, AMillionNestedElementsEndAtOnce) {
    XmlNode top = ParseText(L"<top><kept/>" + Repeated(L"<a>", Million) +
                            Repeated(L"</a>", Million) + L"</top>");
    const XmlNode kept = top.Child(0);
    top.Release();
    EXPECT_TRUE(kept.Parent().IsEmpty());
}

TEST(XmlRobustness, AMillionOpenElementsAreRefused) {
    EXPECT_EQ(DescribeRefusal(Repeated(L"<a>", Million)),
              Describe(UnclosedElement, 1, 3 * Million + 1));
}

TEST(XmlRobustness, AMillionChildrenAreReachedByIndex) {
    const XmlNode top = ParseText(L"<a>" + Repeated(L"\n<b/>", Million) + L"</a>");
    ASSERT_EQ(top.ChildCount(), Million);
    ASSERT_EQ(top.TextCount(), Million);
    for (std::size_t index = 0; index < Million; ++index) {
        ASSERT_EQ(top.Child(index).Name(), L"b");
    }
}

TEST(XmlRobustness, ManyAttributesAreComparedInTime) {
    constexpr std::size_t Count = 200'000;
    std::wstring tag = L"<a";
    for (std::size_t index = 0; index < Count; ++index) {
        tag += L" n" + std::to_wstring(index) + L"=''";
    }
    const XmlNode top = ParseText(tag + L"/>");
    ASSERT_EQ(top.AttributeCount(), Count);
    EXPECT_EQ(top.Attribute(Count - 1).name, L"n" + std::to_wstring(Count - 1));
    EXPECT_EQ(DescribeRefusal(tag + L" n7='' n5=''/>"),
              Describe(DuplicateAttribute, 1, tag.size() + 2));
}

TEST(XmlRobustness, ManyReferencesAreReplacedInTime) {
    const XmlNode top = ParseText(L"<a b='" + Repeated(L"&amp;", Million) + L"'>" +
                                  Repeated(L"&lt;\r\n", Million) + L"</a>");
    EXPECT_EQ(top.Attribute(0).value, Repeated(L"&", Million));
    EXPECT_EQ(top.Text(0), Repeated(L"<\r\n", Million));
}

TEST(XmlRobustness, ALongTextThatIsCutOffIsRefusedInTime) {
    constexpr std::size_t Length = 16 * 1024 * 1024;
    const std::wstring filling(Length, L'x');
    EXPECT_EQ(DescribeRefusal(L"<a b='" + filling), Describe(UnclosedValue, 1, 6));
    EXPECT_EQ(DescribeRefusal(L"<a>" + filling), Describe(UnclosedElement, 1, Length + 4));
    EXPECT_EQ(DescribeRefusal(L"<" + filling), Describe(UnexpectedEnd, 1, Length + 2));
    EXPECT_EQ(DescribeRefusal(L"<a>&" + filling), Describe(MalformedReference, 1, 4));
    EXPECT_EQ(DescribeRefusal(L"<a>&#" + std::wstring(Length, L'9')),
              Describe(MalformedReference, 1, 4));
    EXPECT_EQ(DescribeRefusal(L"<!--" + filling), Describe(UnclosedComment, 1, 1));
    EXPECT_EQ(DescribeRefusal(L"<!DOCTYPE a [<!ENTITY b '" + filling),
              Describe(UnclosedDoctype, 1, 1));
    EXPECT_EQ(DescribeRefusal(L"<a><![CDATA[" + std::wstring(Length, L']')),
              Describe(UnclosedCdata, 1, 4));
    EXPECT_EQ(DescribeRefusal(L"<a><PRE>" + Repeated(L"</PRE", Length / 5)),
              Describe(UnclosedPreformatted, 1, 4));
    EXPECT_EQ(DescribeRefusal(L"<a>" + std::wstring(Length, L']')),
              Describe(UnclosedElement, 1, Length + 4));
}

TEST(XmlRobustness, ALongValueIsReadWhole) {
    constexpr std::size_t Length = 64 * 1024 * 1024;
    const XmlNode top = ParseText(L"<a value='" + std::wstring(Length, L'x') + L"'/>");
    const std::wstring_view value = top.ValueAttribute().value_or(L"");
    EXPECT_EQ(value.size(), Length);
    EXPECT_EQ(value.find_first_not_of(L'x'), std::wstring_view::npos);
}

TEST(XmlRobustness, EveryPieceOfADocumentIsReadOrRefused) {
    const std::wstring document =
        L"<?xml version='1.0'?><!DOCTYPE a [<!ENTITY b '>'>]><a b='&lt;' c=\"\U0001F600\">x&amp;"
        L"<!--c--><![CDATA[d]]><PRE>e</PRE><f/>\r\n<?g h?></a>";
    for (std::size_t begin = 0; begin < document.size(); ++begin) {
        for (std::size_t size = 1; size <= document.size() - begin; ++size) {
            XmlResults results;
            const XmlNode top = ParseXmlText(document.substr(begin, size), results);
            ASSERT_EQ(top.IsEmpty(), results.error != 0) << begin << " " << size;
            ASSERT_EQ(results.line != 0 && results.column != 0, results.error != 0);
        }
    }
}

// What the fuzzer starts from is read on every platform; whether a sample is well-formed stands in
// its name. One that is UTF-16 of an odd length is so only where the system sees UTF-16 in it.
TEST(XmlRobustness, TheFuzzersSamplesAreReadOrRefusedAsTheirNamesSay) {
    std::size_t sampleCount = 0;
    for (const auto& entry : std::filesystem::directory_iterator(
             std::filesystem::path(TAVRO_SOURCE_DIR) / "tests/fuzz/corpus/xml_reader")) {
        const std::string name = entry.path().filename().string();
        SCOPED_TRACE(name);
        XmlResults results;
        const XmlNode top = ParseXmlFile(entry.path().wstring(), results);
        EXPECT_EQ(top.IsEmpty(), results.error != 0);
        if (name.starts_with("odd_")) {
            const std::string bytes = platform::ReadWholeFile(entry.path().wstring()).bytes;
            EXPECT_EQ(results.error == 0, platform::LooksLikeUtf16(bytes));
        } else {
            EXPECT_EQ(results.error == 0, name.starts_with("good_"));
            EXPECT_TRUE(name.starts_with("good_") || name.starts_with("bad_"));
        }
        ++sampleCount;
    }
    EXPECT_GE(sampleCount, 40U);
}

}  // namespace
}  // namespace tavro::xml
