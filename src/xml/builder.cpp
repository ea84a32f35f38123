#include "xml/builder.h"

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
            document_.arena.Allocate(attributes.size() * sizeof(StoredAttribute)));
        std::uninitialized_copy(attributes.begin(), attributes.end(), stored);
    }
    Node* const parent = HasOpenElement() ? openElements_.back().node : nullptr;
    auto* const node = new (document_.arena.Allocate(sizeof(Node)))
        Node{name, parent, stored, &NoContent, static_cast<std::uint32_t>(attributes.size()), 0};
    if (parent == nullptr) {
        top_ = node;
        // What the prolog left in the lists is the top element's.
        return {node, 0, 0, 0};
    }
    children_.push_back(node);
    return {node, children_.size(), texts_.size(), regions_.size()};
}

void TreeBuilder::Close() {
    const OpenElement closed = openElements_.back();
    openElements_.pop_back();
    if (closed.node != top_) {
        StoreContent(closed);
    }
}

Node* TreeBuilder::Finish() {
    StoreContent({top_, 0, 0, 0});
    return top_;
}

void TreeBuilder::StoreContent(const OpenElement& element) {
    const Content counts{children_.size() - element.children, texts_.size() - element.texts,
                         regions_.size() - element.regions};
    if (counts.childCount + counts.textCount + counts.regionCount == 0) {
        return;
    }
    void* const place = document_.arena.Allocate(
        sizeof(Content) + (counts.childCount + counts.textCount) * sizeof(void*) +
        counts.regionCount * sizeof(StoredRegion));
    auto* const content = new (place) Content(counts);
    MoveEnd(children_, element.children, content->Children());
    MoveEnd(texts_, element.texts, content->Texts());
    MoveEnd(regions_, element.regions, content->Regions());
    element.node->content = content;
}

}  // namespace tavro::xml
