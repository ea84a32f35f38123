// Puts the tree together while a document is parsed; for the sources of the reader only.
#pragma once

#include <vector>

#include "import/xml_tree.h"

namespace tavro::xml {

// Elements are opened and closed in document order. What belongs to an open element waits in lists
// that all open elements share, each owning the end of what was there when it was opened; closing
// it moves its part to the document's arena. Every function may throw std::bad_alloc.
class TreeBuilder {
  public:
    explicit TreeBuilder(Document& wholeDocument) : document(wholeDocument) {}

    // Opens an element inside the innermost open one.
    void Open(const wchar_t* name, const std::vector<StoredAttribute>& attributes) {
        openElements.push_back(Add(name, attributes));
    }
    // Opens an element and closes it again.
    void AddEmpty(const wchar_t* name, const std::vector<StoredAttribute>& attributes) {
        Add(name, attributes);
    }
    // Closes the innermost open element. The top element's content is stored by Finish, after the
    // regions that follow it.
    void Close();
    // Adds to the innermost open element, or before and after the top element to that one.
    void AddText(const wchar_t* text) { texts.push_back(text); }
    void AddRegion(const wchar_t* text, XmlRegion region) { regions.push_back({text, region}); }

    bool HasTopElement() const { return top != nullptr; }
    bool HasOpenElement() const { return !openElements.empty(); }
    // The innermost open element's name; there must be one.
    const wchar_t* OpenName() const { return openElements.back().node->name; }

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

    Document& document;
    Node* top = nullptr;
    std::vector<OpenElement> openElements;
    std::vector<Node*> children;
    std::vector<const wchar_t*> texts;
    std::vector<StoredRegion> regions;
};

}  // namespace tavro::xml
