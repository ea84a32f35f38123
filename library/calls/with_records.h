#pragma once

#include <concepts>
#include <string>
#include <utility>

#include "tavroapi/operations.h"

namespace tavrolib {

// Calls `serve` with the records that the operation `Code` exchanges, none of which is missing: its
// input where it takes one (a `const std::string&` for a character string), then its output where
// it returns one. Returns what `serve` returns.
template <tavroapi::OperationCode Code, class Serve>
auto WithRecords(void* input, void* output, Serve&& serve) {
    using Input = tavroapi::InputOf<Code>;
    using Output = tavroapi::OutputOf<Code>;
    const auto serveWith = [&](auto&&... inputs) {
        if constexpr (std::same_as<Output, tavroapi::NoRecord>) {
            return serve(inputs...);
        } else {
            return serve(inputs..., *static_cast<Output*>(output));
        }
    };
    if constexpr (std::same_as<Input, tavroapi::NoRecord>) {
        return serveWith();
    } else if constexpr (std::same_as<Input, tavroapi::CharacterString>) {
        return serveWith(std::string(static_cast<const char*>(input)));
    } else {
        return serveWith(*static_cast<Input*>(input));
    }
}

}  // namespace tavrolib
