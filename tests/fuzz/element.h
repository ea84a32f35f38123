#pragma once

#include <random>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "xml/node.h"

// XML documents as trees that can be changed and written.
namespace tavro_fuzz {

// An element in UTF-8. Texts stand before its children.
struct Element {
    std::string name;
    std::vector<std::pair<std::string, std::string>> attributes;
    std::string text;
    std::vector<Element> children;
};

Element ElementOf(const tavro::xml::XmlNode& node);

// The element as a document, well-formed as long as its names are.
std::string DocumentOf(const Element& element);

// Changes one element of the tree: it goes, comes twice, becomes the copy of another or a child of
// it, its place, name, attributes or value change. Names and values are mostly taken from `names`
// and `values`.
void MutateElement(Element& top, std::span<const char* const> names,
                   std::span<const char* const> values, std::mt19937& random);

}  // namespace tavro_fuzz
