// Runs command lines, with what is typed, on hosts in memory and with libraries that fail, stay
// silent or tell something else in the middle. What must hold of every run, Play requires. A
// command line that is none changes nothing; what a library that serves every call made of the host
// can be written and read again.
#include <algorithm>
#include <vector>

#include "cli/command_line.h"
#include "dispatch.h"
#include "fuzz/command_lines.h"
#include "fuzz/mutation.h"
#include "fuzz/played_run.h"
#include "fuzz/require.h"
#include "unit/twin/random_host.h"

namespace {

// The built-in host, one in the restricted state, and some with anything that a host may hold.
std::vector<tavrosim::Host> MakeHosts() {
    constexpr std::uint32_t RandomHosts = 6;
    std::vector<tavrosim::Host> hosts(2, tavro_fuzz::BuiltInHost());
    for (tavrosim::Adapter& adapter : hosts.back().adapters) {
        adapter.state = "6";
    }
    for (std::uint32_t seed = 0; seed < RandomHosts; ++seed) {
        hosts.push_back(tavrohost_test::RandomHost(seed, tavrohost_test::Oddness::Anything));
    }
    return hosts;
}

bool IsCommand(const std::vector<std::string>& arguments) {
    std::vector<const char*> values{"tavrocli"};
    for (const std::string& argument : arguments) {
        values.push_back(argument.c_str());
    }
    return tavro::FindCommand(tavro::ParseCommandLine(values, tavro::Commands())) != nullptr;
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t mostSize, unsigned seed) {
    std::mt19937 random(seed);
    if (tavro_fuzz::Below(16, random) == 0) {
        return LLVMFuzzerMutate(data, size, mostSize);
    }
    return tavro_fuzz::PutInto(data, mostSize, tavro_fuzz::MutatedRun(BytesOf(data, size), random));
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::vector<tavrosim::Host> Hosts = MakeHosts();
    std::string text(BytesOf(data, size));
    std::erase(text, '\0');
    const tavro_fuzz::DescribedRun described = tavro_fuzz::RunFromText(text);
    tavrosim::Host host = Hosts[described.host % Hosts.size()];
    const auto result = tavro_fuzz::Play(described.run, host);
    Require(!result.changedHost || IsCommand(described.run.arguments));
    if (result.changedHost) {
        tavro_fuzz::RequireFile(host);
    }
    return 0;
}
