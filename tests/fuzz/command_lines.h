#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/played_run.h"

// A run as a text of lines, for a fuzzer. The first character of a line tells what the rest of it
// is; other lines are passed over.
//
//     a  an argument                     t  a line that is typed
//     c  what the library does with the calls that come (PlayedRun::treatments)
//     h  the number of one of the hosts  m  how output goes: t to a terminal, b in blocks,
//     n  the number of the entry            l and is lost soon
//        point that is missing
namespace tavro_fuzz {

struct DescribedRun {
    PlayedRun run;
    std::size_t host = 0;
};

DescribedRun RunFromText(std::string_view text);

// The text after some mutations of its lines, which mostly make a command of the table with
// operands of their kinds.
std::string MutatedRun(std::string_view text, std::mt19937& random);

}  // namespace tavro_fuzz
