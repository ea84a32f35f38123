// The parts of a document that only stand before its top element; for the sources of the reader
// only.
#pragma once

#include "xml/scanner.h"

namespace tavro::xml {

// Whether the scanner, at the very beginning of the text, stands before an XML declaration, and not
// before an instruction whose name goes on after "xml".
bool SeesDeclaration(const Scanner& scanner);

// Steps over the XML declaration. Its encoding is not acted upon: the text is decoded already.
bool SkipDeclaration(Scanner& scanner);

// Steps over the rest of a DOCTYPE region, whose opening marker began at the mark, and returns
// where its closing marker stands; null on failure. The closing marker is the ">" that ends the
// whole: one inside a quoted text, a comment, an instruction or the bracketed declarations is not
// it. Of the declarations no more is read than that takes.
wchar_t* SkipDoctype(Scanner& scanner, const Scanner::Mark& opening);

}  // namespace tavro::xml
