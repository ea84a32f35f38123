// What is asked of a library, and in which cases.
#include "twin/capture/walk.h"

#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <set>

#include "mgmt/library.h"
#include "tavroapi/iscsi_storage_records.h"
#include "twin/capture/loaded_library.h"
#include "unit/twin/capture/captured_twin.h"

namespace tavrohost_test {
namespace {

using tavroapi::OperationCode;
using tavrolib::Call;
using tavrolib::EntryPoint;
using tavrolib::FilledBy;
using tavrolib::Json;

constexpr const char* PortMac = "02-00-5E-00-00-01";

// A library with one iSCSI function, whose targets and sessions a test chooses.
class IscsiLibrary : public tavrohost::LibraryCaller {
  public:
    std::vector<std::string> targets;
    std::map<std::string, std::set<std::uint32_t>> sessions;
    std::string activeSessions = "0";
    std::map<std::uint32_t, int> counts;  // of the operations

    std::optional<std::uint32_t> Perform(const Call& call) override {
        if (call.entryPoint == EntryPoint::GetDiscoveredAdapters) {
            FilledBy<EntryPoint::GetDiscoveredAdapters>(call) = {{"A", 0, {"Port 1", "Port 1"}}};
            return 0;
        }
        if (call.entryPoint == EntryPoint::GetPortWWNs) {
            auto& functions = FilledBy<EntryPoint::GetPortWWNs>(call);
            functions.addresses = {{PortMac, PortMac, 0}, {"02:00:5e:00:00:01", PortMac, 0}};
            functions.identities = {{PortMac, 2, ""}, {"02:00:5e:00:00:01", 2, ""}};
            return 0;
        }
        if (call.entryPoint != EntryPoint::DoOperation) {
            return 1;
        }
        ++counts[*call.operation];
        switch (static_cast<OperationCode>(*call.operation)) {
            case OperationCode::ReadIscsiPort:
                static_cast<tavroapi::IscsiPortRecord*>(call.output)
                    ->texts[tavroapi::iscsi_port::ActiveSessions] = activeSessions;
                return 0;
            case OperationCode::ListTargets:
            case OperationCode::ListActiveTargets:
                List(*static_cast<std::list<tavroapi::TargetRecord>*>(call.output));
                return 0;
            case OperationCode::ReadSession:
                return Read(*static_cast<tavroapi::SessionRecord*>(call.output));
            default:
                return 1;
        }
    }

    std::optional<tavroapi::ErrorRecord> LastError() override { return std::nullopt; }

  private:
    void List(std::list<tavroapi::TargetRecord>& records) const {
        for (const std::string& target : targets) {
            records.emplace_back().name = target;
        }
    }

    std::uint32_t Read(tavroapi::SessionRecord& record) {
        const auto& open = sessions[record.texts[0]];
        const auto wanted = static_cast<std::uint32_t>(std::stoul(record.texts[1]));
        if (open.empty() || (wanted != 0 && !open.contains(wanted))) {
            return 5;
        }
        record.texts[1] = std::to_string(wanted == 0 ? *open.begin() : wanted);
        return 0;
    }
};

// The inputs of the operation's answers, target and number of each.
std::vector<std::string> SessionsIn(const Json& answers) {
    std::vector<std::string> sessions;
    for (const Json& answer : answers) {
        if (answer.value("operation", 0) == 17) {
            sessions.push_back(answer["input"][0].get<std::string>() + ' ' +
                               answer["input"][1].get<std::string>() + ' ' +
                               std::to_string(answer["status"].get<int>()));
        }
    }
    return sessions;
}

TEST(CaptureWalk, AsksEachCallOnce) {
    IscsiLibrary library;
    library.targets = {"a", "a", "b"};
    AnswersOf(library);
    for (const auto& [operation, count] : library.counts) {
        const bool isOfTargets = operation == 10 || operation == 14 || operation == 17;
        EXPECT_EQ(count, isOfTargets ? 2 : 1) << operation;
    }
}

TEST(CaptureWalk, LooksForSessionsUntilAllAreFound) {
    IscsiLibrary library;
    library.targets = {"a", "b"};
    library.sessions = {{"a", {3, 7}}, {"b", {9}}};
    library.activeSessions = "3";
    EXPECT_EQ(SessionsIn(AnswersOf(library)),
              (std::vector<std::string>{"a 0 0", "a 3 0", "b 0 0", "b 9 0", "a 7 0"}));
    // The first ones, the same by number, and the numbers from 1 to 7 of both targets but for those
    // that were read: session 3, and the last one, where the third session was found before.
    EXPECT_EQ(library.counts[17], 4 + 2 * 6 + 1 - 1);
}

TEST(CaptureWalk, KeepsRefusalsOfSessionsButNoGuesses) {
    IscsiLibrary library;
    library.targets = {"a"};
    library.activeSessions = "300";
    EXPECT_EQ(SessionsIn(AnswersOf(library)), (std::vector<std::string>{"a 0 5"}));
    EXPECT_EQ(library.counts[17], 1 + 256);
}

TEST(CaptureWalk, GuessesNothingWhereThePortTellsNoNumber) {
    IscsiLibrary library;
    library.targets = {"a"};
    library.activeSessions = "many";
    AnswersOf(library);
    EXPECT_EQ(library.counts[17], 1);
}

TEST(CaptureWalk, ListsManyTargetsButAsksForSome) {
    IscsiLibrary library;
    for (int i = 0; i < 5000; ++i) {
        library.targets.push_back("iqn.2015-01.com.example:" + std::to_string(i));
    }
    const Json answers = AnswersOf(library);
    EXPECT_EQ(library.counts[10], static_cast<int>(tavrohost::MostTargets));
    const tavrosim::Host host = tavrohost::CaptureFrom(answers).host;
    EXPECT_EQ(host.iscsiTargets.size(), tavrohost::MostTargets);
    EXPECT_LT(tavrosim::TextFromHost(host).size(), std::size_t{64} << 20U);
}

TEST(CaptureWalk, TellsItsProgress) {
    IscsiLibrary library;
    std::vector<std::string> told;
    tavrohost::CaptureAnswers(
        library, tavrolib::Secrets::LeftOut,
        [&told](std::size_t place, std::size_t count, const std::string& key) {
            told.push_back(std::to_string(place) + "/" + std::to_string(count) + " " + key);
        });
    EXPECT_EQ(told, (std::vector<std::string>{"1/2 02-00-5E-00-00-01", "2/2 02:00:5e:00:00:01"}));
}

// ---- Loaded libraries --------------------------------------------------------------------------

std::uint32_t ThrowInsteadOfName(std::string* /*name*/) {
    throw 5;
}

std::uint32_t RefuseOperation(std::uint32_t operation, std::string* request, void* /*input*/,
                              void* /*output*/) {
    *request = "changed";
    return operation;
}

std::uint32_t TellError(tavroapi::ErrorRecord* error) {
    error->message = L"No.";
    return 0;
}

void* FindFake(const std::string_view name) {
    if (name == tavroapi::GetHostNameEntry::Name) {
        return reinterpret_cast<void*>(&ThrowInsteadOfName);
    }
    if (name == tavroapi::DoOperationEntry::Name) {
        return reinterpret_cast<void*>(&RefuseOperation);
    }
    return name == tavroapi::GetLastErrorMessageEntry::Name ? reinterpret_cast<void*>(&TellError)
                                                            : nullptr;
}

TEST(LoadedLibrary, SurvivesWhatALibraryLacksAndThrows) {
    tavro::UseLibrary({.failureReason = {}, .find = FindFake});
    tavrohost::LoadedLibrary library;
    const Json answers = AnswersOf(library);
    tavro::UseLibrary(
        {.failureReason = L"none", .find = [](const char*) -> void* { return nullptr; }});
    ASSERT_EQ(answers.size(), 1U);  // of the initiator; there is nothing else to ask
    EXPECT_EQ(answers[0]["operation"], 30);
    EXPECT_EQ(answers[0]["request"], "");
    EXPECT_EQ(answers[0]["status"], 30);
    EXPECT_EQ(answers[0]["error"]["message"], "No.");
}

}  // namespace
}  // namespace tavrohost_test
