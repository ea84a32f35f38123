#include "fuzz/host_words.h"

#include <set>
#include <vector>

#include "simulator/host/host.h"
#include "simulator/host/host_type.h"

namespace tavro_fuzz {
namespace {

void Collect(const tavrosim::HostType& type, std::set<std::string>& words) {
    if (type.element != nullptr) {
        Collect(*type.element, words);
    }
    for (const tavrosim::HostMember& member : type.members) {
        words.emplace(member.key);
        Collect(*member.type, words);
    }
}

std::vector<std::string> Collected() {
    std::set<std::string> words{"format", "captured"};
    Collect(tavrosim::HostTypeOf<tavrosim::Host>(), words);
    return {words.begin(), words.end()};
}

}  // namespace

std::span<const std::string> HostWords() {
    static const std::vector<std::string> Words = Collected();
    return Words;
}

}  // namespace tavro_fuzz
