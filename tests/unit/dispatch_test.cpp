// Holds the command table against what else tells of the commands: the restricted state, the
// grammar, the usage screen and the manual.
#include "dispatch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "cli/command_line.h"
#include "cli/invocation.h"
#include "console/redirect.h"

namespace tavro {
namespace {

using tavroapi::OperationCode;

const std::set<std::uint32_t> WarningCodes = {3, 5};
const std::set<std::uint32_t> BlockedCodes = {29, 36, 40, 43, 45, 47, 48, 52, 54, 58, 60, 61, 63};

TEST(Dispatch, EveryCodeButTheUnusedOneHasOneRow) {
    std::set<std::uint32_t> expected;
    for (std::uint32_t code = 0; code <= LastCommandCode; ++code) {
        if (code != 31) {
            expected.insert(code);
        }
    }
    std::set<std::uint32_t> found;
    for (const Command* const command : Commands()) {
        EXPECT_TRUE(found.insert(static_cast<std::uint32_t>(command->code)).second);
    }
    EXPECT_EQ(found, expected);
}

TEST(Dispatch, AccessClassesAreThoseOfTheRestrictedState) {
    for (const Command* const command : Commands()) {
        const auto code = static_cast<std::uint32_t>(command->code);
        const AccessClass expected = WarningCodes.contains(code)   ? AccessClass::Warns
                                     : BlockedCodes.contains(code) ? AccessClass::Blocked
                                                                   : AccessClass::Runs;
        EXPECT_EQ(command->access, expected) << code;
    }
}

TEST(Dispatch, OnlyCommandsThatAskTheLibraryForNothingAreDecidedByNoCall) {
    for (const Command* const command : Commands()) {
        const auto code = static_cast<std::uint32_t>(command->code);
        const Decision::Rule rule = command->decidedBy.HowToDecide();
        EXPECT_EQ(rule == Decision::Rule::Never, code <= 1) << code;
        EXPECT_EQ(rule == Decision::Rule::Always, code == 2 || code == 3) << code;
        EXPECT_EQ(command->decidedBy.Calls().empty(), code <= 3) << code;
    }
}

// A command that changes adapters is not decided by what it reads of them.
TEST(Dispatch, WhatIsBlockedIsDecidedByAnOperationThatChangesSomething) {
    const std::set<OperationCode> changes = {
        OperationCode::WriteIscsiBoot,     OperationCode::ResetFcoeStatistics,
        OperationCode::WriteDcbConfig,     OperationCode::WriteFcoeBoot,
        OperationCode::WriteFip,           OperationCode::CreateVirtualPorts,
        OperationCode::DeleteVirtualPorts, OperationCode::WritePartitions,
        OperationCode::WritePersonality,   OperationCode::ResetEthernetStatistics,
        OperationCode::SetEthernetTcpIp,   OperationCode::WriteAdapterSettings};
    for (const Command* const command : Commands()) {
        if (command->access == AccessClass::Blocked) {
            ASSERT_EQ(command->decidedBy.Calls().size(), 1U);
            EXPECT_TRUE(changes.contains(command->decidedBy.Calls().front().operation));
        }
    }
}

TEST(Dispatch, FindsRowsByCode) {
    constexpr CommandCode Help{3};
    ASSERT_NE(FindCommand(Help), nullptr);
    EXPECT_EQ(FindCommand(Help)->code, Help);
    EXPECT_EQ(FindCommand(static_cast<CommandCode>(31)), nullptr);
    EXPECT_EQ(FindCommand(static_cast<CommandCode>(64)), nullptr);
}

// One word of a form: a keyword, or the name of an operand.
struct Word {
    std::string text;
    bool isOptional = false;
    bool isRepeated = false;

    bool operator==(const Word&) const = default;
};

using Form = std::vector<Word>;

std::string TextOf(const Form& form) {
    std::string text;
    for (const Word& word : form) {
        const std::string shown = word.text + (word.isRepeated ? " ..." : "");
        text += (text.empty() ? "" : " | ") + (word.isOptional ? "[" + shown + "]" : shown);
    }
    return text;
}

// Reads a form as people write it: operands in angle brackets, what may be left out in square ones,
// "..." behind what may be repeated. Asterisks refer to footnotes.
Form ReadForm(const std::string& text) {
    static const std::regex parts(R"(\[|\]|\.\.\.|<([^>]*)>|(-[a-z0-9]+)|([A-Za-z][A-Za-z *]*))");
    Form form;
    int depth = 0;
    for (std::sregex_iterator match(text.begin(), text.end(), parts), end; match != end; ++match) {
        const std::string part = match->str();
        if (part == "[" || part == "]") {
            depth += part == "[" ? 1 : -1;
        } else if (part == "...") {
            form.back().isRepeated = true;
        } else {
            std::string name = (*match)[1].matched ? (*match)[1].str() : part;
            std::erase(name, '*');
            form.push_back({name, depth > 0, false});
        }
    }
    return form;
}

Form FormOf(const CommandForm& commandForm) {
    Form form;
    for (const FormElement& element : commandForm.Elements()) {
        if (element.operand == nullptr) {
            form.push_back({std::string(element.word)});
        } else {
            form.push_back({std::string(element.operand->name),
                            element.presence == Presence::Optional, element.operand->isRepeated});
        }
    }
    return form;
}

std::vector<Form> FormsOf(const Command& command) {
    std::vector<Form> forms;
    for (const CommandForm* const form : {&command.form, &command.otherForm}) {
        if (!form->Elements().empty()) {
            forms.push_back(FormOf(*form));
        }
    }
    return forms;
}

std::set<std::string> FormsOfTable() {
    std::set<std::string> forms;
    for (const Command* const command : Commands()) {
        for (const Form& form : FormsOf(*command)) {
            forms.insert(TextOf(form));
        }
    }
    return forms;
}

// The same with every operand that may be left out as if it were needed.
Form WithoutBrackets(Form form) {
    for (Word& word : form) {
        word.isOptional = false;
    }
    return form;
}

TEST(CommandTable, EveryFormTypedInFullGivesItsCode) {
    for (const Command* const command : Commands()) {
        for (const CommandForm* const form : {&command->form, &command->otherForm}) {
            std::vector<const char*> arguments{"tavrocli"};
            for (const FormElement& element : form->Elements()) {
                arguments.push_back(element.operand == nullptr ? element.word.data() : "operand");
            }
            if (arguments.size() > 1) {
                EXPECT_EQ(ParseCommandLine(arguments, Commands()), command->code)
                    << TextOf(FormOf(*form));
            }
        }
    }
}

// The grammar looks at the first form only.
TEST(CommandTable, OtherFormsDifferInTheirOperandsOnly) {
    for (const Command* const command : Commands()) {
        const auto form = command->form.Elements();
        const auto other = command->otherForm.Elements();
        for (std::size_t index = 0; index < other.size(); ++index) {
            ASSERT_LT(index, form.size());
            EXPECT_EQ(other[index].word, form[index].word) << TextOf(FormOf(command->otherForm));
            EXPECT_EQ(other[index].presence == Presence::Needed,
                      form[index].presence == Presence::Needed);
        }
    }
}

TEST(CommandTable, NothingThatIsNeededStandsBehindWhatMayBeMissing) {
    for (const Command* const command : Commands()) {
        bool mayBeMissing = false;
        for (const FormElement& element : command->form.Elements()) {
            EXPECT_FALSE(mayBeMissing && element.presence == Presence::Needed)
                << TextOf(FormOf(command->form));
            mayBeMissing = mayBeMissing || element.presence != Presence::Needed;
        }
    }
}

TEST(CommandTable, OnlyOneCommandRefusesFurtherWords) {
    for (const Command* const command : Commands()) {
        EXPECT_EQ(command->furtherWords == FurtherWords::Refused, command->code == CommandCode{44});
    }
}

// What an operand of each name is; FCoE goes by WWNs.
TEST(CommandTable, OperandsAreOfTheirKinds) {
    using enum OperandKind;
    const std::map<std::string_view, std::set<OperandKind>> expected = {
        {"MAC", {Mac}},
        {"portWWN", {Wwn}},
        {"WWN", {Wwn}},
        {"Initiator Name", {IscsiName}},
        {"Target Name", {IscsiName, Wwn}},
        {"login options", {LoginOptions}},
        {"iSNS Server IP", {IPv4Address}},
        {"Portal IP", {IPAddress}},
        {"IP", {IPAddress}},
        {"IP Address", {IPAddress, IPv4Address, IPv6Address}},
        {"Subnet Mask", {IPv4Address}},
        {"Gateway", {IPv4Address, IPv6Address}},
        {"Prefix Length", {Number}},
        {"VLAN ID", {Number}},
        {"Port Number", {Number}},
        {"Session ID", {Number, NumberList}},
        {"Count", {Number}},
        {"time in secs", {Number}},
        {"-ipv4", {OperandKind::Word}},
        {"-ipv6", {OperandKind::Word}},
        {"-pcount", {OperandKind::Word}},
        {"-timeout", {OperandKind::Word}},
    };
    const std::map<std::string_view, std::int32_t> highest = {
        {"VLAN ID", 4094}, {"Prefix Length", 128}, {"Port Number", 65535}};
    std::map<std::string_view, std::set<OperandKind>> found;
    for (const Command* const command : Commands()) {
        for (const CommandForm* const form : {&command->form, &command->otherForm}) {
            const auto elements = form->Elements();
            for (const FormElement& element : elements) {
                if (element.operand == nullptr) {
                    continue;
                }
                const Operand& operand = *element.operand;
                found[operand.name].insert(operand.kind);
                if (highest.contains(operand.name)) {
                    EXPECT_EQ(operand.lowest, 0) << operand.name;
                    EXPECT_EQ(operand.highest, highest.at(operand.name)) << operand.name;
                }
                if (operand.name == "Target Name") {
                    EXPECT_EQ(operand.kind, elements[0].word == "-fcoe" ? Wwn : IscsiName);
                }
                if (operand.kind == NumberList) {
                    EXPECT_EQ(operand.highest, 99999);
                }
            }
        }
    }
    EXPECT_EQ(found, expected);
}

// The forms of the usage screen. What several share stands once: a line that is set in continues
// the one above it from that column on.
std::set<std::string> FormsOfUsageScreen() {
    console::MemoryConsole console;
    EntryCache cache;
    const Command& help = *FindCommand(CommandCode{3});
    help.handler({help, "", {}, cache});
    std::set<std::string> forms;
    std::string above;
    std::istringstream screen(console.Output());
    for (std::string line; std::getline(screen, line);) {
        const std::size_t indent = line.find_first_not_of(' ');
        const bool isForm = line.starts_with("tavrocli -") ||
                            (indent != std::string::npos && indent > 0 && line[indent] == '-');
        if (!isForm) {
            continue;
        }
        above = above.substr(0, indent) + line.substr(indent);
        Form form = WithoutBrackets(ReadForm(above.substr(std::string("tavrocli ").size())));
        for (Word& word : form) {
            if (word.text == "login option") {
                word.text = "login options";  // two lines of the screen have it so
            }
        }
        EXPECT_TRUE(forms.insert(TextOf(form)).second) << above;
    }
    return forms;
}

// These work without being advertised.
const std::set<std::string> KeywordsNotOnUsageScreen = {
    "-help",
    "-getfip",
    "-setfip",
    "-getvirtualportinfo",
    "-createvirtualport",
    "-deletevirtualport",
    "-getvirtualporttarget",
    "-getvirtualporttargetlun",
    "-getxml",
};

bool IsLeftOut(const Form& form) {
    return std::ranges::any_of(
        form, [](const Word& word) { return KeywordsNotOnUsageScreen.contains(word.text); });
}

TEST(CommandTable, UsageScreenShowsEveryFormButThoseItLeavesOut) {
    const std::set<std::string> shown = FormsOfUsageScreen();
    std::size_t leftOut = 0;
    for (const Command* const command : Commands()) {
        for (const Form& form : FormsOf(*command)) {
            leftOut += IsLeftOut(form) ? 1U : 0U;
            EXPECT_EQ(shown.contains(TextOf(WithoutBrackets(form))), !IsLeftOut(form))
                << TextOf(form);
        }
    }
    EXPECT_EQ(leftOut, KeywordsNotOnUsageScreen.size());
}

TEST(CommandTable, UsageScreenShowsNothingElse) {
    std::set<std::string> known = {"-fcoe | portWWN | -ping | Target Name"};  // without an option
    for (const Command* const command : Commands()) {
        for (const Form& form : FormsOf(*command)) {
            known.insert(TextOf(WithoutBrackets(form)));
        }
    }
    const std::set<std::string> shown = FormsOfUsageScreen();
    EXPECT_FALSE(shown.empty());
    for (const std::string& form : shown) {
        EXPECT_TRUE(known.contains(form)) << form;
    }
}

// The texts in code marks of a line of Markdown.
std::vector<std::string> CodesOf(const std::string& line) {
    static const std::regex code("`([^`]*)`");
    std::vector<std::string> codes;
    for (std::sregex_iterator match(line.begin(), line.end(), code), end; match != end; ++match) {
        codes.push_back((*match)[1]);
    }
    return codes;
}

const std::filesystem::path ManualFolder =
    std::filesystem::path(TAVRO_SOURCE_DIR) / "docs" / "manual";

std::ifstream OpenPage(const std::filesystem::path& page) {
    std::ifstream file(page);
    EXPECT_TRUE(file.is_open()) << page;
    return file;
}

// The forms that are headings of the manual's pages.
std::multiset<std::string> FormsOfManual() {
    std::multiset<std::string> forms;
    for (const auto& page : std::filesystem::directory_iterator(ManualFolder)) {
        std::ifstream file = OpenPage(page);
        for (std::string line; std::getline(file, line);) {
            if (line.starts_with("### `-")) {
                EXPECT_EQ(CodesOf(line).size(), 1U) << line;
                forms.insert(TextOf(ReadForm(CodesOf(line).front())));
            }
        }
    }
    return forms;
}

TEST(CommandTable, ManualHasEveryFormOnceAndNoOther) {
    const std::set<std::string> table = FormsOfTable();
    EXPECT_EQ(FormsOfManual(), std::multiset<std::string>(table.begin(), table.end()));
}

// The items of the list in a box on the page of traps, each as one line.
std::vector<std::string> RestrictedCommandsOfManual() {
    std::vector<std::string> items;
    std::ifstream file = OpenPage(ManualFolder / "traps.md");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("> - ")) {
            items.push_back(line.substr(std::string("> - ").size()));
        } else if (!items.empty() && line.starts_with(">   ")) {
            items.back() += line.substr(std::string(">  ").size());
        }
    }
    return items;
}

TEST(CommandTable, ManualListsTheCommandsThatTheRestrictedStateStops) {
    std::multiset<std::string> listed;
    const std::vector<std::string> items = RestrictedCommandsOfManual();
    for (const std::string& item : items) {
        for (const std::string& form : CodesOf(item)) {
            listed.insert(TextOf(ReadForm(form)));
        }
    }

    std::multiset<std::string> blocked;
    std::size_t blockedCommands = 0;
    for (const Command* const command : Commands()) {
        if (command->access == AccessClass::Blocked) {
            ++blockedCommands;
            for (const Form& form : FormsOf(*command)) {
                blocked.insert(TextOf(form));
            }
        }
    }
    EXPECT_EQ(listed, blocked);
    EXPECT_EQ(items.size(), blockedCommands);
}

}  // namespace
}  // namespace tavro
