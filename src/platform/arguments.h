// The arguments that this process was started with, as bytes.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tavro::platform {

// Holds the arguments as long as it lives, the program's own name at position 0. Outside Windows
// they are those of the entry function. On Windows they are split off the command line by the C
// runtime, wildcards left alone, before they are converted to the system's code page: a character
// that only resembles a quotation mark is none.
class ProcessArguments {
  public:
    // `count` and `entryValues` are the parameters of the entry function.
    ProcessArguments(int count, const char* const* entryValues);
    ~ProcessArguments() = default;
    ProcessArguments(const ProcessArguments&) = delete;
    ProcessArguments& operator=(const ProcessArguments&) = delete;

    // All arguments; in those that are not representable '?' stands for what the code page lacks.
    std::span<const char* const> Values() const { return values_; }

    // The position of the first argument that the system's code page cannot hold as it was typed.
    // The program's own name is not asked: nothing is done by it.
    std::optional<std::size_t> NotRepresentable() const { return notRepresentable_; }

  private:
    std::vector<std::string> texts_;
    std::vector<const char*> values_;
    std::optional<std::size_t> notRepresentable_;
};

}  // namespace tavro::platform
