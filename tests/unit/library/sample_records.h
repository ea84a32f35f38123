#pragma once

#include <array>
#include <cstdint>
#include <list>
#include <map>
#include <string>

#include "tavroapi/record.h"

// Records of every shape that the contract has.
namespace tavrolib_test {

struct Inner {
    std::string first;
    std::string secret;

    static constexpr std::array<std::size_t, 1> SecretPositions{1};
    static constexpr auto Fields(auto visit) {
        return visit(tavroapi::Field{"first", &Inner::first},
                     tavroapi::Field{"secret", &Inner::secret});
    }
};

struct Outer {
    std::string text;
    std::wstring wide;
    std::uint8_t flag = 0;
    std::int32_t result = 0;
    std::array<std::string, 2> spread;
    std::array<std::string, 2> nested;
    Inner inner;
    std::list<Inner> list;
    std::map<std::int32_t, std::wstring> map;

    static constexpr auto CompletionCode() { return &Outer::result; }
    static constexpr auto Fields(auto visit) {
        using tavroapi::Field;
        return visit(Field{"text", &Outer::text}, Field{"wide", &Outer::wide},
                     Field{"flag", &Outer::flag}, Field{"result", &Outer::result},
                     tavroapi::SpreadField{"spread", &Outer::spread},
                     Field{"nested", &Outer::nested}, Field{"inner", &Outer::inner},
                     Field{"list", &Outer::list}, Field{"map", &Outer::map});
    }
};

inline Outer SampleOuter() {
    return {"t",
            L"w\u65e5",
            255,
            -7,
            {"s1", "s2"},
            {"n1", "n2"},
            {"i", "hush"},
            {{"l", "hush"}},
            {{-1, L"one"}, {2, L"two"}}};
}

}  // namespace tavrolib_test
