// What libraries that break the contract throw.
#pragma once

#include <exception>
#include <new>
#include <stdexcept>
#include <string>

namespace misbehaving {

struct OwnType {
    std::string text = "nobody knows how to read this";
};

struct OwnException : std::exception {
    const char* what() const noexcept override { return "an exception of the library's own"; }
};

struct Speechless : std::exception {
    const char* what() const noexcept override { return nullptr; }
};

// Throws what the word stands for, with the entry point's name where it holds a text; an `OwnType`
// for every other word.
[[noreturn]] inline void Throw(const std::string& type, const std::string& entry) {
    if (type == "exception") {
        throw std::runtime_error("thrown by " + entry);
    }
    if (type == "lines") {
        throw std::runtime_error("thrown\r\nby\n" + entry + "\n");
    }
    if (type == "silent") {
        throw std::runtime_error("");
    }
    if (type == "memory") {
        throw std::bad_alloc();
    }
    if (type == "derived") {
        throw OwnException();
    }
    if (type == "speechless") {
        throw Speechless();
    }
    if (type == "int") {
        throw 42;
    }
    if (type == "pointer") {
        throw "a text";
    }
    throw OwnType();
}

}  // namespace misbehaving
