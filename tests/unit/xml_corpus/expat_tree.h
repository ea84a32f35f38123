// What expat says about the corpus, as expat_trees.py has written it down.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

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
    // Of a malformed document, what came before the error. Entities are not replaced in text, the
    // attributes are those that the document states, and an entity without a declaration is treated
    // as one that is declared elsewhere.
    FlatTree tree;
};

struct CorpusDocument {
    std::string name;
    std::string bytes;
    // Whether expat has read the bytes as little-endian UTF-16, whatever the system's own test
    // says.
    bool isUtf16 = false;
    ExpatResult expat;
};

// Documents from one place.
struct CorpusSource {
    std::string name;
    // How many there must be at least.
    std::size_t least = 0;
    std::vector<CorpusDocument> documents;
};

// Reads the file. Throws std::exception when it is missing or holds something else.
std::vector<CorpusSource> LoadCorpus(const std::string& path);

}  // namespace tavro::xml
