// A device that records every single write and hands out its input in given pieces.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "console/redirect.h"

namespace tavro::console {

struct Recording {
    std::vector<std::string> writes;
    std::vector<std::wstring> textWrites;
    // Each read hands out one piece, an empty piece being an end of input; after the last, every
    // read is one.
    std::vector<std::string> input;
    std::size_t nextInput = 0;
    // How many writes succeed before output is lost.
    std::size_t writesLeft = 1000000;
    // What had been written when the first read came.
    std::vector<std::string> writesBeforeRead;

    Device ToBytes(unsigned codePage = platform::Utf8CodePage, std::string lineEnd = "\n") {
        Device device;
        device.writeBytes = [this](std::string_view bytes) {
            if (writesLeft == 0) {
                return false;
            }
            --writesLeft;
            writes.emplace_back(bytes);
            return true;
        };
        device.codePage = codePage;
        device.lineEnd = std::move(lineEnd);
        device.readBytes = [this](char* buffer, std::size_t size) { return Read(buffer, size); };
        return device;
    }

    Device ToText(unsigned codePage, std::string lineEnd) {
        Device device = ToBytes(codePage, std::move(lineEnd));
        device.writeText = [this](std::wstring_view text) {
            if (writesLeft == 0) {
                return false;
            }
            --writesLeft;
            textWrites.emplace_back(text);
            return true;
        };
        return device;
    }

  private:
    std::size_t Read(char* buffer, std::size_t size) {
        if (nextInput == 0) {
            writesBeforeRead = writes;
        }
        if (nextInput >= input.size()) {
            return 0;
        }
        return input[nextInput++].copy(buffer, size);
    }
};

}  // namespace tavro::console
