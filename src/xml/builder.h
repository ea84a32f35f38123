// Puts the tree together while a document is parsed; for the sources of the reader only.
#pragma once

#include <vector>

#include "xml/tree.h"

namespace tavro::xml {

// Elements are opened and closed in document order. What belongs to an open element waits in lists
// that all open elements share, each owning the end of what was there when it was opened; closing
// it moves its part to the document's arena. Every function may throw std::bad_alloc.
class TreeBuilder {
  public:
    explicit TreeBuilder(Document& wholeDocument) : document_(wholeDocument) {}

    // Opens an element inside the innermost open one.
    void Open(const wchar_t* name, const std::vector<StoredAttribute>& attributes) {
        openElements_.push_back(Add(name, attributes));
    }
    // Opens an element and closes it again.
    void AddEmpty(const wchar_t* name, const std::vector<StoredAttribute>& attributes) {
        Add(name, attributes);
    }
    // Closes the innermost open element. The top element's content is stored by Finish, after the
    // regions that follow it.
    void Close();
    // Adds to the innermost open element, or before and after the top element to that one.
    void AddText(const wchar_t* text) { texts_.push_back(text); }
    void AddRegion(const wchar_t* text, XmlRegion region) { regions_.push_back({text, region}); }

    bool HasTopElement() const { return top_ != nullptr; }
    bool HasOpenElement() const { return !openElements_.empty(); }
    // The innermost open element's name; there must be one.
    const wchar_t* OpenName() const { return openElements_.back().node->name; }

    // Completes the tree and returns its top element, which must be there and closed.
    Node* Finish();

  private:
    struct OpenElement {
        Node* node;
        // Where the element's part of each list begins.
        std::size_t children;
        std::size_t texts;
        std::size_t regions;
    };

    OpenElement Add(const wchar_t* name, const std::vector<StoredAttribute>& attributes);
    void StoreContent(const OpenElement& element);

    Document& document_;
    Node* top_ = nullptr;
    std::vector<OpenElement> openElements_;
    std::vector<Node*> children_;
    std::vector<const wchar_t*> texts_;
    std::vector<StoredRegion> regions_;
};

}  // namespace tavro::xml
