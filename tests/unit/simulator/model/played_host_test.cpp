// A host that is played from its own answers reads as the host itself, before and after changes.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <nlohmann/json.hpp>
#include <random>
#include <utility>
#include <vector>

#include "library/text/text.h"
#include "simulator/host/host_file.h"
#include "simulator/host/lookup.h"
#include "simulator/host/restart.h"
#include "simulator/model/model.h"
#include "simulator/model/serve.h"
#include "tavroapi/described_operations.h"

namespace tavrosim {
namespace {

using tavroapi::OperationCode;
using tavrolib::Call;
using tavrolib::EntryPoint;
using tavrolib::Json;
using tavrolib::Secrets;

// What a call reads, as an answer of a host file.
Json AnswerOf(const Host& host, const Call& call) {
    Json answer = Json::object();
    answer["call"] = RowOf(call.entryPoint).name;
    if (call.operation) {
        answer["operation"] = *call.operation;
    }
    if (call.request) {
        answer["request"] = *call.request;
    }
    if (call.adapter) {
        answer["adapter"] = *call.adapter;
        answer["port"] = *call.port;
    }
    if (call.InputType() != nullptr) {
        answer["input"] = call.InputType()->toJson(call.input, Secrets::Shown);
    }
    const Outcome outcome = ServeReading(host, call);
    answer["status"] = outcome.status;
    answer["output"] = call.OutputType()->toJson(call.output, Secrets::Shown);
    if (outcome.error) {
        answer["error"] = {{"code", outcome.error->code},
                           {"message", tavrolib::Utf8FromWide(outcome.error->message)},
                           {"action", tavrolib::Utf8FromWide(outcome.error->action)},
                           {"additional", tavrolib::Utf8FromWide(outcome.error->additional)},
                           {"details", tavrolib::Utf8FromWide(outcome.error->details)}};
    }
    return answer;
}

// What calls can be about: the functions of each adapter's first port, targets and virtual ports,
// and what the host does not have.
struct Subjects {
    std::vector<std::string> requests{"", "02-00-5E-FF-FF-FF"};
    std::vector<std::string> names{"unknown"};

    explicit Subjects(const Host& host) {
        for (const Adapter& adapter : host.adapters) {
            for (const Function& function : adapter.ports.front().functions) {
                requests.push_back(KeyOf(function));
                if (function.fcoe && !function.fcoe->virtualPorts.empty()) {
                    names.push_back(function.fcoe->virtualPorts.front().portWwn);
                }
            }
        }
        names.push_back(host.iscsiTargets.front().name);
        names.push_back(host.fcoeFabric.targets.front().portWwn);
    }
};

// Calls `use(input)` with every input that an operation of that type can have here.
template <class Input>
void ForEachInput(const Subjects& subjects, const std::string& request,
                  const std::function<void(void*)>& use) {
    if constexpr (std::same_as<Input, tavroapi::NoRecord>) {
        use(nullptr);
    } else if constexpr (std::integral<Input>) {
        Input number = 0;
        use(&number);
    } else {
        for (std::string name : subjects.names) {
            if constexpr (std::same_as<Input, tavroapi::CharacterString>) {
                use(name.data());
            } else if constexpr (std::same_as<Input, tavroapi::SessionRecord>) {
                for (const char* const id : {"0", "1"}) {
                    Input session;
                    session.texts[0] = name;
                    session.texts[1] = id;
                    use(&session);
                }
            } else {
                static_assert(std::same_as<Input, tavroapi::VirtualPortQuery>);
                Input query{name, request};
                use(&query);
            }
        }
    }
}

template <OperationCode Code>
void ReadWith(const Host& host, const Subjects& subjects, Json& answers) {
    using Output = tavroapi::OutputOf<Code>;
    const OperationModel* const model = FindModel(static_cast<std::uint32_t>(Code));
    if constexpr (!std::same_as<Output, tavroapi::NoRecord> &&
                  Code != OperationCode::PingFromIscsiPort &&
                  Code != OperationCode::PingFromFcoePort) {
        if (model->read == nullptr && model->tellCounters == nullptr) {
            return;
        }
        for (const std::string& request : subjects.requests) {
            ForEachInput<tavroapi::InputOf<Code>>(subjects, request, [&](void* input) {
                Output output{};
                Call call;
                call.entryPoint = EntryPoint::DoOperation;
                call.operation = static_cast<std::uint32_t>(Code);
                call.described = tavrolib::FindOperation(*call.operation);
                call.request = request;
                call.input = input;
                call.output = &output;
                answers.push_back(AnswerOf(host, call));
            });
        }
    }
}

template <OperationCode... Codes>
void ReadWithAll(tavroapi::OperationList<Codes...>, const Host& host, const Subjects& subjects,
                 Json& answers) {
    (ReadWith<Codes>(host, subjects, answers), ...);
}

template <EntryPoint Entry>
void Ask(const Host& host, Call call, Json& answers) {
    tavrolib::FilledType<Entry> filled{};
    call.entryPoint = Entry;
    call.output = &filled;
    answers.push_back(AnswerOf(host, call));
}

// Everything that can be read of a host.
Json ReadEverything(const Host& host, const Subjects& subjects) {
    Json answers = Json::array();
    Ask<EntryPoint::GetHostName>(host, {}, answers);
    Ask<EntryPoint::GetDiscoveredAdapters>(host, {}, answers);
    for (const Adapter& adapter : host.adapters) {
        for (const char* const port : {"Port 1", "Port 2", "Port 9"}) {
            Call call;
            call.adapter = adapter.name;
            call.port = port;
            Ask<EntryPoint::GetPortWWNs>(host, call, answers);
        }
    }
    for (const std::string& request : subjects.requests) {
        Call call;
        call.request = request;
        Ask<EntryPoint::GetPartitionState>(host, call, answers);
        Ask<EntryPoint::GetAdapterType>(host, call, answers);
        Ask<EntryPoint::GetAdapterPortNumber>(host, call, answers);
    }
    ReadWithAll(tavroapi::DescribedOperations{}, host, subjects, answers);
    return answers;
}

// No capture asks for an export, which is answered as a reading of the same settings is.
Json WithoutExports(Json answers) {
    constexpr auto Export = static_cast<std::uint32_t>(OperationCode::ExportAdapterSettings);
    Json kept = Json::array();
    for (Json& answer : answers) {
        if (answer.value("operation", 0U) != Export) {
            kept.push_back(std::move(answer));
        }
    }
    return kept;
}

// Places where the host's calls are answered: the host, and its twin, which plays its answers.
class PlayedHost : public testing::Test {
  protected:
    PlayedHost() {
        IscsiSession& session = FunctionOf<IscsiPart>(IscsiMac).storage.sessions.emplace_back();
        session.id = 1;
        session.target = "iqn.2015-01.com.example:storage.disks";
        session.portal.address = "198.51.100.20";
        host.isnsServers = {"192.0.2.60", "192.0.2.61"};
        twin = CapturedHost(host, WithoutExports(ReadEverything(host, Subjects(host))));
    }

    template <class Part>
    Part& FunctionOf(const char* identifier) {
        return PartOf<Part>(*FindFunctionWith<Part>(host, identifier).function);
    }

    // Whether the host takes the change.
    template <OperationCode Code>
    static bool Perform(Host& changed, const std::string& request, void* input) {
        Call call;
        call.entryPoint = EntryPoint::DoOperation;
        call.operation = static_cast<std::uint32_t>(Code);
        call.described = tavrolib::FindOperation(*call.operation);
        call.request = request;
        call.input = input;
        return ChangesHost(changed, call) && ServeCall(changed, call).IsDone();
    }

    // Performs an operation on both.
    template <OperationCode Code>
    void Change(const std::string& request, const tavroapi::InputOf<Code>& wanted) {
        for (Host* const each : {&host, &twin}) {
            auto input = wanted;
            EXPECT_TRUE(Perform<Code>(*each, request, &input));
        }
    }

    void RestartBoth() {
        Restart(host);
        Restart(twin);
    }

    // Both tell the same of everything, but for the operation `except`.
    void ExpectAlike(std::uint32_t except = 0) const {
        const Json told = ReadEverything(host, Subjects(host));
        const Json played = ReadEverything(twin, Subjects(host));
        ASSERT_EQ(told.size(), played.size());
        for (std::size_t i = 0; i < told.size(); ++i) {
            if (told[i].value("operation", 0U) != except || except == 0) {
                EXPECT_EQ(told[i].dump(), played[i].dump());
            }
        }
    }

    static constexpr const char* EthernetMac = "02-00-5E-10-00-00";
    static constexpr const char* IscsiMac = "02-00-5E-10-00-02";
    static constexpr const char* FcoeWwn = "10:00:02:00:5E:10:00:04";
    static constexpr const char* FixedMac = "02-00-5E-30-00-00";

    Host host = DefaultHost();
    Host twin;
};

TEST_F(PlayedHost, ReadsAsTheHostItself) {
    const Json answers = ReadEverything(host, Subjects(host));
    EXPECT_GT(answers.size(), 300U);
    EXPECT_GT(std::count_if(answers.begin(), answers.end(),
                            [](const Json& answer) { return answer.at("status") == 0; }),
              80);
    ExpectAlike();
    EXPECT_EQ(ReadEverything(*twin.asCaptured, Subjects(host)), answers);
}

// Another text for every text of a record as JSON, and another number for every number that may be
// any; elements of lists are doubled.
Json Odd(const Json& json, std::mt19937& random, bool isList) {
    constexpr std::array OddTexts{"", "NA", "0", "odd \uf7e9", "\u65e5", "a \"b\"\t"};
    if (json.is_string()) {
        return OddTexts[random() % OddTexts.size()];
    }
    if (!json.is_array()) {
        return json;
    }
    Json odd = Json::array();
    for (const Json& element : json) {
        odd.push_back(Odd(element, random, false));
        if (isList && random() % 2 == 0) {
            odd.push_back(odd.back());
        }
    }
    return odd;
}

TEST_F(PlayedHost, ReadsWhateverWasCaptured) {
    std::mt19937 random(20260131);
    Json answers = WithoutExports(ReadEverything(host, Subjects(host)));
    for (Json& answer : answers) {
        const tavrolib::Operation* const operation =
            tavrolib::FindOperation(answer.value("operation", 0U));
        const bool isList = (operation != nullptr && operation->name.substr(0, 4) == "List") ||
                            answer.at("call") == "GetDiscoveredAdapters";
        answer["output"] = Odd(answer.at("output"), random, isList);
        answer.erase("error");
        answer["status"] = random() % 3 == 0 ? random() % 100 : 0;
        if (answer.at("status") != 0) {
            answer["error"] = {{"code", random()},
                               {"message", "m"},
                               {"action", ""},
                               {"additional", "x"},
                               {"details", "d"}};
        }
    }
    const Json played = WithoutExports(ReadEverything(CapturedHost(host, answers), Subjects(host)));
    ASSERT_EQ(played.size(), answers.size());
    for (std::size_t i = 0; i < played.size(); ++i) {
        EXPECT_EQ(played[i], answers[i]);
    }
}

TEST_F(PlayedHost, TakesIscsiChangesAsTheHostDoes) {
    tavroapi::TcpIpSettings settings;
    settings.dhcpEnabled = "No";
    settings.ipAddress = "192.0.2.99";
    settings.vlanId = "7";
    Change<OperationCode::SetIscsiTcpIp>(IscsiMac, settings);
    tavroapi::PortalRecord portal;
    portal.address = "198.51.100.21";
    portal.port = "3260";
    Change<OperationCode::AddPortal>(IscsiMac, portal);
    ExpectAlike();
    Change<OperationCode::RemovePortal>(IscsiMac, portal);
    tavroapi::InitiatorRecord initiator;
    initiator.name = "iqn.example:other";
    initiator.login.headerDigest = "CRC32C";
    Change<OperationCode::SetInitiator>("", initiator);
    tavroapi::IscsiBootConfig boot;
    boot.texts.fill("Disabled");
    Change<OperationCode::WriteIscsiBoot>(IscsiMac, boot);
    ExpectAlike();
}

// All but the counters of logins and logouts, which stand still on the twin.
TEST_F(PlayedHost, TakesLoginsAndLogoutsAsTheHostDoes) {
    constexpr auto Statistics = static_cast<std::uint32_t>(OperationCode::ReadIscsiStatistics);
    const IscsiSession session = FunctionOf<IscsiPart>(IscsiMac).storage.sessions.front();
    for (Host* const each : {&host, &twin}) {
        tavroapi::PlacedTargetLogin placed;
        placed.record.targetName = session.target;
        placed.record.portalAddress = session.portal.address;
        placed.record.portalPort = session.portal.port;
        EXPECT_TRUE(Perform<OperationCode::LogInToTarget>(*each, IscsiMac, &placed.record));
    }
    ExpectAlike(Statistics);
    Change<OperationCode::LogOutOfTarget>(IscsiMac, {session.target, {"1"}});
    ExpectAlike(Statistics);
    Change<OperationCode::LogOutOfTarget>(IscsiMac, {session.target, {"0"}});
    ExpectAlike(Statistics);
}

TEST_F(PlayedHost, TakesFcoeChangesAsTheHostDoes) {
    tavroapi::VirtualPortRequest port;
    port.portWwn = "20:01:02:00:5E:10:00:04";
    Change<OperationCode::CreateVirtualPorts>(FcoeWwn, {port});
    ExpectAlike();
    Change<OperationCode::DeleteVirtualPorts>(FcoeWwn, {port});
    tavroapi::FipConfig fip;
    fip.vlanId = "17";
    Change<OperationCode::WriteFip>(FcoeWwn, fip);
    tavroapi::DcbConfig dcb;
    dcb.state = "Disable";
    dcb.priorities = "3 4";
    Change<OperationCode::WriteDcbConfig>(FcoeWwn, dcb);
    tavroapi::FcoeBootConfig boot;
    boot.bootState = boot.secondSwitch = "Enabled";
    boot.targets[3] = {"20:00:02:00:5E:20:00:01", "1", "Enabled"};
    Change<OperationCode::WriteFcoeBoot>(FcoeWwn, boot);
    ExpectAlike();
}

TEST_F(PlayedHost, TakesEthernetChangesAsTheHostDoes) {
    tavroapi::AdapterSettings settings;
    settings.settings[1] = {0, "1 Gbps", {}, {}, "1"};
    settings.settings[10] = {0, "2048", {}, {}, "1"};
    settings.settings[0] = {0, "02-00-5E-00-00-01", {}, {}, "1"};
    Change<OperationCode::WriteAdapterSettings>(EthernetMac, settings);
    tavroapi::TcpIpSettings tcpIp;
    tcpIp.ipVersion = "1";
    tcpIp.dhcpEnabled = "No";
    tcpIp.ipAddress = "192.0.2.98";
    tcpIp.vlanId = "9";
    Change<OperationCode::SetEthernetTcpIp>(EthernetMac, tcpIp);
    ExpectAlike();
    RestartBoth();
    tcpIp.ipAddress = "192.0.2.97";
    tcpIp.vlanId = "0";
    Change<OperationCode::SetEthernetTcpIp>(FixedMac, tcpIp);
    ExpectAlike();
}

TEST_F(PlayedHost, TakesPartitionsAndPersonalitiesAsTheHostDoes) {
    for (Host* const each : {&host, &twin}) {
        each->adapters[0].partitions.emplace().completionCode = tavroapi::AppliedAtRestart;
        for (Port& port : each->adapters[0].ports) {
            port.resources.emplace().completionCode = tavroapi::AppliedAtRestart;
        }
    }
    tavroapi::PersonalitySetting personality{"2", 0};
    Change<OperationCode::WritePersonality>(IscsiMac, personality);
    ExpectAlike();
    RestartBoth();
    ExpectAlike();
    tavroapi::PartitionConfig config;
    config.mode = "2";
    config.flowControl.fill("1");
    for (std::size_t i = 0; i < config.functions.size(); ++i) {
        config.functions[i].personality = i < 4 ? "3" : i % 2 == 0 ? "5" : "9";
        config.functions[i].lowerLimit = "10";
        config.functions[i].upperLimit = "90";
    }
    Change<OperationCode::WritePartitions>(EthernetMac, config);
    RestartBoth();
    ExpectAlike();
    config.mode = "0";
    Change<OperationCode::WritePartitions>(EthernetMac, config);
    RestartBoth();
    ExpectAlike();
}

}  // namespace
}  // namespace tavrosim
