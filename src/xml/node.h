// A document that was read into memory, seen through handles on its elements.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

namespace tavro::xml {

struct Document;
struct Node;

// The four regions whose content is not parsed.
enum class XmlRegion { Cdata, Doctype, Comment, Preformatted };

// What opens and closes a region, as it stands in a file.
struct XmlMarkers {
    std::wstring_view opening;
    std::wstring_view closing;
};
XmlMarkers MarkersOf(XmlRegion region);

// An attribute. A value is absent only in the attribute that a lookup in vain returns.
struct XmlAttribute {
    std::wstring_view name;
    std::optional<std::wstring_view> value;
};

// A region's raw text, without its markers.
struct XmlClearItem {
    std::wstring_view text;
    std::wstring_view openingMarker;
    std::wstring_view closingMarker;
};

// A handle on a shared, reference-counted element. Copying adds a reference; Release, assignment
// and destruction remove one. An element lives as long as it has a handle or its parent lives. When
// a parent's life ends its children lose their link to it, those with handles live on, and the
// others end with it. The memory of a document is given back as a whole, with the last handle on
// any of its elements. Handles on one document belong to one thread at a time.
//
// A handle that was not given an element, or was released, is on the empty node, and so is whatever
// a lookup in vain returns: it has no name, no parent and no content. So a chain of lookups needs
// no test in between.
//
// The texts that a node returns are valid, and followed by a zero, as long as the node lives.
class XmlNode {
  public:
    XmlNode() noexcept;
    XmlNode(const XmlNode& other) noexcept;
    XmlNode(XmlNode&& other) noexcept : XmlNode() { Swap(other); }
    // The reference to the former element goes last, so that a node may be assigned from something
    // that lives only through it.
    XmlNode& operator=(const XmlNode& other) noexcept {
        XmlNode copy(other);
        Swap(copy);
        return *this;
    }
    XmlNode& operator=(XmlNode&& other) noexcept {
        XmlNode moved(std::move(other));
        Swap(moved);
        return *this;
    }
    ~XmlNode() { Release(); }

    // Makes this a handle on the empty node.
    void Release() noexcept;

    bool IsEmpty() const noexcept { return document_ == nullptr; }
    // Whether both are handles on the same node.
    bool operator==(const XmlNode& other) const noexcept { return node_ == other.node_; }

    // The tag name.
    std::wstring_view Name() const;
    // The element that this is a child of; the empty node for the top element and for one whose
    // parent is no more.
    XmlNode Parent() const;

    // Each list is in document order, and its index counts from 0. Every access takes the same
    // time.
    std::size_t ChildCount() const;
    // The empty node when the index is out of range.
    XmlNode Child(std::size_t index) const;

    std::size_t AttributeCount() const;
    // No name and no value when the index is out of range.
    XmlAttribute Attribute(std::size_t index) const;
    // The value of the first attribute whose name is "value", in any case; nothing without one.
    std::optional<std::wstring_view> ValueAttribute() const;

    // The pieces of text between this element's own tags, its children, its regions and processing
    // instructions. Blank pieces count; line ends are single line feeds; of the references, the
    // five that every document may use are replaced.
    std::size_t TextCount() const;
    // An empty text when the index is out of range.
    std::wstring_view Text(std::size_t index) const;

    // The regions between this element's tags. The top element's are those of the document: what
    // stands before and after the element is there too.
    std::size_t ClearItemCount() const;
    // Empty texts when the index is out of range.
    XmlClearItem ClearItem(std::size_t index) const;

  private:
    friend XmlNode MakeHandle(Document* document, Node* node) noexcept;
    XmlNode(Document* document, Node* node) noexcept;

    void Swap(XmlNode& other) noexcept {
        std::swap(document_, other.document_);
        std::swap(node_, other.node_);
    }

    // Null for the empty node.
    Document* document_;
    Node* node_;
};

}  // namespace tavro::xml
