// Every XML file of this machine, and the fuzzer's samples, read by the reader and by expat. Both
// must take or refuse a file alike and agree about names, attributes, text, regions and the order
// of children. Where they are meant to differ, the difference is one of those listed below.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <clocale>
#include <cstdio>
#include <filesystem>
#include <map>

#include "expat_tree.h"
#include "import/xml_file.h"
#include "platform/encoding.h"
#include "platform/file.h"

namespace tavro::xml {
namespace {

// Why the two may differ. Each is checked for in the document before it excuses anything.
enum class Difference {
    // The reader knows UTF-16 in little-endian order only.
    BigEndian,
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
};

constexpr std::array<const char*, 5> DifferenceNames = {
    "big-endian UTF-16", "<PRE> region", "declarations not read", "names of the fifth edition",
    "version number"};

// Where the trees are compared some differences cannot be seen from outside, and are evened out:
// - References beyond the five entities stay as they stand in the reader's texts. Those to
// characters
//   are replaced in both; those to entities are removed from text, and a value that has one is not
//   compared. For "&amp;#65;", which no longer differs from "&#65;", the same is done to expat's.
// - Declarations add attributes, which expat can leave out, and trim values; then runs of blanks
// count
//   as one.
// - The encoding that a document names has no effect on the reader. Expat is told to read UTF-8,
// and
//   bytes that are none are given to it as the reader's text, back in UTF-8.

std::string Comparable(const std::string& text) {
    return WithoutEntityReferences(WithoutCharacterReferences(text));
}

bool ValuesAgree(const std::string& ours, const std::string& theirs, bool collapse) {
    const std::string our = WithoutCharacterReferences(ours);
    if (WithoutEntityReferences(our) != our) {
        return true;
    }
    const std::string their = WithoutCharacterReferences(theirs);
    return our == their || (collapse && WithBlanksCollapsed(our) == WithBlanksCollapsed(their));
}

// What differs between two elements; empty when nothing does.
std::string Compare(const FlatElement& ours, const FlatElement& theirs, bool collapse) {
    if (ours.name != theirs.name || ours.depth != theirs.depth) {
        return "element " + ours.name + ", for expat " + theirs.name;
    }
    if (ours.attributes.size() != theirs.attributes.size()) {
        return "number of attributes of " + ours.name;
    }
    for (std::size_t index = 0; index < ours.attributes.size(); ++index) {
        const auto& [name, value] = ours.attributes[index];
        if (name != theirs.attributes[index].first ||
            !ValuesAgree(value, theirs.attributes[index].second, collapse)) {
            return "attribute " + name + " of " + ours.name + ": " + value + ", for expat " +
                   theirs.attributes[index].first + ": " + theirs.attributes[index].second;
        }
    }
    if (ours.text != theirs.text && Comparable(ours.text) != Comparable(theirs.text)) {
        return "text of " + ours.name + ": " + ours.text + ", for expat: " + theirs.text;
    }
    if (ours.regions != theirs.regions) {
        return "regions of " + ours.name;
    }
    return {};
}

std::string Compare(const FlatTree& ours, const FlatTree& theirs) {
    for (std::size_t index = 0; index < ours.elements.size(); ++index) {
        if (index == theirs.elements.size()) {
            break;
        }
        const std::string difference =
            Compare(ours.elements[index], theirs.elements[index], ours.declaresAttributes);
        if (!difference.empty()) {
            return difference;
        }
    }
    return ours.elements.size() == theirs.elements.size() ? "" : "number of elements";
}

struct Tally {
    std::size_t sameTree = 0;
    std::size_t bothRefused = 0;
    std::size_t notReached = 0;
    std::map<Difference, std::size_t> differences;
};

// The bytes as expat is given them.
std::string BytesForExpat(const std::string& bytes) {
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) {
        return bytes;
    }
    if (platform::LooksLikeUtf16(bytes)) {
        return "\xFF\xFE" + bytes.substr(bytes.starts_with("\xEF\xFF") ? 2 : 0);
    }
    const std::wstring text = platform::DecodeText(bytes, platform::Utf8CodePage).value_or(L"");
    return platform::EncodeText(text, platform::Utf8CodePage);
}

// Reads the file with both. Returns what they disagree about without a reason, or nothing.
std::string CompareFile(const std::filesystem::path& path, Tally& tally) {
    const std::string bytes = platform::ReadWholeFile(path.wstring()).bytes;
    if (bytes.empty()) {
        return {};
    }
    XmlResults results;
    const XmlNode top = ParseXmlFile(path.wstring(), results);
    const ExpatResult expat = ReadWithExpat(BytesForExpat(bytes));
    const auto excuse = [&tally](Difference difference) {
        ++tally.differences[difference];
        return std::string();
    };
    if (top.IsEmpty() && !expat.wellFormed) {
        ++tally.bothRefused;
        return {};
    }
    if (top.IsEmpty()) {
        if (bytes.starts_with("\xFE\xFF")) {
            return excuse(Difference::BigEndian);
        }
        if (results.error == static_cast<std::uint32_t>(XmlError::MalformedDeclaration) &&
            bytes.find("version=\"1.") == std::string::npos &&
            bytes.find("version='1.") == std::string::npos) {
            return excuse(Difference::VersionNumber);
        }
        const bool hasPre = std::ranges::any_of(
            expat.tree.elements, [](const FlatElement& element) { return element.name == "PRE"; });
        if (hasPre) {
            return excuse(Difference::Preformatted);
        }
        return "refused with " + std::to_string(results.error) + " at " +
               std::to_string(results.line) + ":" + std::to_string(results.column);
    }
    const FlatTree ours = Flatten(top);
    if (ours.hasPreformatted) {
        return excuse(Difference::Preformatted);
    }
    if (!expat.wellFormed) {
        if (expat.errorInDeclarations) {
            return excuse(Difference::Declarations);
        }
        if (expat.errorInToken && ours.hasUnusualName) {
            return excuse(Difference::NamesOfTheFifthEdition);
        }
        return "accepted, but expat says " + expat.error;
    }
    std::string difference = Compare(ours, expat.tree);
    if (difference.empty()) {
        ++tally.sameTree;
    }
    return difference;
}

bool LooksLikeXml(const std::filesystem::path& path) {
    static constexpr std::string_view Extensions[] = {
        ".xml",  ".svg",   ".xsl",     ".xslt",  ".xsd",     ".rng",  ".rdf",   ".xhtml",
        ".ui",   ".glade", ".docbook", ".dbk",   ".gir",     ".xmi",  ".plist", ".policy",
        ".conf", ".lang",  ".xlf",     ".xliff", ".ts",      ".page", ".kml",   ".gpx",
        ".atom", ".rss",   ".wsdl",    ".pom",   ".mallard", ".opf",  ".ncx",   ".html",
        ".htm",  ".theme", ".xbl",     ".xul",   ".sch",     ".its",  ".tei",   ".resx",
    };
    const std::string extension = path.extension().string();
    if (std::ranges::find(Extensions, extension) == std::end(Extensions)) {
        return false;
    }
    // Some of the extensions are used for other things as well. HTML is XML only when it says so.
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) {
        return false;
    }
    std::array<char, 256> buffer{};
    const std::size_t size = std::fread(buffer.data(), 1, buffer.size(), file);
    std::fclose(file);
    const std::string_view begin(buffer.data(), size);
    if (extension == ".html" || extension == ".htm") {
        return begin.find("<?xml") != std::string_view::npos ||
               begin.find("//DTD XHTML") != std::string_view::npos;
    }
    return begin.find('<') != std::string_view::npos;
}

std::vector<std::filesystem::path> FindXmlFiles(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> paths;
    std::error_code error;
    std::filesystem::recursive_directory_iterator entries(
        folder, std::filesystem::directory_options::skip_permission_denied, error);
    for (; !error && entries != std::filesystem::recursive_directory_iterator();
         entries.increment(error)) {
        std::error_code ignored;
        if (entries->is_regular_file(ignored) && LooksLikeXml(entries->path())) {
            paths.push_back(entries->path());
        }
    }
    std::ranges::sort(paths);
    return paths;
}

Tally CompareFolder(const std::filesystem::path& folder, std::chrono::seconds timeLimit) {
    using Clock = std::chrono::steady_clock;
    // File names and text without a mark are UTF-8.
    std::setlocale(LC_ALL, "C.UTF-8");
    Tally tally;
    const Clock::time_point end = Clock::now() + timeLimit;
    for (const std::filesystem::path& path : FindXmlFiles(folder)) {
        if (Clock::now() > end) {
            ++tally.notReached;
            continue;
        }
        EXPECT_EQ(CompareFile(path, tally), "") << path;
    }
    std::printf("%s: %zu read alike, %zu refused by both, %zu not reached in time\n",
                folder.c_str(), tally.sameTree, tally.bothRefused, tally.notReached);
    for (const auto& [difference, count] : tally.differences) {
        std::printf("    %zu differ: %s\n", count,
                    DifferenceNames[static_cast<std::size_t>(difference)]);
    }
    return tally;
}

TEST(XmlCorpus, TheSamplesOfThisTreeAreReadAlike) {
    const Tally tally =
        CompareFolder(std::filesystem::path(TAVRO_SOURCE_DIR) / "tests/fuzz/corpus/xml_reader",
                      std::chrono::seconds(10));
    EXPECT_EQ(tally.notReached, 0U);
    EXPECT_GE(tally.sameTree, 15U);
    EXPECT_GE(tally.bothRefused, 25U);
}

TEST(XmlCorpus, TheFilesOfThisMachineAreReadAlike) {
    for (const char* folder : {"/usr/share", "/etc", "/usr/lib"}) {
        CompareFolder(folder, std::chrono::seconds(15));
    }
}

}  // namespace
}  // namespace tavro::xml
