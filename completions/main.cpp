// Puts the tables of commands into the template of a completion script. Runs while the programs are
// built.
#include <fstream>
#include <iostream>
#include <iterator>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "completions/host_commands.h"
#include "completions/program_forms.h"
#include "dispatch.h"

namespace {

// Puts as many lines as there are words into the place of the line that holds the mark, each with
// one in the mark's place.
void RepeatLine(std::string& text, std::string_view mark, const std::vector<std::string>& words) {
    const auto place = text.find(mark);
    if (place == std::string::npos) {
        throw std::runtime_error("the template lacks " + std::string(mark));
    }
    const auto start = text.rfind('\n', place) + 1;
    const auto end = text.find('\n', place) + 1;
    const std::string before = text.substr(start, place - start);
    const std::string behind = text.substr(place + mark.size(), end - place - mark.size());
    std::string lines;
    for (const std::string& word : words) {
        if (word.find('\'') != std::string::npos) {
            throw std::runtime_error("a quotation mark in: " + word);
        }
        lines.append(before).append(word).append(behind);
    }
    text.replace(start, end - start, lines);
}

std::string Read(const char* name) {
    std::ifstream file(name, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    if (!file) {
        throw std::runtime_error("cannot read " + std::string(name));
    }
    return text;
}

void Write(const char* name, const std::string& text) {
    std::ofstream file(name, std::ios::binary);
    file << text;
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write " + std::string(name));
    }
}

void MakeScript(const char* templateName, const char* scriptName) {
    std::string text = Read(templateName);
    RepeatLine(text, "@TAVROCLI_FORM@", completions::ProgramForms(tavro::Commands()));
    RepeatLine(text, "@TAVROHOST_COMMAND@", completions::HostCommands());
    Write(scriptName, text);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const std::span arguments(argv, static_cast<std::size_t>(argc));
        if (arguments.size() != 3) {
            throw std::runtime_error("usage: make_completions TEMPLATE SCRIPT");
        }
        MakeScript(arguments[1], arguments[2]);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "make_completions: " << error.what() << '\n';
        return 1;
    }
}
