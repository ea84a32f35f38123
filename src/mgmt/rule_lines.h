#pragma once

#include <string_view>

namespace tavro {

// The rule lines that end or divide displays, without their line ends.
inline constexpr std::wstring_view Rule54 =
    L"------------------------------------------------------";
inline constexpr std::wstring_view Rule78 =
    L"------------------------------------------------------------------------------";
inline constexpr std::wstring_view Rule96 =
    L"---------------------------------------------------------------------------------------------"
    L"---";
inline constexpr std::wstring_view TabRule65 =
    L"\t-----------------------------------------------------------------";
inline constexpr std::wstring_view TabRule67 =
    L"\t-------------------------------------------------------------------";
static_assert(Rule54.size() == 54 && Rule78.size() == 78 && Rule96.size() == 96);
static_assert(TabRule65.size() == 1 + 65 && TabRule67.size() == 1 + 67);

// Prints the two rule lines, the tabbed one of 65 hyphens and that of 78, that end many displays.
void ShowClosingRules();

}  // namespace tavro
