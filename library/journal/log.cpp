#include "library/journal/log.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <string>
#include <string_view>

#include "library/text/text.h"

namespace tavrolib {
namespace {

std::string TimeText() {
    using namespace std::chrono;
    const auto now = floor<milliseconds>(system_clock::now());
    const auto day = floor<days>(now);
    const year_month_day date(day);
    const hh_mm_ss time(now - day);
    std::array<char, 40> text{};
    const int length = std::snprintf(
        text.data(), text.size(), "%04d-%02u-%02u %02d:%02d:%02d.%03d UTC",
        static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
        static_cast<unsigned>(date.day()), static_cast<int>(time.hours().count()),
        static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()),
        static_cast<int>(time.subseconds().count()));
    return {text.data(), static_cast<std::size_t>(length)};
}

// One line whatever the UTF-8 text holds; nothing in it acts on a terminal. The control characters
// from U+0080 to U+009F have two bytes.
std::string OneLine(std::string_view text) {
    std::string line;
    line.reserve(text.size());
    for (std::size_t place = 0; place < text.size(); ++place) {
        const auto byteAt = [&text](std::size_t at) {
            return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
        };
        const bool isLong =
            byteAt(place) == 0xC2 && byteAt(place + 1) >= 0x80 && byteAt(place + 1) < 0xA0;
        const bool isControl = isLong || byteAt(place) < 0x20 || byteAt(place) == 0x7F;
        line += isControl ? '.' : text[place];
        place += isLong ? 1 : 0;
    }
    return line;
}

std::string Quoted(const std::string& text) {
    return '"' + OneLine(text) + '"';
}

std::string Described(const Call& call) {
    std::string text(RowOf(call.entryPoint).name);
    if (call.operation) {
        text += ' ';
        text += call.described == nullptr ? "of number" : call.described->name;
        text += ' ' + std::to_string(*call.operation);
    }
    if (call.debug) {
        text += " debug " + std::to_string(*call.debug);
    }
    if (call.locale) {
        text += " locale " + Quoted(Utf8FromWide(*call.locale));
    }
    const auto add = [&text](const char* name, const std::optional<std::string>& value) {
        if (value) {
            text += std::string(" ") + name + ' ' + Quoted(Utf8FromBytes(*value));
        }
    };
    add("request", call.request);
    add("adapter", call.adapter);
    add("port", call.port);
    return text;
}

}  // namespace

void Log::Open(const std::filesystem::path& path, std::wstring_view library) {
    try {
        file_.emplace(path, platform::Accept::OwnRegularFiles);
    } catch (const platform::FileError&) {
        file_.reset();
    }
    WriteLine(OneLine(Utf8FromWide(library)));
}

void Log::WriteLine(const std::string& text) {
    if (file_) {
        file_->Append(TimeText() + "  " + text + '\n');
    }
}

void Log::Write(const Call& call, std::uint32_t status, const tavroapi::ErrorRecord* error) {
    if (!file_) {
        return;
    }
    std::string line = Described(call) + ": status " + std::to_string(status);
    if (error != nullptr) {
        line += ", " + Quoted(Utf8FromWide(error->message));
        if (!error->details.empty()) {
            line += " [" + Quoted(Utf8FromWide(error->details)) + ']';
        }
    }
    WriteLine(line);
}

}  // namespace tavrolib
