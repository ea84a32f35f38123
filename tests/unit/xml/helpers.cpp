#include "unit/xml/helpers.h"

#include <gtest/gtest.h>

#include "xml/parser.h"

namespace tavro::xml {

std::wstring Describe(const XmlNode& node) {
    std::wstring result(node.Name());
    for (std::size_t index = 0; index < node.AttributeCount(); ++index) {
        const XmlAttribute attribute = node.Attribute(index);
        result += L" @" + std::wstring(attribute.name) + L"=";
        result += attribute.value ? L"'" + std::wstring(*attribute.value) + L"'" : L"nothing";
    }
    for (std::size_t index = 0; index < node.TextCount(); ++index) {
        result += L" \"" + std::wstring(node.Text(index)) + L"\"";
    }
    for (std::size_t index = 0; index < node.ClearItemCount(); ++index) {
        const XmlClearItem item = node.ClearItem(index);
        result += L" " + std::wstring(item.openingMarker) + std::wstring(item.text) +
                  std::wstring(item.closingMarker);
    }
    for (std::size_t index = 0; index < node.ChildCount(); ++index) {
        result += L" (" + Describe(node.Child(index)) + L")";
    }
    return result;
}

std::string Describe(const XmlResults& results) {
    return std::to_string(results.error) + " at " + std::to_string(results.line) + ":" +
           std::to_string(results.column);
}

std::string Describe(XmlError error, std::size_t line, std::size_t column) {
    return Describe(XmlResults{static_cast<std::uint32_t>(error), line, column});
}

std::string Printable(std::wstring_view text) {
    std::string result;
    for (const wchar_t unit : text) {
        result += unit >= L' ' && unit < 0x7F ? static_cast<char>(unit) : '?';
    }
    return result;
}

std::wstring DescribeParsed(std::wstring text) {
    XmlResults results;
    const XmlNode top = ParseXmlText(std::move(text), results);
    EXPECT_EQ(Describe(results), "0 at 0:0");
    EXPECT_FALSE(top.IsEmpty());
    return Describe(top);
}

std::string DescribeRefusal(std::wstring text) {
    XmlResults results;
    const XmlNode top = ParseXmlText(std::move(text), results);
    EXPECT_TRUE(top.IsEmpty());
    return Describe(results);
}

}  // namespace tavro::xml
