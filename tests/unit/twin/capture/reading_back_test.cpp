// A twin tells what was captured, whatever the library was that told it.
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <utility>

#include "unit/twin/capture/captured_twin.h"
#include "unit/twin/dice.h"
#include "unit/twin/hosts_to_try.h"
#include "unit/twin/random_host.h"

namespace tavrohost_test {
namespace {

using tavrolib::Call;
using tavrolib::Json;

constexpr std::uint32_t RandomHosts = HostsToTry(200);

// What identifies the call that an answer is for.
std::string CallOf(Json answer) {
    for (const char* const told : {"status", "output", "error"}) {
        answer.erase(told);
    }
    return answer.dump();
}

// Each captured answer is told again. The twin may tell of more: a session of which only was told
// that there is one is found by its number.
void ExpectAllTold(const Json& captured, const Json& told) {
    std::map<std::string, const Json*> answers;
    for (const Json& answer : told) {
        answers.emplace(CallOf(answer), &answer);
    }
    for (const Json& answer : captured) {
        const auto found = answers.find(CallOf(answer));
        ASSERT_NE(found, answers.end()) << "not asked again: " << answer.dump();
        ASSERT_TRUE(*found->second == answer)
            << "captured " << answer.dump() << "\nbut told " << found->second->dump();
    }
}

// Captures the library and its twin. Each call of the first capture is made of the twin too, since
// the twin tells the same identifiers.
void ExpectReadBack(tavrohost::LibraryCaller& library) {
    const Json captured = AnswersOf(library);
    tavrosim::Host twin = TwinOf(captured);
    ExpectAllTold(captured, AnswersOf(twin));
}

TEST(ReadingBack, TellsWhatRandomHostsTold) {
    for (std::uint32_t seed = 0; seed < RandomHosts && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        tavrosim::Host host = RandomHost(seed, Oddness::Anything);
        HostLibrary library(host);
        ExpectReadBack(library);
    }
}

TEST(ReadingBack, TellsTheBuiltInHost) {
    tavrosim::Host host = tavrosim::DefaultHost();
    HostLibrary library(host);
    const Json captured = AnswersOf(library);
    EXPECT_GT(captured.size(), 100U);
    ExpectReadBack(library);
}

// ---- Libraries that are not as they should be --------------------------------------------------

// Changes what another library does with some of the calls, the same whenever a call is repeated.
class OddLibrary : public tavrohost::LibraryCaller {
  public:
    // `odd` gets the call after it was served, its status, and dice.
    using Odd = std::function<std::optional<std::uint32_t>(const Call&, std::uint32_t, Dice&)>;

    OddLibrary(tavrohost::LibraryCaller& inner, std::uint32_t seed, Odd odd)
        : inner_(inner), seed_(seed), odd_(std::move(odd)) {}

    std::optional<std::uint32_t> Perform(const Call& call) override {
        const auto status = inner_.Perform(call);
        const std::string name = call.request.value_or("") + call.port.value_or("") +
                                 std::to_string(call.operation.value_or(0));
        Dice dice(seed_ + static_cast<std::uint32_t>(std::hash<std::string>()(name)));
        error_.reset();
        const auto odd = odd_(call, status.value_or(0), dice);
        if (odd && *odd != status) {
            error_.emplace().code = *odd;
            error_->message = L"odd\n\x1B caf\u00E9 " + std::to_wstring(dice.Below(100));
        } else {
            error_ = inner_.LastError();
        }
        return odd;
    }

    std::optional<tavroapi::ErrorRecord> LastError() override { return error_; }

  private:
    tavrohost::LibraryCaller& inner_;
    std::uint32_t seed_;
    Odd odd_;
    std::optional<tavroapi::ErrorRecord> error_;
};

std::string OddText(const std::string& text, Dice& dice) {
    switch (dice.Below(6)) {
        case 0:
            return {};
        case 1:
            return text + "\x1B[31m";
        case 2:
            return "\uF7FF\uF7E9" + text;
        case 3:
            return std::string(300, 'x');
        case 4:
            return "4294967296";
        default:
            return "\u65E5\u672C \" \\ \n";
    }
}

// Replaces some of the texts that stand in a record's JSON, and repeats elements of arrays.
void Disturb(Json& json, Dice& dice) {
    if (json.is_string() && dice.Chance(10)) {
        json = OddText(json.get<std::string>(), dice);
    } else if (json.is_number() && dice.Chance(5)) {
        json = dice.Below(9);
    } else if (json.is_array()) {
        for (Json& element : json) {
            Disturb(element, dice);
        }
        if (!json.empty() && dice.Chance(30)) {
            const Json repeated = json[dice.Below(static_cast<std::uint32_t>(json.size()))];
            json.push_back(repeated);
        }
    }
}

void ExpectOddReadBack(const OddLibrary::Odd& odd) {
    for (std::uint32_t seed = 0; seed < RandomHosts / 8 && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        tavrosim::Host host = RandomHost(seed, Oddness::Anything);
        HostLibrary library(host);
        OddLibrary oddLibrary(library, seed, odd);
        ExpectReadBack(oddLibrary);
    }
}

TEST(ReadingBack, TellsRefusalsOfSomeCalls) {
    ExpectOddReadBack([](const Call&, std::uint32_t status, Dice& dice) {
        return dice.Chance(20) ? dice.From(1, 70000) : status;
    });
}

TEST(ReadingBack, TellsRefusalsOfAllCalls) {
    ExpectOddReadBack([](const Call&, std::uint32_t, Dice&) { return std::optional(5U); });
}

TEST(ReadingBack, LeavesOutCallsThatDoNotReturn) {
    tavrosim::Host host = tavrosim::DefaultHost();
    HostLibrary library(host);
    OddLibrary silent(library, 1, [](const Call&, std::uint32_t, Dice&) { return std::nullopt; });
    const Json captured = AnswersOf(silent);
    EXPECT_TRUE(captured.empty());
    const tavrosim::Host twin = TwinOf(captured);
    EXPECT_TRUE(twin.adapters.empty());
}

// Lists and texts; a list that gets too many elements for its record keeps what it had.
TEST(ReadingBack, TellsOddTextsAndRepeatedElements) {
    std::size_t disturbed = 0;
    ExpectOddReadBack([&](const Call& call, std::uint32_t status, Dice& dice) {
        Json output = call.OutputType()->toJson(call.output, tavrolib::Secrets::Shown);
        Disturb(output, dice);
        try {
            call.OutputType()->check(output, {});
            call.OutputType()->fill(output, call.output, {});
            ++disturbed;
        } catch (const tavrolib::ShapeError&) {
        }
        return status;
    });
    EXPECT_GT(disturbed, 300U);
}

}  // namespace
}  // namespace tavrohost_test
