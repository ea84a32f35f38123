#include "simulator/host/personalities.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "simulator/host/lookup.h"
#include "simulator/host/numerals.h"

namespace tavrosim {
namespace {

struct WantedFunction {
    std::uint32_t number = 0;
    std::string personality;
};

bool Fits(const Function& function, const WantedFunction& wanted) {
    return function.number == wanted.number && PersonalityOf(function) == wanted.personality;
}

// ---- Which functions a port has ----------------------------------------------------------------

std::vector<WantedFunction> FunctionsOfPartitions(const Partitions& partitions, std::size_t port,
                                                  std::size_t portCount) {
    std::vector<WantedFunction> wanted;
    for (std::size_t number = port; number < partitions.functions.size(); number += portCount) {
        wanted.push_back(
            {static_cast<std::uint32_t>(number), partitions.functions[number].personality});
    }
    return wanted;
}

// The number of the port's first function of that personality, else `otherwise`.
std::uint32_t NumberOf(const Port& port, std::string_view personality, std::size_t otherwise) {
    for (const Function& function : port.functions) {
        if (PersonalityOf(function) == personality) {
            return function.number;
        }
    }
    return static_cast<std::uint32_t>(otherwise);
}

std::vector<WantedFunction> FunctionsOfUndivided(const Adapter& adapter, std::size_t index) {
    const Port& port = adapter.ports[index];
    std::vector<WantedFunction> wanted{
        {NumberOf(port, EthernetPersonality, index), EthernetPersonality}};
    if (adapter.type != EthernetPersonality) {
        const std::string storage = PersonalityOf(port);
        const std::uint32_t ethernet = wanted.front().number;
        std::size_t next = index + adapter.ports.size();
        next += next == ethernet ? adapter.ports.size() : 0;
        wanted.push_back({NumberOf(port, storage, next), storage});
    }
    return wanted;
}

// ---- What a new function is called by ----------------------------------------------------------

template <class Visit>
void ForEachFunction(const Host& host, Visit visit) {
    for (const Adapter& adapter : host.adapters) {
        for (const Port& port : adapter.ports) {
            for (const Function& function : port.functions) {
                visit(function);
            }
        }
    }
}

// The first of `candidate(0)`, `candidate(1)` and so on that is not taken.
template <class Candidate>
std::string FirstFree(const std::set<std::string>& taken, Candidate candidate) {
    std::uint64_t count = 0;
    while (taken.contains(candidate(count))) {
        ++count;
    }
    return candidate(count);
}

// Hexadecimal digits in pairs: "02-00-5E-10-00-02".
std::string InPairs(const std::string& digits, char separator) {
    std::string text;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        text += (i == 0 ? std::string() : std::string(1, separator)) + digits.substr(i, 2);
    }
    return text;
}

// The digits of the MAC. No port of the host has a WWN that ends in them either.
std::string MacDigitsFor(const Host& host, const Function& first, std::uint32_t number) {
    std::set<std::string> taken;
    const auto take = [&taken](const std::string& identifier) {
        const std::string normal = Capitals(NormalIdentifier(identifier));
        taken.insert(normal.substr(normal.size() > MacDigits ? normal.size() - MacDigits : 0));
    };
    ForEachFunction(host, [&](const Function& function) {
        take(function.mac);
        if (function.fcoe) {
            take(function.fcoe->portWwn);
            for (const VirtualPort& virtualPort : function.fcoe->virtualPorts) {
                take(virtualPort.portWwn);
            }
        }
    });
    std::uint64_t base = 0;
    const std::string digits = NormalIdentifier(first.mac);
    std::from_chars(digits.data(), digits.data() + digits.size(), base, 16);
    return FirstFree(taken, [&](std::uint64_t count) {
        return HexOf(base + number - first.number + count, MacDigits);
    });
}

std::string InterfaceNameFor(const Host& host) {
    std::set<std::string> taken;
    ForEachFunction(host, [&](const Function& function) {
        if (function.ethernet) {
            taken.insert(function.ethernet->interfaceName);
        }
    });
    return FirstFree(taken, [](std::uint64_t count) { return "eth" + std::to_string(count); });
}

std::string FcidFor(const Host& host) {
    constexpr std::uint64_t First = 0x010000;
    constexpr std::uint64_t Step = 0x100;  // leaves room for a function's virtual ports
    return FirstFree(FcidsInUse(host),
                     [](std::uint64_t count) { return HexOf(First + Step * count, FcidDigits); });
}

Function MakeFunction(const Host& host, const Function& first, const WantedFunction& wanted) {
    const std::string digits = MacDigitsFor(host, first, wanted.number);
    Function function;
    function.number = wanted.number;
    function.mac = InPairs(digits, '-');
    if (wanted.personality == EthernetPersonality) {
        function.ethernet.emplace().interfaceName = InterfaceNameFor(host);
    } else if (wanted.personality == IscsiPersonality) {
        function.iscsi.emplace();
    } else {
        FcoePart& part = function.fcoe.emplace();
        part.portWwn = InPairs("1000" + digits, ':');
        part.nodeWwn = InPairs("2000" + digits, ':');
        part.fcid = FcidFor(host);
    }
    return function;
}

void GiveFunctions(const Host& host, Port& port, const std::vector<WantedFunction>& wanted) {
    if (port.functions.empty() || wanted.empty()) {
        return;
    }
    const auto byNumber = [](const Function& one, const Function& other) {
        return one.number < other.number;
    };
    const Function first =
        *std::min_element(port.functions.begin(), port.functions.end(), byNumber);
    std::erase_if(port.functions, [&](const Function& function) {
        return std::none_of(wanted.begin(), wanted.end(),
                            [&](const WantedFunction& each) { return Fits(function, each); });
    });
    for (const WantedFunction& each : wanted) {
        const bool isThere =
            std::any_of(port.functions.begin(), port.functions.end(),
                        [&](const Function& function) { return Fits(function, each); });
        if (!isThere) {
            port.functions.push_back(MakeFunction(host, first, each));
        }
    }
    std::stable_sort(port.functions.begin(), port.functions.end(), byNumber);
}

}  // namespace

const char* PersonalityOf(const Function& function) {
    return function.ethernet ? EthernetPersonality
           : function.iscsi  ? IscsiPersonality
                             : FcoePersonality;
}

std::string PersonalityOf(const Port& port) {
    return port.resources.value_or(Resources{}).personality;
}

void RebuildFunctions(const Host& host, Adapter& adapter, std::size_t index) {
    GiveFunctions(host, adapter.ports[index],
                  adapter.partitionState == tavroapi::NotPartitioned
                      ? FunctionsOfUndivided(adapter, index)
                      : FunctionsOfPartitions(adapter.partitions.value_or(Partitions{}), index,
                                              adapter.ports.size()));
}

}  // namespace tavrosim
