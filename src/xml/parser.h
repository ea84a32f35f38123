// Parsing wide text into a tree.
#pragma once

#include <string>

#include "xml/error.h"
#include "xml/node.h"

namespace tavro::xml {

// Parses a whole document and returns its top element; on failure the empty node, and nothing of
// the document is kept. `results` is set in both cases. Never throws, and takes a time and a memory
// that grow with the length of the text and not faster, however deep the elements are nested.
//
// The text is UTF-16 where wchar_t has 16 bits and UTF-32 elsewhere; it becomes part of the
// document. Refused is what XML 1.0 (fifth edition) calls not well-formed. Deliberately different:
//
// - "<PRE>" opens a region that ends at the next "</PRE>", not an element.
// - A DOCTYPE is a region as well. It is read as far as it takes to find its end, so declarations
//   in it may hold mistakes, and what they declare (entities, default values, types of attributes)
//   has no effect.
// - A reference to a character or to an entity other than the five that every document may use
//   stays as it stands, whether the entity is declared or not.
// - The encoding that an XML declaration names has no effect.
// - Text, values and regions are taken as they stand: a line end stays CR LF, CR or LF, and a value
//   keeps its line ends and tabs.
XmlNode ParseXmlText(std::wstring text, XmlResults& results) noexcept;

}  // namespace tavro::xml
