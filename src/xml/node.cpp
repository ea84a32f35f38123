#include "xml/node.h"

#include <algorithm>
#include <array>

#include "xml/tree.h"

namespace tavro::xml {
namespace {

// The node that every handle without an element is on. Nothing writes to it.
Node emptyNode{L"", nullptr, nullptr, &NoContent, 0, 0};

// Ends the life of a node that has neither a parent nor a handle. Nodes that end with it wait in a
// list that is linked through their parent links, which they have no more use for.
void EndLife(Node& ended) noexcept {
    Node* waiting = &ended;
    while (waiting != nullptr) {
        const Content& content = *waiting->content;
        waiting = waiting->parent;
        for (std::size_t index = 0; index < content.childCount; ++index) {
            Node* const child = content.Children()[index];
            if (child->references == 0) {
                child->parent = waiting;
                waiting = child;
            } else {
                child->parent = nullptr;
            }
        }
    }
}

constexpr std::wstring_view ValueName = L"value";

bool IsValueName(const wchar_t* name) {
    return std::ranges::equal(std::wstring_view(name), ValueName, [](wchar_t unit, wchar_t small) {
        return unit == small || unit == small - L'a' + L'A';
    });
}

}  // namespace

XmlMarkers MarkersOf(XmlRegion region) {
    static constexpr std::array<XmlMarkers, 4> Markers{{
        {L"<![CDATA[", L"]]>"},
        {L"<!DOCTYPE", L">"},
        {L"<!--", L"-->"},
        {L"<PRE>", L"</PRE>"},
    }};
    return Markers[static_cast<std::size_t>(region)];
}

XmlNode MakeHandle(Document* document, Node* node) noexcept {
    return {document, node};
}

XmlNode::XmlNode() noexcept : document_(nullptr), node_(&emptyNode) {}

XmlNode::XmlNode(Document* ofDocument, Node* onNode) noexcept
    : document_(ofDocument), node_(onNode) {
    if (document_ != nullptr) {
        ++document_->references;
        ++node_->references;
    }
}

XmlNode::XmlNode(const XmlNode& other) noexcept : XmlNode(other.document_, other.node_) {}

void XmlNode::Release() noexcept {
    Document* const formerDocument = std::exchange(document_, nullptr);
    Node* const formerNode = std::exchange(node_, &emptyNode);
    if (formerDocument == nullptr) {
        return;
    }
    --formerNode->references;
    if (--formerDocument->references == 0) {
        delete formerDocument;
    } else if (formerNode->references == 0 && formerNode->parent == nullptr) {
        EndLife(*formerNode);
    }
}

std::wstring_view XmlNode::Name() const {
    return node_->name;
}

XmlNode XmlNode::Parent() const {
    return node_->parent == nullptr ? XmlNode() : XmlNode(document_, node_->parent);
}

std::size_t XmlNode::ChildCount() const {
    return node_->content->childCount;
}

XmlNode XmlNode::Child(std::size_t index) const {
    return index < ChildCount() ? XmlNode(document_, node_->content->Children()[index]) : XmlNode();
}

std::size_t XmlNode::AttributeCount() const {
    return node_->attributeCount;
}

XmlAttribute XmlNode::Attribute(std::size_t index) const {
    if (index >= AttributeCount()) {
        return {};
    }
    return {node_->attributes[index].name, node_->attributes[index].value};
}

std::optional<std::wstring_view> XmlNode::ValueAttribute() const {
    for (std::size_t index = 0; index < AttributeCount(); ++index) {
        if (IsValueName(node_->attributes[index].name)) {
            return node_->attributes[index].value;
        }
    }
    return std::nullopt;
}

std::size_t XmlNode::TextCount() const {
    return node_->content->textCount;
}

std::wstring_view XmlNode::Text(std::size_t index) const {
    return index < TextCount() ? node_->content->Texts()[index] : std::wstring_view();
}

std::size_t XmlNode::ClearItemCount() const {
    return node_->content->regionCount;
}

XmlClearItem XmlNode::ClearItem(std::size_t index) const {
    if (index >= ClearItemCount()) {
        return {};
    }
    const StoredRegion& item = node_->content->Regions()[index];
    const XmlMarkers markers = MarkersOf(item.region);
    return {item.text, markers.opening, markers.closing};
}

}  // namespace tavro::xml
