#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavro {

// The ways in which a message and its value are laid out on the console.
enum class Layout : std::uint32_t {
    Plain = 0,    // message and value without a separator
    Title = 1,    // centred between two rule lines
    Row = 2,      // label and value, the colons of successive rows in line
    Message = 3,  // the message alone, or message, " : " and value
    Prompt = 4,   // message and " : ", the line left open for an answer
    Notice = 5,   // indented message
    Section = 6,  // message in brackets
};

// Geometry of the last title, row or wide row.
struct LayoutGeometry {
    std::int32_t padding = 0;
    std::int32_t columnWidth = 0;
    std::int32_t indent = 0;
};

// Process-wide; written by `LayOutMessage` and `LayOutRow`.
extern LayoutGeometry LastLayout;

// The console text, line ends included, for a message with its value in one of the layouts.
// `prefix` stands before the message in rows, prompts, notices and sections. Titles and messages
// leave out a value that is empty, is one blank, or is ":" once its outer blanks are gone.
std::wstring LayOutMessage(std::wstring_view message, std::string_view value, Layout layout,
                           std::string_view prefix);

// A label row (`Layout::Row`) whose value is wide text.
std::wstring LayOutRow(std::wstring_view message, std::wstring_view value, std::string_view prefix);

}  // namespace tavro
