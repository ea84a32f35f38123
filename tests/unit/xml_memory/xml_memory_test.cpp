// The XML document reader when there is not enough memory: each of its allocations fails once.
#include <gtest/gtest.h>

#include <string>

#include "failing_new.h"
#include "xml/parser.h"

namespace tavro::xml {
namespace {

constexpr std::wstring_view Secret = L"a secret of the document";

// Has every kind of content, and enough of it for every list to grow several times.
std::wstring MakeDocument() {
    std::wstring text = L"<!DOCTYPE top><top secret='" + std::wstring(Secret) + L"'";
    for (int index = 0; index < 20; ++index) {
        text += L" a" + std::to_wstring(index) + L"='&amp;'";
    }
    text += L">";
    for (int index = 0; index < 200; ++index) {
        text += L"<a><b/>x<!--c-->y<![CDATA[d]]>\r\n";
    }
    for (int index = 0; index < 200; ++index) {
        text += L"</a>";
    }
    return text + L"</top>";
}

TEST(XmlMemory, EveryAllocationOfTheParserMayFail) {
    const std::wstring document = MakeDocument();
    std::size_t failures = 0;
    for (;; ++failures) {
        std::wstring text = document;
        XmlResults results;
        XmlNode top;
        bool secretWasLeft = false;
        {
            const AllocationLimit limit(failures, Secret);
            top = ParseXmlText(std::move(text), results);
            secretWasLeft = limit.SecretWasLeft();
        }
        ASSERT_FALSE(secretWasLeft) << failures;
        if (!top.IsEmpty()) {
            EXPECT_EQ(results.error, 0U);
            EXPECT_EQ(top.Name(), L"top");
            break;
        }
        ASSERT_EQ(results.error, static_cast<std::uint32_t>(XmlError::OutOfMemory)) << failures;
        ASSERT_EQ(results.line, 0U);
        ASSERT_LT(failures, 10'000U);
    }
    EXPECT_GT(failures, 20U);
}

}  // namespace
}  // namespace tavro::xml
