// What is done to the answer of a call.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "values.h"

namespace misbehaving {

enum class Extreme { Largest, Smallest, SignBit };

// What stands in the place of each value; what is not set leaves values as they are.
struct Damage {
    std::optional<std::string> text;
    std::optional<std::wstring> wideText;
    std::optional<Extreme> number;
    std::optional<std::size_t> entries;       // of lists that stand in no other
    std::optional<std::size_t> innerEntries;  // of the others
};

struct Fault {
    bool isForwarded = true;              // to the library whose answers are damaged
    std::optional<std::uint32_t> status;  // in the place of that library's
    Damage answer;
    Damage inputs;
    bool isUneven = false;  // the second of two lists has one entry less
    std::string thrown;     // what is thrown in the end, a word of exceptions.h; empty for nothing
};

// A fault of words, with blanks between them:
//   skip                            nobody is asked, and records stay as they came
//   status=NUMBER                   what is returned
//   text=NAME                       each text: long (1 MiB), control, bytes (no UTF-8), wild (no
//                                   characters), digits, negative, empty
//   number=largest|smallest|sign    each number
//   entries=NUMBER, inner=NUMBER    of each list
//   uneven                          two lists that belong together differ in length
//   inputs                          what the library should only read is written to
//   throw=WORD                      of exceptions.h
// Throws a std::logic_error for another word.
Fault ParseFault(const std::string& words);

// Damages each value that it is shown.
class Damaging : public Visitor {
  public:
    explicit Damaging(const Damage& damage) : damage_(damage) {}
    void Text(std::string& text) override;
    void Text(std::wstring& text) override;
    void Number(std::uint32_t& number) override;
    void Number(std::int32_t& number) override;
    void Number(std::uint8_t& number) override;
    void List(std::size_t size, int depth, const std::function<void(std::size_t)>& resize) override;

  private:
    const Damage& damage_;
};

// Tells what there is, by a letter each: "t" texts, "n" numbers, "l" lists, "i" lists in others.
class Telling : public Visitor {
  public:
    void Text(std::string&) override { Tell('t'); }
    void Text(std::wstring&) override { Tell('t'); }
    void Number(std::uint32_t&) override { Tell('n'); }
    void Number(std::int32_t&) override { Tell('n'); }
    void Number(std::uint8_t&) override { Tell('n'); }
    void List(std::size_t, int depth, const std::function<void(std::size_t)>&) override {
        Tell(depth == 0 ? 'l' : 'i');
    }
    const std::string& Letters() const { return letters_; }

  private:
    void Tell(char letter);

    std::string letters_;
};

}  // namespace misbehaving
