#include "fuzz/element.h"

#include <algorithm>
#include <iterator>

#include "fuzz/mutation.h"
#include "platform/encoding.h"

namespace tavro_fuzz {
namespace {

std::string Utf8(std::wstring_view text) {
    return tavro::platform::EncodeText(text, tavro::platform::Utf8CodePage);
}

std::string Escaped(std::string_view text) {
    std::string escaped;
    for (const char character : text) {
        if (character == '<' || character == '&' || character == '"') {
            escaped += "&#" + std::to_string(static_cast<int>(character)) + ';';
        } else {
            escaped += character;
        }
    }
    return escaped;
}

void Write(const Element& element, std::string& document) {
    document += '<' + element.name;
    for (const auto& [name, value] : element.attributes) {
        document += ' ' + name + "=\"" + Escaped(value) + '"';
    }
    if (element.text.empty() && element.children.empty()) {
        document += "/>";
        return;
    }
    document += '>' + Escaped(element.text);
    for (const Element& child : element.children) {
        Write(child, document);
    }
    document += "</" + element.name + '>';
}

// The elements that have children of the tree, which stay where they are until one of these lists
// changes.
void CollectParents(Element& element, std::vector<Element*>& parents) {
    if (!element.children.empty()) {
        parents.push_back(&element);
    }
    for (Element& child : element.children) {
        CollectParents(child, parents);
    }
}

template <class List>
auto AnyIn(List& list, std::mt19937& random) {
    return list.begin() + static_cast<std::ptrdiff_t>(Below(list.size(), random));
}

std::string AnyText(std::span<const char* const> texts, std::mt19937& random) {
    return texts[Below(texts.size(), random)];
}

void MutateAttributes(Element& element, std::span<const char* const> values, std::mt19937& random) {
    auto& attributes = element.attributes;
    const std::size_t choice = attributes.empty() ? 0 : Below(6, random);
    if (choice == 0) {
        constexpr const char* AttributeNames[] = {"value", "VALUE", "number", "port", "name"};
        const std::string name = AnyText(AttributeNames, random);
        if (std::ranges::find(attributes, name, &std::pair<std::string, std::string>::first) ==
            attributes.end()) {
            attributes.insert(attributes.begin(), {name, AnyText(values, random)});
        }
    } else if (choice == 1) {
        attributes.erase(AnyIn(attributes, random));
    } else if (choice == 2) {
        std::swap(*AnyIn(attributes, random), *AnyIn(attributes, random));
    } else if (choice == 3) {
        auto& value = AnyIn(attributes, random)->second;
        value = MutatedBytes(value);
    } else {
        AnyIn(attributes, random)->second = AnyText(values, random);
    }
}

}  // namespace

Element ElementOf(const tavro::xml::XmlNode& node) {
    Element element;
    element.name = Utf8(node.Name());
    for (std::size_t i = 0; i < node.AttributeCount(); ++i) {
        const tavro::xml::XmlAttribute attribute = node.Attribute(i);
        element.attributes.emplace_back(Utf8(attribute.name), Utf8(attribute.value.value_or(L"")));
    }
    for (std::size_t i = 0; i < node.TextCount(); ++i) {
        element.text += Utf8(node.Text(i));
    }
    for (std::size_t i = 0; i < node.ChildCount(); ++i) {
        element.children.push_back(ElementOf(node.Child(i)));
    }
    return element;
}

std::string DocumentOf(const Element& element) {
    std::string document;
    Write(element, document);
    return document;
}

void MutateElement(Element& top, std::span<const char* const> names,
                   std::span<const char* const> values, std::mt19937& random) {
    std::vector<Element*> parents;
    CollectParents(top, parents);
    if (parents.empty()) {
        top.children.push_back({.name = AnyText(names, random)});
        return;
    }
    auto& siblings = parents[Below(parents.size(), random)]->children;
    const Element other = *AnyIn(parents[Below(parents.size(), random)]->children, random);
    const auto any = AnyIn(siblings, random);
    switch (Below(9, random)) {
        case 0:
            siblings.erase(any);
            break;
        case 1:
            siblings.insert(any, other);
            break;
        case 2:
            std::swap(*any, *AnyIn(siblings, random));
            break;
        case 3:
            any->name = AnyText(names, random);
            break;
        case 4:
            any->children.push_back(other);
            break;
        case 5:
            any->children.push_back({.name = AnyText(names, random),
                                     .attributes = {{"value", AnyText(values, random)}}});
            break;
        case 6:
            any->text = AnyText(values, random);
            break;
        default:
            MutateAttributes(*any, values, random);
    }
}

}  // namespace tavro_fuzz
