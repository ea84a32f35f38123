// Loads the library that lies beside it and writes what "-showadapter" shows of it, without asking
// it: the measure that the program's start and end are held against.
#include <unistd.h>

#include <string>
#include <string_view>

#include "entries.h"
#include "library_beside.h"

namespace {

void AppendRow(std::string& text, std::string_view message, std::string_view value) {
    constexpr std::size_t ColumnOfColon = 34;
    text += '\t';
    text += message;
    text.append(ColumnOfColon - message.size(), ' ');
    text += ": ";
    text += value;
    text += '\n';
}

void AppendTitle(std::string& text, std::string_view message, std::string_view value) {
    constexpr std::size_t Middle = 41;
    const std::string rule = '\t' + std::string(67, '-') + '\n';
    text += rule;
    text.append(Middle - (message.size() + value.size()) / 2, ' ');
    text += message;
    text += " : ";
    text += value;
    text += '\n' + rule;
}

std::string Listing() {
    std::string text;
    AppendTitle(text, "#24833", bench::HostName);
    AppendRow(text, "#24834", bench::AdapterName);
    for (const std::string port : bench::PortNames) {
        text += "\n\t[" + port + "]\n\n";
        for (const bench::Function& function : bench::Functions) {
            AppendRow(text, "#24840", std::to_string(function.number));
            AppendRow(text, "#24841", function.address);
            AppendRow(text, "#24842", function.protocol);
            AppendRow(text, "#24848", bench::SecondText);
            AppendRow(text, "#24849", function.key);
            text += '\t' + std::string(78, '-') + '\n';
        }
    }
    return text;
}

}  // namespace

int main() {
    const bool isLoaded = bench::LoadLibrary() != nullptr;
    const std::string text = Listing();
    const bool isWritten = write(STDOUT_FILENO, text.data(), text.size()) >= 0;
    return isLoaded && isWritten ? 0 : 1;
}
