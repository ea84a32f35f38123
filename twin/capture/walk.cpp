#include "twin/capture/walk.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <list>
#include <optional>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "tavroapi/described_operations.h"
#include "twin/capture/recorder.h"

namespace tavrohost {
namespace {

using tavroapi::OperationCode;
using tavrolib::EntryPoint;

constexpr std::uint32_t HighestSessionGuess = 256;
constexpr std::size_t MostSessionGuesses = 4096;  // of one port, over all of its targets

// A function of the host: what requests address it by, the address that is shown, and its type
// where the library tells one.
struct CapturedFunction {
    std::string key;
    std::string address;
    std::optional<std::uint32_t> type;
};

std::vector<CapturedFunction> FunctionsOf(const tavrolib::PortFunctions& port) {
    std::vector<CapturedFunction> functions;
    auto identity = port.identities.begin();
    for (const tavroapi::FunctionAddress& address : port.addresses) {
        CapturedFunction& function = functions.emplace_back();
        function.key = address.keyText;
        function.address = address.addressText;
        if (identity != port.identities.end()) {
            function.type = identity->functionType;
            if (identity->keyText != address.keyText) {
                functions.push_back({identity->keyText, {}, identity->functionType});
            }
            ++identity;
        }
    }
    for (; identity != port.identities.end(); ++identity) {
        functions.push_back({identity->keyText, {}, identity->functionType});
    }
    return functions;
}

std::vector<CapturedFunction> AskInventory(CallRecorder& recorder) {
    std::vector<CapturedFunction> functions;
    recorder.Query<EntryPoint::GetHostName>();
    const auto adapters = recorder.Query<EntryPoint::GetDiscoveredAdapters>();
    if (!adapters) {
        return functions;
    }
    for (const tavroapi::AdapterRecord& adapter : *adapters) {
        for (const std::string& portName : adapter.portNames) {
            if (const auto port =
                    recorder.Query<EntryPoint::GetPortWWNs>(PortQuery(adapter.name, portName))) {
                const auto found = FunctionsOf(*port);
                functions.insert(functions.end(), found.begin(), found.end());
            }
        }
    }
    return functions;
}

// What is asked of functions of any type.
void AskAnyFunction(CallRecorder& recorder, const std::string& key) {
    recorder.Query<EntryPoint::GetPartitionState>(FunctionQuery(key));
    recorder.Query<EntryPoint::GetAdapterType>(FunctionQuery(key));
    recorder.Query<EntryPoint::GetAdapterPortNumber>(FunctionQuery(key));
    recorder.Ask<OperationCode::ReadAdapterState>(key);
    recorder.Ask<OperationCode::ReadPartitions>(key);
    recorder.Ask<OperationCode::ReadPersonality>(key);
}

void AskEthernet(CallRecorder& recorder, const std::string& key) {
    recorder.Ask<OperationCode::ReadEthernetPort>(key);
    recorder.Ask<OperationCode::ReadAdapterSettings>(key);
    recorder.Ask<OperationCode::ReadEthernetStatistics>(key, tavroapi::StatisticsFlag{1});
    recorder.Ask<OperationCode::ReadEthernetTcpIp>(key);
}

// ---- iSCSI -------------------------------------------------------------------------------------

// The first names, each once, in their order.
template <class Records, class Name>
std::vector<std::string> NamesOf(const std::vector<const Records*>& lists, Name nameOf) {
    std::vector<std::string> names;
    std::set<std::string> seen;
    for (const Records* const list : lists) {
        for (const auto& record : *list) {
            if (names.size() < MostTargets && seen.insert(nameOf(record)).second) {
                names.push_back(nameOf(record));
            }
        }
    }
    return names;
}

// Finds the sessions of a port.
class SessionSearch {
  public:
    SessionSearch(CallRecorder& recorder, const std::string& key)
        : recorder_(recorder), key_(key) {}

    // The session that the target shows when no number is given, and the same by its number.
    void AskFirst(const std::string& target) {
        const auto number =
            Note(target, recorder_.Exchange<OperationCode::ReadSession>(key_, Wanted(target, "0")));
        if (number && *number != "0") {
            recorder_.Exchange<OperationCode::ReadSession>(key_, Wanted(target, *number));
        }
    }

    // Tries numbers until there are as many sessions as the port has.
    void AskFurther(const std::vector<std::string>& targets, std::size_t wanted) {
        std::size_t guesses = 0;
        for (std::uint32_t number = 1; number <= HighestSessionGuess; ++number) {
            for (const std::string& target : targets) {
                if (found_.size() >= wanted || guesses++ == MostSessionGuesses) {
                    return;
                }
                Note(target, recorder_.Guess<OperationCode::ReadSession>(
                                 key_, Wanted(target, std::to_string(number))));
            }
        }
    }

  private:
    static tavroapi::SessionRecord Wanted(const std::string& target, const std::string& number) {
        tavroapi::SessionRecord wanted;
        wanted.texts[tavroapi::iscsi_session::TargetName] = target;
        wanted.texts[tavroapi::iscsi_session::Id] = number;
        return wanted;
    }

    // The number that the session tells.
    std::optional<std::string> Note(const std::string& target,
                                    const std::optional<tavroapi::SessionRecord>& session) {
        if (!session) {
            return std::nullopt;
        }
        const std::string& told = session->texts[tavroapi::iscsi_session::Id];
        found_.emplace(target, told);
        return told;
    }

    CallRecorder& recorder_;
    const std::string& key_;
    std::set<std::pair<std::string, std::string>> found_;  // target and number
};

std::size_t NumberFrom(const std::string& text) {
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? number : 0;
}

void AskIscsi(CallRecorder& recorder, const std::string& key) {
    using TargetList = std::list<tavroapi::TargetRecord>;
    const auto port = recorder.Ask<OperationCode::ReadIscsiPort>(key);
    recorder.Ask<OperationCode::ReadIscsiDefaults>(key);
    recorder.Ask<OperationCode::ReadIscsiStatistics>(key);
    recorder.Ask<OperationCode::ReadIscsiBoot>(key);
    recorder.Ask<OperationCode::ListPortals>(key);
    const auto known = recorder.Ask<OperationCode::ListTargets>(key).value_or(TargetList{});
    const auto active = recorder.Ask<OperationCode::ListActiveTargets>(key).value_or(TargetList{});
    recorder.Ask<OperationCode::ListIsnsServers>(key);
    const auto nameOf = [](const tavroapi::TargetRecord& target) { return target.name; };
    SessionSearch sessions(recorder, key);
    for (const std::string& target : NamesOf<TargetList>({&known, &active}, nameOf)) {
        recorder.Ask<OperationCode::ReadTarget>(key, target);
        recorder.Ask<OperationCode::ListLuns>(key, target);
        sessions.AskFirst(target);
    }
    if (port) {
        sessions.AskFurther(NamesOf<TargetList>({&active}, nameOf),
                            NumberFrom(port->texts[tavroapi::iscsi_port::ActiveSessions]));
    }
}

// ---- FCoE --------------------------------------------------------------------------------------

void AskFcoe(CallRecorder& recorder, const std::string& key) {
    using TargetList = std::list<tavroapi::FcoeTargetRecord>;
    recorder.Ask<OperationCode::ReadFcoePort>(key);
    const auto targets = recorder.Ask<OperationCode::ListFcoeTargets>(key).value_or(TargetList{});
    recorder.Ask<OperationCode::ListFcoeBindings>(key);
    recorder.Ask<OperationCode::ReadFcoeStatistics>(key, std::uint32_t{0});
    recorder.Ask<OperationCode::ReadDcbInfo>(key);
    recorder.Ask<OperationCode::ReadFcoeBoot>(key);
    recorder.Ask<OperationCode::ReadDcbConfig>(key);
    recorder.Ask<OperationCode::ReadFip>(key);
    for (const std::string& target :
         NamesOf<TargetList>({&targets}, [](const tavroapi::FcoeTargetRecord& record) {
             return record.texts[tavroapi::fcoe_target::PortWwn];
         })) {
        recorder.Ask<OperationCode::ReadFcoeTarget>(key, target);
        recorder.Ask<OperationCode::ListFcoeLuns>(key, target);
    }
    const auto ports = recorder.Ask<OperationCode::ListVirtualPorts>(key);
    if (!ports) {
        return;
    }
    for (const std::string& port : NamesOf<std::list<tavroapi::VirtualPortRecord>>(
             {&*ports}, [](const tavroapi::VirtualPortRecord& record) { return record.portWwn; })) {
        const tavroapi::VirtualPortQuery query{.portWwn = port, .physicalPort = key};
        recorder.Ask<OperationCode::ListVirtualPortTargets>(key, query);
        recorder.Ask<OperationCode::ListVirtualPortLuns>(key, query);
    }
}

void AskFunction(CallRecorder& recorder, const CapturedFunction& function) {
    AskAnyFunction(recorder, function.key);
    if (!function.address.empty() && function.address != function.key) {
        AskAnyFunction(recorder, function.address);
    }
    if (!function.type) {
        return;
    }
    switch (*function.type) {
        case tavroapi::EthernetFunction:
            AskEthernet(recorder, function.key);
            break;
        case tavroapi::FcoeFunction:
            AskFcoe(recorder, function.key);
            break;
        default:  // every other type counts as iSCSI
            AskIscsi(recorder, function.key);
    }
}

}  // namespace

tavrolib::Json CaptureAnswers(LibraryCaller& library, tavrolib::Secrets secrets,
                              const CaptureProgress& progress) {
    CallRecorder recorder(library, secrets);
    const auto functions = AskInventory(recorder);
    std::size_t place = 0;
    for (const CapturedFunction& function : functions) {
        ++place;
        if (progress) {
            progress(place, functions.size(), function.key);
        }
        AskFunction(recorder, function);
    }
    recorder.Ask<OperationCode::ReadInitiator>({});
    return recorder.TakeAnswers();
}

}  // namespace tavrohost
