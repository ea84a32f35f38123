#include "twin/diff/text.h"

#include <algorithm>
#include <array>
#include <map>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>
#include <vector>

#include "twin/diff/identity.h"
#include "twin/diff/usual.h"

namespace tavrohost {
namespace {

using tavrosim::HostMember;
using tavrosim::Presence;
using Shape = HostType::Shape;

constexpr std::size_t Step = 2;  // by which what belongs to a line stands further in
constexpr const char* HiddenSecret = "(secret)";

bool IsControl(std::string_view text, std::size_t at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    const bool isSecondary =
        byte == 0xC2 && at + 1 < text.size() && static_cast<unsigned char>(text[at + 1]) < 0xA0;
    return byte < 0x20 || byte == 0x7F || isSecondary;
}

// A text as it stands where that is unmistakable, else in quotes and with escapes.
std::string Shown(std::string_view text) {
    bool hasControls = false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        hasControls = hasControls || IsControl(text, at);
    }
    const bool isPlain = !hasControls && !text.empty() && text.front() != ' ' &&
                         text.back() != ' ' && text.front() != '"' && text.front() != '(' &&
                         text.find("→") == std::string_view::npos;
    constexpr int NoIndent = -1;
    return isPlain ? std::string(text) : Json(text).dump(NoIndent, ' ', hasControls);
}

std::string ShownValue(const Json& value) {
    return value.is_null()     ? "(none)"
           : value.is_string() ? Shown(value.get_ref<const std::string&>())
                               : tavrolib::LineOf(value);
}

// What a value holds beyond the usual, a line for each text and number of it.
class Content {
  public:
    Content(std::size_t indent, std::string& text) : indent_(indent, ' '), text_(text) {}

    void Add(const HostType& type, const Json& value, const Json& usual, const std::string& path) {
        if (type.shape == Shape::Struct) {
            AddStruct(type, value, usual, path);
        } else if (type.shape == Shape::List) {
            AddList(type, value, usual, path);
        } else {
            AddLine(path, ShownValue(value));
        }
    }

  private:
    void AddStruct(const HostType& type, const Json& value, const Json& usual,
                   const std::string& path) {
        for (const HostMember& member : type.members) {
            const std::string key(member.key);
            const auto found = value.find(key);
            if (found == value.end() || member.presence == Presence::Former ||
                IsCounterMember(key)) {
                continue;
            }
            const auto usualMember = usual.find(key);
            const bool hasUsual = usualMember != usual.end();
            if (hasUsual && member.presence != Presence::Required && *found == *usualMember) {
                continue;
            }
            const std::string place = MemberPath(path, type, member);
            if (IsSecretMember(key)) {
                AddLine(place, HiddenSecret);
            } else {
                Add(*member.type, *found, hasUsual ? *usualMember : UsualOf(*member.type), place);
            }
        }
    }

    void AddList(const HostType& type, const Json& list, const Json& usual,
                 const std::string& path) {
        const HostType& element = *type.element;
        for (std::size_t index = 0; index < list.size(); ++index) {
            if (!HasNamedElements(type)) {
                const bool hasUsual = index < usual.size();
                if (!hasUsual || list[index] != usual[index]) {
                    Add(element, list[index], hasUsual ? usual[index] : UsualOf(element),
                        path + '[' + std::to_string(index) + ']');
                }
            } else if (element.shape == Shape::Text) {
                AddLine(path, ShownValue(list[index]));
            } else {
                const std::string name = Shown(NameOfElement(element, list[index]));
                std::string title = path;
                AddTitle(IsHostPart(element) ? name : title.append("[").append(name).append("]"));
                indent_.append(Step, ' ');
                Add(element, list[index], UsualOf(element), {});
                indent_.resize(indent_.size() - Step);
            }
        }
    }

    void AddTitle(const std::string& title) { text_.append(indent_).append(title) += '\n'; }

    void AddLine(const std::string& path, const std::string& value) {
        text_ += indent_ + path + ": " + value + '\n';
    }

    std::string indent_;
    std::string& text_;
};

// How deep the lines of a part of the host stand; its own line is one step less deep.
std::size_t DepthOf(const HostPart& part) {
    return std::max<std::size_t>(1, static_cast<std::size_t>(part.level));
}

class Report {
  public:
    void Add(const Change& change) {
        const HostPart& part = change.where;
        const std::size_t depth = DepthOf(part);
        if (part.member.empty()) {
            AddHeadings(part, depth - 1);
            AddLine(depth - 1, HeadingOf(part, depth) + Event(change));
            AddContent(change, depth);
            headings_.resize(depth - 1);
            return;
        }
        AddHeadings(part, depth);
        const bool isLeaf =
            change.type->shape != Shape::Struct && change.type->shape != Shape::List;
        if (change.kind != Change::Kind::Changed && (change.isElement || !isLeaf)) {
            AddLine(depth, Shown(part.member) + Event(change));
            AddContent(change, depth + 1);
        } else {
            AddLine(depth, Shown(part.member) + ": " + ValuesOf(change));
        }
    }

    std::string TakeText() { return std::move(text_); }

  private:
    static std::string HeadingOf(const HostPart& part, std::size_t level) {
        return part.level == HostPart::Level::Host ? "Host"
               : level == 1                        ? "Adapter " + Shown(part.adapter)
               : level == 2                        ? Shown(part.port)
                                                   : Shown(part.function);
    }

    static std::string Event(const Change& change) {
        return change.kind == Change::Kind::Added ? ": added" : ": removed";
    }

    static std::string ValuesOf(const Change& change) {
        const std::string& member = change.where.member;
        if (IsSecretMember(std::string_view(member).substr(member.rfind('.') + 1))) {
            return "(secret changed)";
        }
        return ShownValue(change.before) + " → " + ShownValue(change.after);
    }

    // The headings above the lines of the part, as far as they are not those of the line before.
    void AddHeadings(const HostPart& part, std::size_t depth) {
        std::vector<std::string> wanted;
        for (std::size_t level = 1; level <= depth; ++level) {
            wanted.push_back(HeadingOf(part, level));
        }
        const auto known = std::ranges::mismatch(headings_, wanted);
        for (auto heading = known.in2; heading != wanted.end(); ++heading) {
            AddLine(static_cast<std::size_t>(heading - wanted.begin()), *heading);
        }
        headings_ = std::move(wanted);
    }

    void AddContent(const Change& change, std::size_t depth) {
        if (change.type->shape != Shape::Struct) {
            return;
        }
        const Json& value = change.kind == Change::Kind::Added ? change.after : change.before;
        Content(Step * depth, text_).Add(*change.type, value, UsualOf(*change.type), {});
    }

    void AddLine(std::size_t depth, const std::string& line) {
        text_.append(Step * depth, ' ').append(line) += '\n';
    }

    std::vector<std::string> headings_;
    std::string text_;
};

// The changes in the order in which they are shown: those of the host first, then adapter by
// adapter, of each its own first, and so on; else as they come.
std::vector<const Change*> InOrder(const std::vector<Change>& changes) {
    using Level = std::string HostPart::*;
    constexpr Level Levels[] = {&HostPart::adapter, &HostPart::port, &HostPart::function};
    using Rank = std::array<std::size_t, std::size(Levels)>;
    std::vector<std::pair<Rank, const Change*>> ranked;
    std::map<std::vector<std::string>, std::size_t> numbers;  // of names with those above them
    for (const Change& change : changes) {
        Rank rank{};
        std::vector<std::string> path;
        for (std::size_t level = 0; level < static_cast<std::size_t>(change.where.level); ++level) {
            path.push_back(change.where.*Levels[level]);
            rank[level] = numbers.try_emplace(path, numbers.size() + 1).first->second;
        }
        ranked.emplace_back(rank, &change);
    }
    std::ranges::stable_sort(ranked, {}, &std::pair<Rank, const Change*>::first);
    std::vector<const Change*> ordered;
    ordered.reserve(ranked.size());
    for (const auto& [rank, change] : ranked) {
        ordered.push_back(change);
    }
    return ordered;
}

}  // namespace

std::string TextOf(const Difference& difference) {
    Report report;
    for (const Change* const change : InOrder(difference.changes)) {
        report.Add(*change);
    }
    return report.TakeText();
}

}  // namespace tavrohost
