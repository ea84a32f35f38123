#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tavrohost {

// What a text of an answer is, as far as it tells who is who.
enum class TextKind {
    Opaque,      // anything may stand in it
    Kept,        // what the program compares, or tells nobody's identity
    Identifier,  // a MAC or a WWN
    Address,     // an IP address
    IscsiName,   // of a target or an initiator
    // By which commands address a function: a MAC, a WWN, or whatever the library takes.
    FunctionKey,
    // Names of any form.
    HostName,
    InterfaceName,
    DeviceName,
    SerialNumber,
    Alias,
    ChapName,
    // What a listing tells of a function besides: a WWN, an iSCSI name or an interface, by its
    // kind.
    FunctionName,
};

// Where a text stands in an answer's "output": the indexes of the arrays that it lies in.
using TextPath = std::vector<std::size_t>;

// The kind of a text of the output of a call, given without its prefix; `operation` is 0 but for
// DoOperation.
TextKind OutputKind(std::string_view call, std::uint32_t operation, const TextPath& path);

// The same of a text of an operation's input.
TextKind InputKind(std::uint32_t operation, const TextPath& path);

}  // namespace tavrohost
