#include "twin/anonymous/stand_ins.h"

#include <algorithm>
#include <functional>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <string_view>

#include "simulator/host/lookup.h"
#include "simulator/model/ip_address.h"
#include "twin/anonymous/findings.h"
#include "twin/anonymous/positions.h"
#include "twin/anonymous/stand_in_book.h"

namespace tavrohost {
namespace {

using tavrolib::Json;

// Gives a text, of that kind, in another form.
using ChangeText = std::function<std::string(TextKind kind, const std::string& text)>;

void ChangeTexts(Json& json, const std::function<TextKind(const TextPath&)>& kindAt, TextPath& path,
                 const ChangeText& change) {
    if (json.is_string()) {
        json = change(kindAt(path), json.get_ref<const std::string&>());
    } else if (json.is_array()) {
        for (std::size_t i = 0; i < json.size(); ++i) {
            path.push_back(i);
            ChangeTexts(json[i], kindAt, path, change);
            path.pop_back();
        }
    }
}

// Changes all texts of an answer. The adapter and the port that it is about change as they do in
// the listing.
void ChangeAnswer(Json& answer, const ChangeText& change) {
    const std::string call = answer.value("call", std::string());
    const auto operation = answer.value("operation", 0U);
    TextPath path;
    for (auto& [name, member] : answer.items()) {
        if (name == "request") {
            ChangeTexts(
                member, [](const TextPath&) { return TextKind::FunctionKey; }, path, change);
        } else if (name == "adapter" || name == "port") {
            ChangeTexts(
                member, [](const TextPath&) { return TextKind::Kept; }, path, change);
        } else if (name == "input") {
            ChangeTexts(
                member, [&](const TextPath& at) { return InputKind(operation, at); }, path, change);
        } else if (name == "output") {
            ChangeTexts(
                member, [&](const TextPath& at) { return OutputKind(call, operation, at); }, path,
                change);
        } else if (name == "error") {
            for (auto& [part, text] : member.items()) {
                ChangeTexts(
                    text, [](const TextPath&) { return TextKind::Opaque; }, path, change);
            }
        }
    }
}

TextKind KindOf(const Finding& finding) {
    switch (finding.kind) {
        case Finding::Kind::Identifier:
            return TextKind::Identifier;
        case Finding::Kind::Address:
            return TextKind::Address;
        case Finding::Kind::IscsiName:
            break;
    }
    return TextKind::IscsiName;
}

// What a listing tells of a function besides, by its form.
TextKind FormOf(const std::string& text) {
    const auto finding = UnmistakableFindingAt(text, 0);
    if (!tavrosim::NormalIdentifier(text).empty()) {
        return TextKind::Identifier;
    }
    return finding && finding->kind == Finding::Kind::IscsiName ? TextKind::IscsiName
                                                                : TextKind::InterfaceName;
}

constexpr std::string_view HexPrefix = "0x";

bool HasHexPrefix(std::string_view text) {
    return text.starts_with(HexPrefix) || text.starts_with("0X");
}

bool HoldsFinding(const std::string& text) {
    for (std::size_t place = 0; place < text.size(); ++place) {
        if (FindingAt(text, place)) {
            return true;
        }
    }
    return false;
}

// The length of the name in the text, where an address or identifier is wanted, that is none: up to
// ":" and a port. 0 where the text is no name, but a number or a sentence.
std::size_t NameLength(const std::string& text) {
    const auto isLetter = [](char character) {
        return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
               static_cast<unsigned char>(character) > 0x7F;
    };
    const bool isName = text.find(' ') == std::string::npos &&
                        std::ranges::any_of(text, isLetter) && !HoldsFinding(text);
    const std::size_t last = text.find_last_not_of("0123456789");
    const bool hasPort = last != std::string::npos && last + 1 < text.size() && text[last] == ':';
    return !isName ? 0 : hasPort ? last : text.size();
}

// What is replaced in a text as a whole, at its beginning; Opaque and Kept ones are searched.
struct Whole {
    TextKind kind = TextKind::Opaque;
    std::size_t length = 0;
};

// What a text is, by the kind that its place wants and by its form.
Whole WholeOf(TextKind kind, const std::string& text) {
    const Whole whole{kind, text.size()};
    switch (kind) {
        case TextKind::FunctionName:
            return {FormOf(text), text.size()};
        case TextKind::FunctionKey:
            if (!tavrosim::NormalIdentifier(text).empty()) {
                return {TextKind::Identifier, text.size()};
            }
            return HoldsFinding(text) ? Whole{} : whole;
        case TextKind::Identifier:
            if (!tavrosim::NormalIdentifier(text).empty()) {
                return whole;
            }
            break;
        case TextKind::Address:
            if (tavrosim::IpAddressFrom(text)) {
                return whole;
            }
            break;
        default:
            return whole;
    }
    const std::size_t name = HasHexPrefix(text) ? 0 : NameLength(text);
    return name == 0 ? Whole{} : Whole{TextKind::HostName, name};
}

class Anonymizer {
  public:
    Json Anonymous(Json answers) {
        for (Json& answer : answers) {
            ChangeAnswer(answer, [this](TextKind kind, const std::string& text) {
                Note(kind, text);
                return text;
            });
        }
        for (Json& answer : answers) {
            ChangeAnswer(answer, [this](TextKind kind, const std::string& text) {
                return Changed(kind, text);
            });
        }
        return answers;
    }

  private:
    // Calls `use(place, finding)` for what is found in the text; returns what lies between, with
    // what `use` returns in the place of each finding.
    template <class Use>
    std::string Replaced(const std::string& text, bool isKept, Use use) const {
        std::string replaced;
        for (std::size_t place = 0; place < text.size();) {
            const auto finding =
                isKept ? UnmistakableFindingAt(text, place) : FindingAt(text, place);
            const std::size_t found = finding ? finding->length : 0;
            const std::size_t known = isKept ? 0 : WordLength(text, place);
            if (known > found) {
                replaced += use(text.substr(place, known), TextKind::Opaque);
                place += known;
            } else if (finding) {
                replaced += use(text.substr(place, found), KindOf(*finding));
                place += found;
            } else {
                replaced += text[place++];
            }
        }
        return replaced;
    }

    // How long the known name or the bare digits of a known identifier are that stand there.
    std::size_t WordLength(const std::string& text, std::size_t place) const {
        const std::size_t prefix = HexPrefix.size();
        const bool isBehindPrefix = place >= prefix &&
                                    HasHexPrefix(std::string_view(text).substr(place - prefix)) &&
                                    IsWordBoundary(text, place - prefix);
        if (!isBehindPrefix && !IsWordBoundary(text, place)) {
            return 0;
        }
        const std::string_view rest = std::string_view(text).substr(place);
        if (const std::string_view name = book_.NameAt(rest); !name.empty()) {
            return name.size();
        }
        for (const std::size_t digits : {tavrosim::WwnDigits, tavrosim::MacDigits}) {
            if (IsWordBoundary(rest, digits) &&
                book_.HasIdentifier(tavrosim::NormalIdentifier(rest.substr(0, digits)))) {
                return digits;
            }
        }
        return 0;
    }

    void Note(TextKind kind, const std::string& text) {
        if (kind == TextKind::Kept) {
            kept_.insert(text);
        }
        const Whole whole = WholeOf(kind, text);
        if (IsReplaced(whole)) {
            book_.Note(whole.kind, text.substr(0, whole.length));
            return;
        }
        if (kind == TextKind::Identifier && HasHexPrefix(text)) {
            book_.Note(kind, text.substr(HexPrefix.size()));
        }
        Replaced(text, kind == TextKind::Kept, [this](const std::string& found, TextKind as) {
            if (as != TextKind::Opaque) {
                book_.Note(as, found);
            }
            return found;
        });
    }

    static bool IsReplaced(const Whole& whole) {
        return whole.kind != TextKind::Opaque && whole.kind != TextKind::Kept;
    }

    std::string Changed(TextKind kind, const std::string& text) {
        const Whole whole = WholeOf(kind, text);
        if (IsReplaced(whole)) {
            return book_.StandIn(whole.kind, text.substr(0, whole.length)) +
                   text.substr(whole.length);
        }
        return Replaced(
            text, kind == TextKind::Kept, [this](const std::string& found, TextKind as) {
                if (as == TextKind::Address && kept_.contains(found)) {
                    return found;  // a version
                }
                if (as != TextKind::Opaque) {
                    return book_.StandIn(as, found);
                }
                const bool isIdentifier = book_.HasIdentifier(tavrosim::NormalIdentifier(found));
                return book_.StandIn(isIdentifier ? TextKind::Identifier : TextKind::Alias, found);
            });
    }

    StandInBook book_;
    std::set<std::string> kept_;
};

}  // namespace

Json WithStandIns(const Json& answers) {
    return Anonymizer().Anonymous(answers);
}

}  // namespace tavrohost
