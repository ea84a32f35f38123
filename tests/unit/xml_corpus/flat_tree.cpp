#include "flat_tree.h"

#include <algorithm>
#include <cstdlib>

#include "platform/encoding.h"

namespace tavro::xml {
namespace {

std::string ToUtf8(std::wstring_view text) {
    return platform::EncodeText(text, platform::Utf8CodePage);
}

std::wstring WideCharacter(char32_t character) {
    if (sizeof(wchar_t) == 2 && character >= 0x10000) {
        const char32_t rest = character - 0x10000;
        return {static_cast<wchar_t>(0xD800 + (rest >> 10U)),
                static_cast<wchar_t>(0xDC00 + (rest & 0x3FFU))};
    }
    return {static_cast<wchar_t>(character)};
}

bool IsUnusual(std::string_view name) {
    return std::ranges::any_of(name, [](char byte) { return (byte & 0x80) != 0; });
}

FlatElement FlattenOne(const XmlNode& node, std::size_t depth, FlatTree& tree) {
    FlatElement element;
    element.depth = depth;
    element.name = ToUtf8(node.Name());
    tree.hasUnusualName |= IsUnusual(element.name);
    for (std::size_t index = 0; index < node.AttributeCount(); ++index) {
        const XmlAttribute attribute = node.Attribute(index);
        element.attributes.emplace_back(ToUtf8(attribute.name),
                                        ToUtf8(attribute.value.value_or(L"")));
        tree.hasUnusualName |= IsUnusual(element.attributes.back().first);
    }
    for (std::size_t index = 0; index < node.TextCount(); ++index) {
        element.text += ToUtf8(node.Text(index));
    }
    for (std::size_t index = 0; index < node.ClearItemCount(); ++index) {
        const XmlClearItem item = node.ClearItem(index);
        if (item.openingMarker == MarkersOf(XmlRegion::Doctype).opening) {
            tree.declaresAttributes |= item.text.find(L"<!ATTLIST") != std::wstring_view::npos;
        } else {
            element.regions.push_back(ToUtf8(item.openingMarker) + ToUtf8(item.text));
            tree.hasPreformatted |=
                item.openingMarker == MarkersOf(XmlRegion::Preformatted).opening;
        }
    }
    return element;
}

}  // namespace

FlatTree Flatten(const XmlNode& top) {
    FlatTree tree;
    std::vector<std::pair<XmlNode, std::size_t>> waiting{{top, 1}};
    while (!waiting.empty()) {
        const auto [node, depth] = waiting.back();
        waiting.pop_back();
        tree.elements.push_back(FlattenOne(node, depth, tree));
        for (std::size_t index = node.ChildCount(); index > 0; --index) {
            waiting.emplace_back(node.Child(index - 1), depth + 1);
        }
    }
    return tree;
}

std::string WithoutCharacterReferences(std::string text) {
    for (std::size_t begin = 0; (begin = text.find("&#", begin)) != std::string::npos;) {
        const bool isHex = text.compare(begin, 3, "&#x") == 0;
        const char* const digits = text.c_str() + begin + (isHex ? 3 : 2);
        char* digitsEnd = nullptr;
        const unsigned long value = std::strtoul(digits, &digitsEnd, isHex ? 16 : 10);
        if (digitsEnd == digits || *digitsEnd != ';') {
            begin += 2;
            continue;
        }
        const std::wstring character = WideCharacter(static_cast<char32_t>(value));
        const auto end = static_cast<std::size_t>(digitsEnd + 1 - text.c_str());
        text.replace(begin, end - begin, ToUtf8(character));
        // A reference to "&" may complete one that begins before it.
        begin = 0;
    }
    return text;
}

std::string WithoutEntityReferences(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t begin = std::min(text.find('&'), text.size());
        result += text.substr(0, begin);
        text.remove_prefix(begin);
        const std::size_t end = text.find_first_of("; \t\n<>\"'=/", 1);
        if (text.size() > 1 && end != std::string_view::npos && end > 1 && text[end] == ';') {
            text.remove_prefix(end + 1);
        } else if (!text.empty()) {
            result += text.front();
            text.remove_prefix(1);
        }
    }
    return result;
}

std::string WithLineFeedsOnly(std::string_view text) {
    std::string result;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] == '\r') {
            result += '\n';
            index += text.substr(index, 2) == "\r\n" ? 1U : 0U;
        } else {
            result += text[index];
        }
    }
    return result;
}

std::string WithBlanksAsSpaces(std::string_view text) {
    std::string result = WithLineFeedsOnly(text);
    std::ranges::replace_if(
        result, [](char character) { return character == '\t' || character == '\n'; }, ' ');
    return result;
}

std::string WithBlanksCollapsed(std::string_view text) {
    std::string result;
    for (const char character : text) {
        if (character != ' ') {
            result += character;
        } else if (!result.empty() && result.back() != ' ') {
            result += ' ';
        }
    }
    if (!result.empty() && result.back() == ' ') {
        result.pop_back();
    }
    return result;
}

}  // namespace tavro::xml
