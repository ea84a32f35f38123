// How a document lies in memory; for the sources of the reader only (callers hold an XmlNode).
//
// A document is one object: its wide text, in which the parser has put an end (a zero) behind every
// name, value and text, and an arena with the nodes and lists that point into it. No document holds
// the character zero, so nothing else marks an end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/wipe.h"
#include "xml/node.h"

namespace tavro::xml {

// Memory that is given out in order and freed as a whole.
class Arena {
  public:
    // Uninitialised storage, aligned for pointers and sizes. Throws std::bad_alloc.
    void* Allocate(std::size_t size);

  private:
    std::vector<std::unique_ptr<std::byte[]>> chunks_;
    std::byte* next_ = nullptr;
    std::size_t room_ = 0;
    std::size_t chunkSize_ = 0;
};

struct StoredAttribute {
    const wchar_t* name;
    const wchar_t* value;
};

struct StoredRegion {
    const wchar_t* text;
    XmlRegion region;
};

struct Node;

// The head of what lies between an element's tags; the three lists follow it in memory.
struct Content {
    std::size_t childCount;
    std::size_t textCount;
    std::size_t regionCount;

    Node** Children() const { return static_cast<Node**>(Lists()); }
    const wchar_t** Texts() const {
        return static_cast<const wchar_t**>(static_cast<void*>(Children() + childCount));
    }
    StoredRegion* Regions() const {
        return static_cast<StoredRegion*>(static_cast<void*>(Texts() + textCount));
    }

  private:
    void* Lists() const { return const_cast<Content*>(this + 1); }
};

// That of an element that has nothing between its tags.
extern const Content NoContent;

struct Node {
    const wchar_t* name;
    // Null for the top element, and for a node that outlived its parent.
    Node* parent;
    const StoredAttribute* attributes;
    const Content* content;
    std::uint32_t attributeCount;
    // The handles on this node, fewer than memory has room for. A node lives as long as it has one,
    // or its parent lives.
    std::uint32_t references;
};

struct Document {
    explicit Document(std::wstring wholeText) : text(std::move(wholeText)) {}
    // Documents hold secrets: the text does not stay behind.
    ~Document() { platform::WipeBytes(text.data(), text.size() * sizeof(wchar_t)); }
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    std::wstring text;
    Arena arena;
    // The handles on all nodes of the document; it is freed when there are none.
    std::size_t references = 0;
};

// The first handle on a document, on its top element. From now on the handles own the document.
XmlNode MakeHandle(Document* document, Node* node) noexcept;

}  // namespace tavro::xml
