#include <gtest/gtest.h>

#include <set>
#include <string>

#include "library/messages/catalogue.h"

namespace tavrolib {
namespace {

// Messages of the Ethernet displays that label no row: titles, sections and notices.
const std::set<std::uint32_t> OtherIds = {29696, 29746, 29747, 29748, 29776, 29797,
                                          29798, 29799, 29800, 29805, 29806, 29952,
                                          29953, 29956, 29957, 29958, 29959, 29960};

// East Asian characters take two columns of a terminal.
std::size_t ColumnsOf(std::wstring_view text) {
    std::size_t columns = 0;
    for (const wchar_t character : text) {
        columns += character >= 0x1100 ? 2 : 1;
    }
    return columns;
}

TEST(EthernetMessages, LabelsFitTheirColumnWithTheNumberOfTheirRow) {
    constexpr std::string_view WidestPrefix = "16. ";
    std::size_t count = 0;
    for (const Language language : {Language::English, Language::Japanese, Language::Chinese}) {
        for (const Message& message : Catalogue(language)) {
            if (message.id >= 29696 && message.id <= 29960 && !OtherIds.contains(message.id)) {
                EXPECT_LT(WidestPrefix.size() + ColumnsOf(message.text), 36U) << message.id;
                ++count;
            }
        }
    }
    // 19 rows of the port, 24 + 1 of the statistics, 30 settings of their own, value and choice.
    EXPECT_EQ(count, 3U * (19 + 25 + 30 + 2));
}

}  // namespace
}  // namespace tavrolib
