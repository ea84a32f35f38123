#include "xml/tree.h"

#include <algorithm>

namespace tavro::xml {
namespace {

constexpr std::size_t Unit = alignof(void*);
constexpr std::size_t SmallestChunk = 1024;
constexpr std::size_t LargestChunk = 256 * 1024;

}  // namespace

const Content NoContent{};

void* Arena::Allocate(std::size_t size) {
    size = (size + Unit - 1) / Unit * Unit;
    if (size > room_) {
        chunkSize_ = std::clamp(chunkSize_ * 2, SmallestChunk, LargestChunk);
        if (size > chunkSize_ / 4) {
            // A large list gets storage of its own; the chunk in use stays in use.
            return chunks_.emplace_back(std::make_unique_for_overwrite<std::byte[]>(size)).get();
        }
        next_ = chunks_.emplace_back(std::make_unique_for_overwrite<std::byte[]>(chunkSize_)).get();
        room_ = chunkSize_;
    }
    void* const place = next_;
    next_ += size;
    room_ -= size;
    return place;
}

}  // namespace tavro::xml
