#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simulator/host/host.h"
#include "twin/run/verdict.h"

// What a rehearsal cannot know of the real host.
namespace tavrohost {

// One operation as the twin served it.
struct RehearsedOperation {
    std::uint32_t code = 0;
    std::string request;
    std::uint32_t status = 0;
    std::optional<std::int64_t> completionCode{};  // where the record has room for one
    bool isIncomplete = false;                     // its records tell that not all was done

    bool IsDone() const { return Succeeded(status, completionCode, isIncomplete); }
    bool operator==(const RehearsedOperation&) const = default;
};

// Whether the operation changes nothing but counters that it reads.
bool IsReading(std::uint32_t code);

// Why nobody can say beforehand what the host will make of an operation.
struct Doubt {
    std::uint32_t operation = 0;
    std::string request;
    std::string reason;  // one sentence without its full stop

    bool operator==(const Doubt&) const = default;
};

// The doubts about the operations of a command, in their order, each once; none means that the host
// will do what the twin did. `before` and `after` are the twin before and after the command.
std::vector<Doubt> DoubtsAbout(const std::vector<RehearsedOperation>& operations,
                               const tavrosim::Host& before, const tavrosim::Host& after);

}  // namespace tavrohost
