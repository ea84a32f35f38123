#include "mgmt/layout.h"

#include <algorithm>

#include "mgmt/rule_lines.h"
#include "mgmt/text.h"

namespace tavro {

LayoutGeometry LastLayout;

namespace {

bool IsEmptyLike(std::string_view value) {
    return value.empty() || value == " " || WithoutOuterBlanks(value) == ":";
}

std::wstring MessageAndValue(std::wstring_view message, std::string_view value) {
    std::wstring text(message);
    text += L" : ";
    text += ToWide(WithoutOuterBlanks(value));
    return text;
}

std::wstring Prefixed(std::string_view prefix, std::wstring_view message) {
    std::wstring text = ToWide(prefix);
    text += message;
    return text;
}

std::wstring LayOutTitle(std::wstring_view message, std::string_view value) {
    const auto half = static_cast<std::int32_t>((Utf16Length(message) + value.size()) / 2);
    LastLayout = {.padding = half < 34 ? 41 - half : 8, .columnWidth = 33, .indent = 8};

    const std::wstring rule = std::wstring(TabRule67) + L'\n';
    std::wstring text = rule;
    text.append(static_cast<std::size_t>(LastLayout.padding), L' ');
    text += IsEmptyLike(value) ? std::wstring(message) : MessageAndValue(message, value);
    text += L'\n';
    text += rule;
    return text;
}

std::wstring LayOutPlainMessage(std::wstring_view message, std::string_view value) {
    std::wstring text = L" ";
    if (IsEmptyLike(value)) {
        text += L'\n';
        text += message;
    } else {
        text += MessageAndValue(message, value);
    }
    text += L'\n';
    return text;
}

}  // namespace

std::wstring LayOutRow(std::wstring_view message, std::wstring_view value,
                       std::string_view prefix) {
    constexpr std::wstring_view Separator = L": ";
    const std::wstring label = Prefixed(prefix, message);
    LastLayout = {.padding = 36 - static_cast<std::int32_t>(Utf16Length(label)),
                  .columnWidth = 40,
                  .indent = 4};

    std::wstring text = L"\t" + label;
    const auto separatorWidth = static_cast<std::int32_t>(Separator.size());
    text.append(static_cast<std::size_t>(std::max(LastLayout.padding - separatorWidth, 0)), L' ');
    text += Separator;
    text += value;
    text += L'\n';
    return text;
}

std::wstring LayOutMessage(std::wstring_view message, std::string_view value, Layout layout,
                           std::string_view prefix) {
    switch (layout) {
        case Layout::Title:
            return LayOutTitle(message, value);
        case Layout::Row:
            return LayOutRow(message, ToWide(value), prefix);
        case Layout::Message:
            return LayOutPlainMessage(message, value);
        case Layout::Prompt:
            return L"\n\t" + Prefixed(prefix, message) + L" : ";
        case Layout::Notice:
            return L"\n\t\t" + Prefixed(prefix, message) + L"\n";
        case Layout::Section:
            return L"\n\t[" + Prefixed(prefix, message) + L"]\n\n";
        case Layout::Plain:
            break;
    }
    return std::wstring(message) + ToWide(value) + L"\n";
}

}  // namespace tavro
