// What the tests of the XML document reader share.
#pragma once

#include <ostream>
#include <string>
#include <string_view>

#include "xml/error.h"
#include "xml/node.h"

namespace tavro::xml {

// The tree as one line: name, attributes as @name='value', texts in double quotes, regions as
// markers around their text, children in parentheses; in this order, separated by blanks.
std::wstring Describe(const XmlNode& node);

// Results as "code at line:column".
std::string Describe(const XmlResults& results);
std::string Describe(XmlError error, std::size_t line, std::size_t column);

// ASCII text for messages; other characters become '?'.
std::string Printable(std::wstring_view text);

// Parses a text, expects that to succeed, and describes the tree.
std::wstring DescribeParsed(std::wstring text);

// Parses a text, expects the empty node, and describes the results.
std::string DescribeRefusal(std::wstring text);

}  // namespace tavro::xml
