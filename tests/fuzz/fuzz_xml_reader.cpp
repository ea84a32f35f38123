// Feeds arbitrary bytes to the XML document reader the way a file would, walks over what comes out
// and lets go of it in an order that the bytes choose.
#include <clocale>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "fuzz/require.h"
#include "xml/file.h"
#include "xml/parser.h"

using namespace tavro::xml;

namespace {

// The texts of a node are read to their ends, so that the sanitizers see each of them.
std::size_t Touch(std::wstring_view text) {
    Require(*text.end() == L'\0');
    return text.size();
}

void CheckNode(const XmlNode& node) {
    std::size_t total = Touch(node.Name());
    Require(total > 0);
    for (std::size_t index = 0; index < node.AttributeCount(); ++index) {
        const XmlAttribute attribute = node.Attribute(index);
        Require(Touch(attribute.name) > 0 && attribute.value.has_value());
        total += Touch(attribute.value.value_or(L""));
    }
    for (std::size_t index = 0; index < node.TextCount(); ++index) {
        Require(Touch(node.Text(index)) > 0);
    }
    for (std::size_t index = 0; index < node.ClearItemCount(); ++index) {
        total += Touch(node.ClearItem(index).text);
        Require(!node.ClearItem(index).closingMarker.empty());
    }
    Require(node.Child(node.ChildCount()).IsEmpty());
    Require(total > 0);
}

void CheckTree(XmlNode top, std::string_view bytes) {
    std::vector<XmlNode> kept;
    std::vector<XmlNode> waiting{top};
    std::size_t visited = 0;
    while (!waiting.empty()) {
        const XmlNode node = waiting.back();
        waiting.pop_back();
        CheckNode(node);
        for (std::size_t index = 0; index < node.ChildCount(); ++index) {
            waiting.push_back(node.Child(index));
            Require(waiting.back().Parent() == node);
        }
        if ((static_cast<unsigned char>(bytes[visited++ % bytes.size()]) & 1U) != 0) {
            kept.push_back(node);
        }
    }
    top.Release();
    for (std::size_t index = 0; index < kept.size(); ++index) {
        // Nodes were visited parents first; letting go from either end covers both orders.
        XmlNode& next = kept[(bytes[0] & 2) != 0 ? index : kept.size() - 1 - index];
        CheckNode(next);
        if (const XmlNode parent = next.Parent(); !parent.IsEmpty()) {
            CheckNode(parent);
        }
        next.Release();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool localeSet = std::setlocale(LC_ALL, "C.UTF-8") != nullptr;
    Require(localeSet);
    const std::string_view bytes = BytesOf(data, size);
    std::optional<std::wstring> text = DecodeXmlBytes(bytes);
    if (!text) {
        return 0;
    }
    XmlResults results;
    XmlNode top = ParseXmlText(std::move(*text), results);
    Require(top.IsEmpty() == (results.error != 0));
    Require((results.line != 0 && results.column != 0) == (results.error != 0));
    if (!top.IsEmpty()) {
        CheckTree(std::move(top), bytes);
    }
    return 0;
}
