#include "fuzz/command_lines.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>

#include "dispatch.h"
#include "fuzz/mutation.h"

namespace tavro_fuzz {
namespace {

using tavro::Command;
using tavro::CommandForm;
using tavro::FormElement;
using tavro::OperandKind;

constexpr const char* Macs[] = {"02-00-5E-10-00-00", "02-00-5E-10-00-01", "02-00-5E-10-00-02",
                                "02-00-5E-10-00-03", "02:00:5e:10:00:02", "02005E100002",
                                "02-00-5E-10-01-00", "02-00-5E-10-01-04", "02-00-5E-10-00-04"};
constexpr const char* Wwns[] = {"10:00:02:00:5E:10:00:04", "10:00:02:00:5E:10:00:05",
                                "1000-0200-5e10-0004",     "50:00:02:00:5E:40:00:01",
                                "20:00:02:00:5E:10:00:04", "10:00:00:00:00:00:00:01"};
constexpr const char* Names[] = {"iqn.2015-01.com.example:storage.disks",
                                 "iqn.2015-01.com.example:storage.backup",
                                 "iqn.2015-01.com.example:storage.vault",
                                 "eui.02004567A425678D",
                                 "iqn.",
                                 "naa.52004567BA64678D"};
constexpr const char* Addresses[] = {
    "192.0.2.20",   "198.51.100.20",   "198.51.100.21", "0.0.0.0",      "255.255.255.255",
    "256.1.1.1",    "1.2.3",           "2001:db8::20",  "::",           "::ffff:192.0.2.20",
    "fe80::1%eth0", "2001:DB8:85A3::", "192.0.2.1",     "255.255.255.0"};
constexpr const char* Numbers[] = {"0",          "1",     "2",    "7",     "64",    "128",
                                   "3260",       "-1",    "4094", "65535", "65536", "2147483647",
                                   "4294967296", "1,2,3", "1,,2", "99999", " 1",    "0x10"};
constexpr const char* Options[] = {"-ipv4", "-ipv6",   "-pcount", "-timeout", "-mp",
                                   "-hd",   "-dd",     "-chap",   "-mchap",   "-debug",
                                   "-dhcp", "-static", "-a",      "-m",       "-h"};
constexpr const char* Typed[] = {"y",
                                 "n",
                                 "Y",
                                 "0",
                                 "1",
                                 "2",
                                 "3",
                                 "4",
                                 "5",
                                 "8",
                                 "10",
                                 "100",
                                 "secret-of-12",
                                 "secret-of-16-ch",
                                 "",
                                 "yy",
                                 " ",
                                 "NA",
                                 "1500",
                                 "192.0.2.30",
                                 "255.255.255.0",
                                 "a",
                                 "q",
                                 "x",
                                 "0,1",
                                 "3 4",
                                 "50,50",
                                 "0:0,1:1,2:2"};

template <std::size_t Count>
std::string AnyOf(const char* const (&texts)[Count], std::mt19937& random) {
    return texts[Below(Count, random)];
}

std::string ValueOf(OperandKind kind, std::mt19937& random) {
    switch (kind) {
        case OperandKind::Mac:
            return AnyOf(Macs, random);
        case OperandKind::Wwn:
            return AnyOf(Wwns, random);
        case OperandKind::IscsiName:
            return AnyOf(Names, random);
        case OperandKind::IPv4Address:
        case OperandKind::IPv6Address:
        case OperandKind::IPAddress:
            return AnyOf(Addresses, random);
        case OperandKind::Number:
        case OperandKind::NumberList:
            return AnyOf(Numbers, random);
        case OperandKind::Word:
        case OperandKind::LoginOptions:
            break;
    }
    return AnyOf(Options, random);
}

std::string AnyValue(std::mt19937& random) {
    return ValueOf(static_cast<OperandKind>(Below(10, random)), random);
}

std::string ArgumentFor(const FormElement& element, std::mt19937& random) {
    if (element.operand == nullptr) {
        return std::string(element.word);
    }
    if (element.operand->kind == OperandKind::Word) {
        return std::string(element.operand->name);
    }
    return Below(12, random) == 0 ? AnyValue(random) : ValueOf(element.operand->kind, random);
}

using Lines = std::vector<std::string>;

Lines LinesOf(std::string_view text) {
    Lines lines;
    while (!text.empty()) {
        const std::size_t size = std::min(text.find('\n'), text.size());
        lines.emplace_back(text.substr(0, size));
        text.remove_prefix(std::min(size + 1, text.size()));
    }
    return lines;
}

// The lines get the arguments of a command in the place of theirs.
void PutCommand(Lines& lines, std::mt19937& random) {
    const auto commands = tavro::Commands();
    const Command& command = *commands[Below(commands.size(), random)];
    const CommandForm& form = command.otherForm.Elements().empty() || Below(2, random) == 0
                                  ? command.form
                                  : command.otherForm;
    std::erase_if(lines, [](const std::string& line) { return line.starts_with('a'); });
    Lines arguments;
    for (const FormElement& element : form.Elements()) {
        if (element.presence != tavro::Presence::Optional || Below(2, random) == 0) {
            arguments.push_back('a' + ArgumentFor(element, random));
        }
    }
    for (std::size_t count = Below(8, random); count >= 5; --count) {
        arguments.push_back('a' + AnyValue(random));
    }
    lines.insert(lines.begin(), arguments.begin(), arguments.end());
}

std::string AnyTreatments(std::mt19937& random) {
    // Discovery comes first; it is not always disturbed.
    std::string treatments(Below(12, random), '.');
    for (std::size_t count = 1 + Below(4, random); count > 0; --count) {
        constexpr std::string_view Kinds = ".fumcx";
        treatments += Kinds[Below(Kinds.size(), random)];
    }
    return treatments;
}

std::string AnyLine(std::mt19937& random) {
    switch (Below(8, random)) {
        case 0:
            return 'a' + AnyValue(random);
        case 1:
            return 'c' + AnyTreatments(random);
        case 2:
            return 'h' + std::to_string(Below(8, random));
        case 3: {
            constexpr std::string_view Modes = "tbl";
            return std::string("m") + Modes[Below(Modes.size(), random)];
        }
        case 4:
            return Below(8, random) == 0 ? 'n' + std::to_string(Below(11, random))
                                         : 't' + AnyOf(Typed, random);
        default:
            return 't' + AnyOf(Typed, random);
    }
}

void MutateLines(Lines& lines, std::mt19937& random) {
    const auto any = [&] {
        return lines.begin() + static_cast<std::ptrdiff_t>(Below(lines.size(), random));
    };
    const std::size_t choice = lines.empty() ? Below(2, random) : Below(8, random);
    if (choice == 0) {
        PutCommand(lines, random);
    } else if (choice <= 3) {
        const std::string line = AnyLine(random);
        lines.insert(lines.empty() ? lines.begin() : any() + 1, line);
    } else if (choice == 4) {
        lines.erase(any());
    } else if (choice == 5) {
        const std::string line = *any();
        lines.insert(any(), line);
    } else if (choice == 6) {
        std::swap(*any(), *any());
    } else if (auto line = any(); !line->empty()) {
        *line = line->front() +
                (Below(2, random) == 0 ? MutatedBytes(line->substr(1)) : AnyValue(random));
    }
}

std::optional<std::size_t> NumberOf(const std::string& text) {
    std::size_t number = 0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), number);
    return end.ec == std::errc() ? std::optional(number) : std::nullopt;
}

}  // namespace

DescribedRun RunFromText(std::string_view text) {
    constexpr std::size_t MostArguments = 64;
    DescribedRun described;
    PlayedRun& run = described.run;
    for (const std::string& line : LinesOf(text)) {
        const std::string rest = line.substr(std::min<std::size_t>(1, line.size()));
        const char kind = line.empty() ? ' ' : line.front();
        if (kind == 'a' && run.arguments.size() < MostArguments) {
            run.arguments.push_back(rest);
        } else if (kind == 't') {
            run.typed += rest + '\n';
        } else if (kind == 'c') {
            run.treatments += rest;
        } else if (kind == 'h') {
            described.host = NumberOf(rest).value_or(0);
        } else if (kind == 'n') {
            run.missingEntryPoint = NumberOf(rest);
        } else if (kind == 'm') {
            run.isTerminal |= rest.find('t') != std::string::npos;
            run.blockSize = rest.find('b') != std::string::npos ? 1 << 16 : run.blockSize;
            run.mostOutput = rest.find('l') != std::string::npos ? 200 : run.mostOutput;
        }
    }
    return described;
}

std::string MutatedRun(std::string_view text, std::mt19937& random) {
    Lines lines = LinesOf(text);
    for (std::size_t count = 1 + Below(3, random); count > 0; --count) {
        MutateLines(lines, random);
    }
    std::string mutated;
    for (const std::string& line : lines) {
        mutated += line + '\n';
    }
    return mutated;
}

}  // namespace tavro_fuzz
