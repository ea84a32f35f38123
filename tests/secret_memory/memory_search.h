// Looks for a secret in the memory of its own process.
#pragma once

#include <array>
#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace secret_memory {

// A secret of different characters, kept in a form in which a search does not find it.
class Secret {
  public:
    // From its bytes, each turned upside down (x becomes 255 - x), as hexadecimal digits.
    explicit Secret(std::string_view hidden);

    bool IsIn(std::string_view text) const;
    void AppendTo(std::string& text) const;

    // How many characters of the secret, wherever in it they begin, stand together from `place` on,
    // each in a unit of so many bytes.
    std::size_t CountAt(const unsigned char* place, const unsigned char* end,
                        std::size_t unit) const;

  private:
    std::string upsideDown;
    // The number of a character within the secret, counted from 1; 0 for all others.
    std::array<std::size_t, 256> numbers{};
};

// What was found in the memory that can be written to: one line for each place where at least eight
// characters of the secret stand, as bytes or in units of two or four. `searchedBytes` is how much
// there was to search.
std::vector<std::string> SearchMemory(const Secret& secret, std::size_t& searchedBytes);

// Searches, and writes a line "left ..." for each place, and at last how much was searched.
void ReportSearch(const Secret& secret, std::ostream& report);

}  // namespace secret_memory
