#include "faults.h"

#include <limits>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace misbehaving {
namespace {

struct Texts {
    std::string narrow;
    std::wstring wide;
};

constexpr std::size_t Long = 1 << 20;

const std::map<std::string, Texts>& NamedTexts() {
    using namespace std::string_literals;
    static const std::map<std::string, Texts> texts = {
        {"long", {std::string(Long, 'x'), std::wstring(Long, L'x')}},
        {"control",
         {"\0\x01\a\b\t\n\v\f\r\x1b[2J\x1b]0;x\a\x7f\n\r"s,
          L"\0\x01\a\b\t\n\v\f\r\x1b[2J\x1b]0;x\a\x7f\x85\x9b\n\r"s}},
        // Single, cut short, too long, surrogates, out of range.
        {"bytes",
         {"\xff\x80\xc3 \xe2\x82 \xf0\x9f\x98 \xc0\x9b\xe0\x80\x9b\xed\xa0\x80\xf4\x90\x80\x80"s,
          L"\xff\x80\xc3"s}},
        // Surrogates alone and in the wrong order, and the largest value that there is.
        {"wild",
         {"\x80\x85\x9b\xfe"s,
          std::wstring{static_cast<wchar_t>(0xD800), L'a', static_cast<wchar_t>(0xDC00),
                       static_cast<wchar_t>(0xD800), static_cast<wchar_t>(-1),
                       static_cast<wchar_t>(0xFFFF), std::numeric_limits<wchar_t>::min(), L'\xAD',
                       static_cast<wchar_t>(0x202E)}}},
        {"digits", {std::string(40, '9'), std::wstring(40, L'9')}},
        {"negative", {"-" + std::string(40, '9'), L"-" + std::wstring(40, L'9')}},
        {"empty", {}},
    };
    return texts;
}

// What is written into inputs: longer than any text that came, so that its place changes.
const Damage WrittenToInputs = {.text = std::string(1000, '\x9b'),
                                .wideText = std::wstring(1000, L'\x9b'),
                                .number = Extreme::Largest,
                                .entries = 3,
                                .innerEntries = 3};

Extreme ExtremeNamed(const std::string& name) {
    if (name == "largest") {
        return Extreme::Largest;
    }
    if (name == "smallest") {
        return Extreme::Smallest;
    }
    if (name == "sign") {
        return Extreme::SignBit;
    }
    throw std::invalid_argument("no such number: " + name);
}

void AddWord(Fault& fault, const std::string& name, const std::string& value) {
    if (name == "skip") {
        fault.isForwarded = false;
    } else if (name == "status") {
        fault.status = static_cast<std::uint32_t>(std::stoul(value));
    } else if (name == "text") {
        const Texts& texts = NamedTexts().at(value);
        fault.answer.text = texts.narrow;
        fault.answer.wideText = texts.wide;
    } else if (name == "number") {
        fault.answer.number = ExtremeNamed(value);
    } else if (name == "entries") {
        fault.answer.entries = std::stoul(value);
    } else if (name == "inner") {
        fault.answer.innerEntries = std::stoul(value);
    } else if (name == "uneven") {
        fault.isUneven = true;
    } else if (name == "inputs") {
        fault.inputs = WrittenToInputs;
    } else if (name == "throw") {
        fault.thrown = value;
    } else {
        throw std::invalid_argument("no such word: " + name);
    }
}

template <class Value>
void Replace(Value& value, const std::optional<Value>& other) {
    if (other) {
        value = *other;
    }
}

template <class Integer>
void ReplaceNumber(Integer& number, std::optional<Extreme> extreme) {
    using Limits = std::numeric_limits<Integer>;
    if (extreme == Extreme::Largest) {
        number = Limits::max();
    } else if (extreme == Extreme::Smallest) {
        number = Limits::min();
    } else if (extreme == Extreme::SignBit) {
        number = static_cast<Integer>(std::uint64_t{1} << (8 * sizeof(Integer) - 1));
    }
}

}  // namespace

Fault ParseFault(const std::string& words) {
    Fault fault;
    std::istringstream stream(words);
    for (std::string word; stream >> word;) {
        const std::size_t equals = word.find('=');
        AddWord(fault, word.substr(0, equals),
                equals == std::string::npos ? "" : word.substr(equals + 1));
    }
    return fault;
}

void Damaging::Text(std::string& text) {
    Replace(text, damage_.text);
}

void Damaging::Text(std::wstring& text) {
    Replace(text, damage_.wideText);
}

void Damaging::Number(std::uint32_t& number) {
    ReplaceNumber(number, damage_.number);
}

void Damaging::Number(std::int32_t& number) {
    ReplaceNumber(number, damage_.number);
}

void Damaging::Number(std::uint8_t& number) {
    ReplaceNumber(number, damage_.number);
}

void Damaging::List(std::size_t, int depth, const std::function<void(std::size_t)>& resize) {
    if (const auto size = depth == 0 ? damage_.entries : damage_.innerEntries) {
        resize(*size);
    }
}

void Telling::Tell(char letter) {
    if (letters_.find(letter) == std::string::npos) {
        letters_ += letter;
    }
}

}  // namespace misbehaving
