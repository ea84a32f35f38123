#include "twin/anonymous/stand_ins.h"

#include <functional>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <string_view>

#include "simulator/host/lookup.h"
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

// Changes all texts of an answer. Names of adapters and ports stay.
void ChangeAnswer(Json& answer, const ChangeText& change) {
    const std::string call = answer.value("call", std::string());
    const auto operation = answer.value("operation", 0U);
    TextPath path;
    for (auto& [name, member] : answer.items()) {
        if (name == "request") {
            ChangeTexts(
                member, [](const TextPath&) { return TextKind::Identifier; }, path, change);
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
            if (finding) {
                replaced += use(text.substr(place, finding->length), KindOf(*finding));
                place += finding->length;
            } else {
                const std::size_t length = isKept ? 0 : WordLength(text, place);
                if (length > 0) {
                    replaced += use(text.substr(place, length), TextKind::Opaque);
                    place += length;
                } else {
                    replaced += text[place++];
                }
            }
        }
        return replaced;
    }

    // How long the known name or the bare digits of a known identifier are that stand there.
    std::size_t WordLength(const std::string& text, std::size_t place) const {
        if (!IsWordBoundary(text, place)) {
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
        if (kind == TextKind::FunctionName) {
            kind = FormOf(text);
        }
        if (kind == TextKind::Kept) {
            kept_.insert(text);
        }
        const bool isWhole = kind != TextKind::Opaque && kind != TextKind::Kept;
        if (isWhole && book_.Note(kind, text)) {
            return;
        }
        Replaced(text, kind == TextKind::Kept, [this](const std::string& found, TextKind as) {
            if (as != TextKind::Opaque) {
                book_.Note(as, found);
            }
            return found;
        });
    }

    std::string Changed(TextKind kind, const std::string& text) {
        if (kind == TextKind::FunctionName) {
            kind = FormOf(text);
        }
        const bool isWhole = kind != TextKind::Opaque && kind != TextKind::Kept;
        if (isWhole && book_.Note(kind, text)) {
            return book_.StandIn(kind, text);
        }
        return Replaced(text, kind == TextKind::Kept,
                        [this](const std::string& found, TextKind as) {
                            if (as == TextKind::Address && kept_.contains(found)) {
                                return found;  // a version
                            }
                            if (as != TextKind::Opaque) {
                                return book_.StandIn(as, found);
                            }
                            return tavrosim::NormalIdentifier(found).empty()
                                       ? book_.StandIn(TextKind::Alias, found)
                                       : book_.StandIn(TextKind::Identifier, found);
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
