// A document as expat reads it.
#pragma once

#include <string>
#include <string_view>

#include "flat_tree.h"

namespace tavro::xml {

struct ExpatResult {
    bool wellFormed = false;
    // Why not, and where.
    std::string error;
    // The error lies in the DOCTYPE's brackets, or in what is declared there.
    bool errorInDeclarations = false;
    // It is about a character that stands where it may not.
    bool errorInToken = false;
    // Of a malformed document, what came before the error.
    FlatTree tree;
};

// Reads UTF-8, or UTF-16 with a mark, whatever encoding the document itself names. Entities are not
// replaced in text, the attributes are those that the document states, and an entity without a
// declaration is treated as one that is declared elsewhere.
ExpatResult ReadWithExpat(std::string_view bytes);

}  // namespace tavro::xml
