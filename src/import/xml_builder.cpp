#include "import/xml_builder.h"

#include <limits>
#include <memory>
#include <new>

namespace tavro::xml {
namespace {

// Moves the end of a list, from `begin` on, to `place`.
template <typename T>
void MoveEnd(std::vector<T>& list, std::size_t begin, T* place) {
    std::uninitialized_copy(list.begin() + static_cast<std::ptrdiff_t>(begin), list.end(), place);
    list.resize(begin);
}

}  // namespace

TreeBuilder::OpenElement TreeBuilder::Add(const wchar_t* name,
                                          const std::vector<StoredAttribute>& attributes) {
    if (attributes.size() > std::numeric_limits<std::uint32_t>::max()) {
        throw std::bad_alloc();
    }
    StoredAttribute* stored = nullptr;
    if (!attributes.empty()) {
        stored = static_cast<StoredAttribute*>(
            document.arena.Allocate(attributes.size() * sizeof(StoredAttribute)));
        std::uninitialized_copy(attributes.begin(), attributes.end(), stored);
    }
    Node* const parent = HasOpenElement() ? openElements.back().node : nullptr;
    auto* const node = new (document.arena.Allocate(sizeof(Node)))
        Node{name, parent, stored, &NoContent, static_cast<std::uint32_t>(attributes.size()), 0};
    if (parent == nullptr) {
        top = node;
        // What the prolog left in the lists is the top element's.
        return {node, 0, 0, 0};
    }
    children.push_back(node);
    return {node, children.size(), texts.size(), regions.size()};
}

void TreeBuilder::Close() {
    const OpenElement closed = openElements.back();
    openElements.pop_back();
    if (closed.node != top) {
        StoreContent(closed);
    }
}

Node* TreeBuilder::Finish() {
    StoreContent({top, 0, 0, 0});
    return top;
}

void TreeBuilder::StoreContent(const OpenElement& element) {
    const Content counts{children.size() - element.children, texts.size() - element.texts,
                         regions.size() - element.regions};
    if (counts.childCount + counts.textCount + counts.regionCount == 0) {
        return;
    }
    void* const place = document.arena.Allocate(
        sizeof(Content) + (counts.childCount + counts.textCount) * sizeof(void*) +
        counts.regionCount * sizeof(StoredRegion));
    auto* const content = new (place) Content(counts);
    MoveEnd(children, element.children, content->Children());
    MoveEnd(texts, element.texts, content->Texts());
    MoveEnd(regions, element.regions, content->Regions());
    element.node->content = content;
}

}  // namespace tavro::xml
