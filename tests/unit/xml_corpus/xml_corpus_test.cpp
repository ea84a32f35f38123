// A fixed corpus of documents, read by the reader and by expat (expat_trees.py says which). Both
// must take or refuse a document alike and agree about names, attributes, text, regions and the
// order of children. Where they are meant to differ, the difference is one of those listed below.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <set>

#include "expat_tree.h"
#include "platform/encoding.h"
#include "xml/file.h"
#include "xml/parser.h"

namespace tavro::xml {
namespace {

// Why the two may differ. Each is checked for in the document before it excuses anything.
enum class Difference {
    // The whole document is read differently.

    // The reader knows UTF-16 in little-endian order only.
    BigEndian,
    // Whether bytes are UTF-16 is the system's to say, and it says something else than the mark in
    // front (of an odd number of bytes, or of few bytes with a zero among them).
    SeenAsAnotherEncoding,
    // "<PRE>" opens a region for the reader, and an element for expat.
    Preformatted,
    // The DOCTYPE is a region: the reader reads no declarations, so mistakes in them go unnoticed.
    // They also have no effect on the document; expat refuses entities whose declaration forbids
    // their use.
    Declarations,
    // Expat knows the letters of the standard's fourth edition, the reader those of the fifth.
    NamesOfTheFifthEdition,
    // Expat takes any version number, the standard and the reader only "1." and digits.
    VersionNumber,

    // The trees are equal once this is evened out.

    // The reader keeps CR LF and CR in text and regions; for expat each is one line feed.
    LineEndsKept,
    // The reader keeps tabs and line ends in values; for expat each is a space.
    BlanksInValuesKept,
    // References beyond the five entities stay as they stand in the reader's texts. Those to
    // characters are replaced in both; those to entities are removed from text, and a value that
    // has one is not compared. For "&amp;#65;", which no longer differs from "&#65;", the same is
    // done to expat's.
    ReferencesKept,
    // A declared type of an attribute trims its values; then runs of blanks count as one.
    DeclaredTypes,
};

const std::map<Difference, const char*> DifferenceNames = {
    {Difference::BigEndian, "big-endian UTF-16"},
    {Difference::SeenAsAnotherEncoding, "the system sees another encoding"},
    {Difference::Preformatted, "<PRE> region"},
    {Difference::Declarations, "declarations not read"},
    {Difference::NamesOfTheFifthEdition, "names of the fifth edition"},
    {Difference::VersionNumber, "version number"},
    {Difference::LineEndsKept, "line ends kept in text and regions"},
    {Difference::BlanksInValuesKept, "tabs and line ends kept in values"},
    {Difference::ReferencesKept, "references kept"},
    {Difference::DeclaredTypes, "declared types of attributes not known"},
};

// Two things that are meant alike by both, and that expat_trees.py therefore does for expat: the
// document ends at its first zero, and the encoding that it names has no effect (bytes that are not
// UTF-8 are read as U+FFFD).

// What was found out about one document.
struct Comparison {
    // What the two disagree about without a reason; empty when there is nothing.
    std::string disagreement;
    bool bothRefused = false;
    std::set<Difference> differences;
};

// Whether the texts are equal, once or twice changed by functions that stand for a difference.
bool TextsAgree(const std::string& ours, const std::string& theirs, Comparison& comparison) {
    if (ours == theirs) {
        return true;
    }
    const std::string our = WithLineFeedsOnly(ours);
    if (our != ours) {
        comparison.differences.insert(Difference::LineEndsKept);
    }
    if (our == theirs) {
        return true;
    }
    const auto comparable = [](const std::string& text) {
        return WithoutEntityReferences(WithoutCharacterReferences(text));
    };
    comparison.differences.insert(Difference::ReferencesKept);
    return comparable(our) == comparable(theirs);
}

bool ValuesAgree(const std::string& ours, const std::string& theirs, bool typesDeclared,
                 Comparison& comparison) {
    if (ours == theirs) {
        return true;
    }
    const std::string spaced = WithBlanksAsSpaces(ours);
    if (spaced != ours) {
        comparison.differences.insert(Difference::BlanksInValuesKept);
    }
    if (spaced == theirs) {
        return true;
    }
    const std::string our = WithoutCharacterReferences(spaced);
    const std::string their = WithoutCharacterReferences(theirs);
    if (our != spaced || WithoutEntityReferences(our) != our) {
        comparison.differences.insert(Difference::ReferencesKept);
        if (our == their || WithoutEntityReferences(our) != our) {
            return true;
        }
    }
    comparison.differences.insert(Difference::DeclaredTypes);
    return typesDeclared && WithBlanksCollapsed(our) == WithBlanksCollapsed(their);
}

bool RegionsAgree(const FlatElement& ours, const FlatElement& theirs, Comparison& comparison) {
    return std::ranges::equal(ours.regions, theirs.regions,
                              [&comparison](const std::string& our, const std::string& their) {
                                  if (our != their) {
                                      comparison.differences.insert(Difference::LineEndsKept);
                                  }
                                  return WithLineFeedsOnly(our) == their;
                              });
}

// What differs between two elements; empty when nothing does.
std::string Compare(const FlatElement& ours, const FlatElement& theirs, bool typesDeclared,
                    Comparison& comparison) {
    if (ours.name != theirs.name || ours.depth != theirs.depth) {
        return "element " + ours.name + ", for expat " + theirs.name;
    }
    if (ours.attributes.size() != theirs.attributes.size()) {
        return "number of attributes of " + ours.name;
    }
    for (std::size_t index = 0; index < ours.attributes.size(); ++index) {
        const auto& [name, value] = ours.attributes[index];
        const auto& [theirName, theirValue] = theirs.attributes[index];
        if (name != theirName || !ValuesAgree(value, theirValue, typesDeclared, comparison)) {
            return "attribute " + name + " of " + ours.name + ": " + value + ", for expat " +
                   theirName + ": " + theirValue;
        }
    }
    if (!TextsAgree(ours.text, theirs.text, comparison)) {
        return "text of " + ours.name + ": " + ours.text + ", for expat: " + theirs.text;
    }
    if (!RegionsAgree(ours, theirs, comparison)) {
        return "regions of " + ours.name;
    }
    return {};
}

std::string Compare(const FlatTree& ours, const FlatTree& theirs, Comparison& comparison) {
    const std::size_t count = std::min(ours.elements.size(), theirs.elements.size());
    for (std::size_t index = 0; index < count; ++index) {
        std::string difference = Compare(ours.elements[index], theirs.elements[index],
                                         ours.declaresAttributes, comparison);
        if (!difference.empty()) {
            return difference;
        }
    }
    return ours.elements.size() == theirs.elements.size() ? "" : "number of elements";
}

// The bytes as the reader is given them: text without a mark is UTF-8, which not every system's
// default code page is, so it gets one.
std::string BytesForReader(const CorpusDocument& document) {
    constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";
    const bool marked = document.isUtf16 || document.bytes.starts_with(Utf8Mark);
    return (marked ? "" : std::string(Utf8Mark)) + document.bytes;
}

Comparison CompareRefusal(const CorpusDocument& document, const XmlResults& results) {
    const ExpatResult& expat = document.expat;
    if (!expat.wellFormed) {
        return {.disagreement = {}, .bothRefused = true, .differences = {}};
    }
    if (document.bytes.starts_with("\xFE\xFF")) {
        return {.disagreement = {}, .differences = {Difference::BigEndian}};
    }
    if (results.error == static_cast<std::uint32_t>(XmlError::MalformedDeclaration) &&
        document.bytes.find("version=\"1.") == std::string::npos &&
        document.bytes.find("version='1.") == std::string::npos) {
        return {.disagreement = {}, .differences = {Difference::VersionNumber}};
    }
    if (std::ranges::find(expat.tree.elements, "PRE", &FlatElement::name) !=
        expat.tree.elements.end()) {
        return {.disagreement = {}, .differences = {Difference::Preformatted}};
    }
    return {.disagreement = "refused with " + std::to_string(results.error) + " at " +
                            std::to_string(results.line) + ":" + std::to_string(results.column),
            .differences = {}};
}

Comparison CompareTree(const XmlNode& top, const ExpatResult& expat) {
    const FlatTree ours = Flatten(top);
    if (ours.hasPreformatted) {
        return {.disagreement = {}, .differences = {Difference::Preformatted}};
    }
    if (!expat.wellFormed) {
        if (expat.errorInDeclarations) {
            return {.disagreement = {}, .differences = {Difference::Declarations}};
        }
        if (expat.errorInToken && ours.hasUnusualName) {
            return {.disagreement = {}, .differences = {Difference::NamesOfTheFifthEdition}};
        }
        return {.disagreement = "accepted, but expat says " + expat.error, .differences = {}};
    }
    Comparison comparison;
    comparison.disagreement = Compare(ours, expat.tree, comparison);
    return comparison;
}

Comparison CompareDocument(const CorpusDocument& document) {
    const std::string bytes = BytesForReader(document);
    const std::optional<std::wstring> text = DecodeXmlBytes(bytes);
    XmlResults results;
    const XmlNode top = text ? ParseXmlText(*text, results) : XmlNode();
    Comparison comparison =
        top.IsEmpty() ? CompareRefusal(document, results) : CompareTree(top, document.expat);
    if (!comparison.disagreement.empty() && platform::LooksLikeUtf16(bytes) != document.isUtf16) {
        return {.disagreement = {}, .differences = {Difference::SeenAsAnotherEncoding}};
    }
    return comparison;
}

struct Tally {
    std::size_t alike = 0;
    std::size_t bothRefused = 0;
    // Documents with each of them.
    std::map<Difference, std::size_t> differences;
};

Tally CompareSource(const CorpusSource& source) {
    Tally tally;
    for (const CorpusDocument& document : source.documents) {
        const Comparison comparison = CompareDocument(document);
        EXPECT_EQ(comparison.disagreement, "") << document.name;
        if (comparison.bothRefused) {
            ++tally.bothRefused;
        } else if (comparison.differences.empty() && comparison.disagreement.empty()) {
            ++tally.alike;
        }
        for (const Difference difference : comparison.differences) {
            ++tally.differences[difference];
        }
    }
    std::printf("%s: %zu documents, none left out: %zu read alike, %zu refused by both\n",
                source.name.c_str(), source.documents.size(), tally.alike, tally.bothRefused);
    for (const auto& [difference, count] : tally.differences) {
        std::printf("    %zu differ as meant: %s\n", count, DifferenceNames.at(difference));
    }
    return tally;
}

TEST(XmlCorpus, IsReadAlike) {
    const std::vector<CorpusSource> sources = LoadCorpus(TAVRO_CORPUS);
    ASSERT_FALSE(sources.empty());
    Tally all;
    for (const CorpusSource& source : sources) {
        EXPECT_GE(source.documents.size(), source.least) << source.name;
        const Tally tally = CompareSource(source);
        all.alike += tally.alike;
        all.bothRefused += tally.bothRefused;
        for (const auto& [difference, count] : tally.differences) {
            all.differences[difference] += count;
        }
    }
    // Enough of either kind, and each of the reader's own ways with blanks, is there to be seen.
    EXPECT_GE(all.alike, 100U);
    EXPECT_GE(all.bothRefused, 300U);
    EXPECT_GE(all.differences[Difference::LineEndsKept], 1U);
    EXPECT_GE(all.differences[Difference::BlanksInValuesKept], 1U);
}

}  // namespace
}  // namespace tavro::xml
