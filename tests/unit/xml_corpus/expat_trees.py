"""Reads the corpus with expat and writes what expat says, as JSON, for tavro_xml_corpus_tests on every platform.

usage: expat_trees.py SOURCE-TREE OUTPUT

The corpus is fixed: the fuzzer's samples, XML files of packages that the tests need anyway, and variants of both
that are damaged in places that a seed, their own name, chooses.
"""

import glob
import json
import pathlib
import random
import sys
from xml.parsers import expat

# What to read, and the least number of documents there. The packages: fontconfig-config (which Wine needs) and
# cmake-data.
SOURCES = [
    ("tests/fuzz/corpus/xml_reader/*.xml", 57),
    ("/usr/share/fontconfig/conf.avail/*.conf", 38),
    ("/usr/share/cmake-*/Templates/MSBuild/*.*", 4),
    ("/usr/share/cmake-*/Templates/AppleInfo.plist", 1),
    ("/usr/share/cmake-*/Modules/*.plist.in", 2),
    ("/usr/share/cmake-*/Modules/CompilerId/VS-*.in", 5),
    ("/usr/share/cmake-*/Modules/Internal/CPack/*.plist.in", 3),
]
VARIANTS_OF_EACH = 8
LARGEST_FOR_VARIANTS = 4096  # bytes

PIECES = [
    b"<", b">", b"&", b"'", b'"', b"=", b"/", b"!", b"?", b"-", b"]", b";", b"#", b" ", b"\t", b"\r", b"\r\n", b"\n\r",
    b"\0", b"\x01", b"\xff", b"\xc3\xa9", b"\xf0\x9f\x98\x80", b"]]>", b"--", b"<!--", b"-->", b"<![CDATA[", b"<?",
    b"?>", b"</", b"/>", b"&amp;", b"&#65;", b"&#x1F600;", b"&#0;", b"&name;", b"<PRE>", b"</PRE>", b"<a b='c'/>",
]


def damaged(document, chance):
    """The document with one place changed."""
    place = chance.randrange(len(document) + 1)
    piece = chance.choice(PIECES)
    kind = chance.randrange(4)
    if kind == 0:
        return document[:place] + piece + document[place:]
    if kind == 1:
        return document[:place] + piece + document[place + len(piece):]
    if kind == 2:
        return document[:place] + document[place + chance.randrange(1, 4):]
    other = chance.randrange(len(document) + 1)
    return document[:place] + document[min(place, other):max(place, other)] + document[place:]


def is_utf16(document):
    """Whether the reader is meant to see little-endian UTF-16."""
    return document[:2] in (b"\xff\xfe", b"\xef\xff")


def for_expat(document):
    """The encoding, and the text that the document stands for up to its first zero, as bytes with a mark."""
    if document[:2] == b"\xfe\xff":
        return "UTF-16", document
    if is_utf16(document):
        units = document[2:] + b"\0" * (len(document) % 2)
        end = next((at for at in range(0, len(units), 2) if units[at:at + 2] == b"\0\0"), len(units))
        return "UTF-16", b"\xff\xfe" + units[:end]
    return "UTF-8", document.split(b"\0")[0].decode("utf-8", errors="replace").encode()


class Reading:
    """One parse: the elements in document order, regions with their opening markers but for the DOCTYPE."""

    ABOUT_DECLARATIONS = {
        expat.errors.codes[text]
        for text in (
            expat.errors.XML_ERROR_RECURSIVE_ENTITY_REF,
            expat.errors.XML_ERROR_BINARY_ENTITY_REF,
            expat.errors.XML_ERROR_ATTRIBUTE_EXTERNAL_ENTITY_REF,
            expat.errors.XML_ERROR_ASYNC_ENTITY,
            expat.errors.XML_ERROR_UNDEFINED_ENTITY,
            expat.errors.XML_ERROR_ENTITY_DECLARED_IN_PE,
            expat.errors.XML_ERROR_EXTERNAL_ENTITY_HANDLING,
            expat.errors.XML_ERROR_NOT_STANDALONE,
        )
    }

    def __init__(self, document):
        self.elements = []
        self.open = []
        self.early_regions = []  # before the top element, which has them in the end
        self.in_doctype = False
        self.in_cdata = False
        encoding, text = for_expat(document)
        self.result = self.parse(encoding, text)

    def parse(self, encoding, text):
        parser = expat.ParserCreate(encoding)
        parser.ordered_attributes = True
        parser.specified_attributes = True
        parser.StartElementHandler = self.on_start
        parser.EndElementHandler = lambda name: self.open.pop()
        parser.CharacterDataHandler = self.on_text
        parser.CommentHandler = self.on_comment
        parser.StartCdataSectionHandler = self.on_cdata_start
        parser.EndCdataSectionHandler = lambda: setattr(self, "in_cdata", False)
        parser.StartDoctypeDeclHandler = lambda *_: setattr(self, "in_doctype", True)
        parser.EndDoctypeDeclHandler = lambda: setattr(self, "in_doctype", False)
        # Takes what no other handler takes; that it is there keeps references to entities from being replaced.
        parser.DefaultHandler = lambda data: None
        parser.ExternalEntityRefHandler = lambda *_: 1
        parser.SetParamEntityParsing(expat.XML_PARAM_ENTITY_PARSING_UNLESS_STANDALONE)
        parser.UseForeignDTD(True)
        result = {"wellFormed": True, "error": "", "errorInDeclarations": False, "errorInToken": False}
        try:
            parser.Parse(text, True)
        except expat.ExpatError as error:
            result = {
                "wellFormed": False,
                "error": str(error),
                "errorInDeclarations": self.in_doctype or error.code in self.ABOUT_DECLARATIONS,
                "errorInToken": error.code == expat.errors.codes[expat.errors.XML_ERROR_INVALID_TOKEN],
            }
        return result | {"elements": self.elements}

    def regions(self):
        if self.open:
            return self.open[-1]["regions"]
        return self.elements[0]["regions"] if self.elements else self.early_regions

    def on_start(self, name, attributes):
        element = {
            "depth": len(self.open) + 1,
            "name": name,
            "attributes": list(zip(attributes[::2], attributes[1::2])),
            "text": "",
            "regions": [],
        }
        if not self.elements:
            element["regions"] = self.early_regions
        self.open.append(element)
        self.elements.append(element)

    def on_text(self, text):
        if self.in_cdata:
            self.regions()[-1] += text
        else:
            self.open[-1]["text"] += text

    def on_comment(self, text):
        if not self.in_doctype:
            self.regions().append("<!--" + text)

    def on_cdata_start(self):
        self.regions().append("<![CDATA[")
        self.in_cdata = True


def entry(name, document):
    return {"name": name, "bytes": document.hex(), "isUtf16": is_utf16(document)} | Reading(document).result


def main(tree, output):
    sources, variants = [], []
    for pattern, least in SOURCES:
        documents = []
        for path in sorted(glob.glob(str(pathlib.Path(tree) / pattern))):
            document = pathlib.Path(path).read_bytes()
            documents.append(entry(path, document))
            # Damaged UTF-16 of an unclear kind would be read differently by the systems.
            if len(document) <= LARGEST_FOR_VARIANTS and not is_utf16(document) and document[:1] != b"\xfe":
                for number in range(VARIANTS_OF_EACH):
                    name = f"variant {number} of {pathlib.Path(path).name}"
                    variants.append(entry(name, damaged(document, random.Random(name))))
        sources.append({"name": pattern, "least": least, "documents": documents})
    sources.append({"name": "damaged variants", "least": 600, "documents": variants})
    pathlib.Path(output).parent.mkdir(parents=True, exist_ok=True)
    pathlib.Path(output).write_text(json.dumps({"sources": sources}), encoding="ascii")


if __name__ == "__main__":
    main(*sys.argv[1:])
