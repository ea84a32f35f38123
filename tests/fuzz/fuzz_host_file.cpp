// Feeds arbitrary texts to the reader of host files. What it reads is written and read again
// without a difference, before and after the restart of that host; whoever collects all that is
// wrong finds first what refuses the file.
#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "fuzz/host_words.h"
#include "fuzz/json_mutation.h"
#include "fuzz/played_run.h"
#include "fuzz/require.h"
#include "simulator/host/host_file.h"
#include "simulator/host/restart.h"

namespace {

using tavrolib::Json;

std::optional<tavrosim::Host> Read(std::string_view text) {
    std::vector<tavrolib::ShapeError> found;
    tavrolib::Findings findings(found);
    const std::optional<tavrosim::Host> looked = tavrosim::HostFromText(text, findings);
    try {
        tavrosim::Host host = tavrosim::HostFromText(text);
        Require(found.empty() && looked.has_value());
        return host;
    } catch (const tavrolib::ShapeError& error) {
        Require(!found.empty());
        Require(error.what()[0] != '\0');
        return std::nullopt;
    }
}

// What was captured is written back as it was read.
void RequireCapturedKept(std::string_view text, const tavrosim::Host& host) {
    const Json read = tavrolib::ParseJson(text);
    const Json written = tavrolib::ParseJson(tavrosim::TextFromHost(host));
    Require(read.value("captured", Json()) == written.value("captured", Json()));
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t mostSize, unsigned seed) {
    return tavro_fuzz::MutateJsonText(data, size, mostSize, seed, tavro_fuzz::HostWords());
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = BytesOf(data, size);
    std::optional<tavrosim::Host> host = Read(text);
    if (host) {
        RequireCapturedKept(text, *host);
        tavro_fuzz::RequireFile(*host);
        tavrosim::Restart(*host);
        tavro_fuzz::RequireFile(*host);
    }
    return 0;
}
