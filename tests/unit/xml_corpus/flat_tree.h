// A document's elements in one list, the form in which the trees of two parsers are compared.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "xml/node.h"

namespace tavro::xml {

// Texts are UTF-8.
struct FlatElement {
    // The nesting, from 1 for the top element; with the order it fixes the tree.
    std::size_t depth = 0;
    std::string name;
    std::vector<std::pair<std::string, std::string>> attributes;
    // All pieces of text one after another.
    std::string text;
    // The regions with their opening markers, but for the DOCTYPE.
    std::vector<std::string> regions;
};

struct FlatTree {
    // In document order.
    std::vector<FlatElement> elements;
    // What the document makes use of that parsers are meant to treat differently.
    bool declaresAttributes = false;
    bool hasPreformatted = false;
    bool hasUnusualName = false;
};

FlatTree Flatten(const XmlNode& top);

// The text with references to characters replaced, again and again until there are none.
std::string WithoutCharacterReferences(std::string text);

// The text without references to entities ("&name;").
std::string WithoutEntityReferences(std::string_view text);

// Each CR LF and each CR becomes one line feed.
std::string WithLineFeedsOnly(std::string_view text);

// Each tab and each line end (CR LF is one) becomes a space.
std::string WithBlanksAsSpaces(std::string_view text);

// Runs of blanks become one, none stay at the ends: what a declared type does to a value.
std::string WithBlanksCollapsed(std::string_view text);

}  // namespace tavro::xml
