#include "fuzz/played_run.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <clocale>
#include <deque>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <random>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "console/console.h"
#include "fuzz/json_mutation.h"
#include "fuzz/require.h"
#include "library/session/session.h"
#include "mgmt/library.h"
#include "program.h"
#include "simulator/host/host_file.h"
#include "simulator/messages/error_texts.h"
#include "simulator/model/serve.h"

namespace tavro_fuzz {
namespace {

namespace console = tavro::console;
using tavrolib::Call;
using tavrolib::Outcome;

// What one run has to do with its library.
struct Stage {
    tavrosim::Host& host;
    const PlayedRun& run;
    PlayedResult result;
    std::size_t nextTreatment = 0;
    std::size_t initialized = 0;
    std::size_t uninitialized = 0;

    char NextTreatment() {
        return nextTreatment < run.treatments.size() ? run.treatments[nextTreatment++] : '.';
    }
};

Stage* stage = nullptr;

struct ToldMessage {
    std::uint32_t number;
    std::wstring text;
};
std::deque<ToldMessage> told;  // the last ones

constexpr std::uint32_t Statuses[] = {1, 5, 9, 202, 32768, 36871, 36887, 36900, 0xFFFFFFFF};

Outcome Refusal(std::size_t choice) {
    // Not every library says why.
    if (choice % 4 == 0) {
        Outcome outcome;
        outcome.status = Statuses[choice % std::size(Statuses)];
        return outcome;
    }
    return tavrosim::Refused(Statuses[choice % std::size(Statuses)],
                             L"The host file cannot be used.", L"Correct the script.",
                             L"of a fuzzer");
}

// A library that plays the host of the stage.
class Provider : public tavrolib::Provider {
  public:
    std::string EnvironmentPrefix() const override { return "TAVRO_FUZZ_"; }
    std::wstring Description() const override { return L"Fuzzer"; }
    Outcome Open() override { return tavrolib::Done(); }

    Outcome Serve(const Call& call) override {
        const Outcome outcome = Treat(call, stage->NextTreatment());
        stage->result.calls.push_back({call.operation.value_or(0), outcome.status});
        return outcome;
    }

    std::optional<Outcome> Intercept(const Call& call) override {
        tavrosim::Script* const script = stage->run.script;
        if (script == nullptr) {
            return std::nullopt;
        }
        try {
            if (auto answer = script->Take(call)) {
                return answer;
            }
        } catch (const tavrolib::ShapeError&) {
            return Refusal(1);
        }
        return script->HasModel() ? std::nullopt : std::optional(tavrolib::Done());
    }

  private:
    static Outcome Treat(const Call& call, char treatment) {
        const std::size_t place = stage->nextTreatment;
        switch (treatment) {
            case 'f':
                return Refusal(place);
            case 'u':
                return tavrolib::Done();
            case 'x':
                throw std::runtime_error("the library\nhas failed");
            case 'm':
                return Mutated(call, static_cast<std::uint32_t>(place));
            case 'c':
                return WithCompletionCode(call, static_cast<std::int64_t>(place % 7) - 1);
            default:
                return Model(call);
        }
    }

    static Outcome Model(const Call& call) {
        tavrosim::Host& host = stage->host;
        if (!ChangesHost(host, call)) {
            return ServeReading(host, call);
        }
        tavrosim::Host changed = host;
        Outcome outcome = ServeCall(changed, call);
        if (outcome.IsDone()) {
            host = std::move(changed);
            stage->result.changedHost = true;
        }
        return outcome;
    }

    static Outcome Mutated(const Call& call, std::uint32_t seed) {
        Outcome outcome = Model(call);
        const tavrolib::RecordType* const type = call.OutputType();
        if (type != nullptr && type->fill != nullptr && call.output != nullptr) {
            std::mt19937 random(seed);
            tavrolib::Json record = type->toJson(call.output, tavrolib::Secrets::Shown);
            for (std::size_t count = 1 + seed % 5; count > 0; --count) {
                MutateJsonValues(record, random);
            }
            try {
                type->fill(record, call.output, {});
            } catch (const tavrolib::ShapeError&) {
                return outcome;  // a number that the record cannot take
            }
        }
        return outcome;
    }

    static Outcome WithCompletionCode(const Call& call, std::int64_t code) {
        Outcome outcome = Model(call);
        const tavrolib::RecordType* const type = call.InputType();
        if (type != nullptr && type->setCompletionCode != nullptr && call.input != nullptr) {
            type->setCompletionCode(call.input, code);
        }
        return outcome;
    }
};

tavrolib::Session& TheSession() {
    static tavrolib::Session session(
        [] { return std::unique_ptr<tavrolib::Provider>(std::make_unique<Provider>()); });
    return session;
}

// ---- The entry points -------------------------------------------------------------------------

struct EntryPoint {
    std::string_view name;
    void* function;
};

template <class Entry>
EntryPoint As(typename Entry::Function* function) {
    return {Entry::Name, reinterpret_cast<void*>(function)};
}

const EntryPoint EntryPoints[] = {
    As<tavroapi::InitializeEntry>([](std::uint32_t debugFlag, std::wstring* locale) {
        const std::uint32_t status = TheSession().Initialize(debugFlag, locale);
        stage->initialized += status == 0 ? 1 : 0;
        return status;
    }),
    As<tavroapi::UninitializeEntry>([] {
        ++stage->uninitialized;
        return TheSession().Uninitialize();
    }),
    As<tavroapi::DoOperationEntry>(
        [](std::uint32_t operation, std::string* request, void* input, void* output) {
            return TheSession().DoOperation(operation, request, input, output);
        }),
    As<tavroapi::GetLocalizeMessageEntry>([](std::uint32_t number, std::wstring* text) {
        constexpr std::size_t KeptMessages = 8;
        const std::uint32_t status = TheSession().GetLocalizeMessage(number, text);
        told.push_front({number, *text});
        told.resize(std::min(told.size(), KeptMessages));
        return status;
    }),
    As<tavroapi::GetLastErrorMessageEntry>(
        [](tavroapi::ErrorRecord* error) { return TheSession().GetLastErrorMessage(error); }),
    As<tavroapi::GetHostNameEntry>(
        [](std::string* name) { return TheSession().GetHostName(name); }),
    As<tavroapi::GetDiscoveredAdaptersEntry>([](std::list<tavroapi::AdapterRecord>* adapters) {
        return TheSession().GetDiscoveredAdapters(adapters);
    }),
    As<tavroapi::GetPortWWNsEntry>([](std::string* adapter, std::string* port,
                                      std::list<tavroapi::FunctionAddress>* addresses,
                                      std::list<tavroapi::FunctionIdentity>* identities) {
        return TheSession().GetPortWWNs(adapter, port, addresses, identities);
    }),
    As<tavroapi::GetPartitionStateEntry>([](std::string* port, std::uint32_t* state) {
        return TheSession().GetPartitionState(port, state);
    }),
    As<tavroapi::GetAdapterTypeEntry>(
        [](std::string* mac, std::string* type) { return TheSession().GetAdapterType(mac, type); }),
    As<tavroapi::GetAdapterPortNumberEntry>([](std::string* mac, std::uint32_t* ports) {
        return TheSession().GetAdapterPortNumber(mac, ports);
    }),
};

void* FindEntryPoint(const char* name) {
    const auto* const found =
        std::ranges::find(EntryPoints, std::string_view(name), &EntryPoint::name);
    const auto index = static_cast<std::size_t>(found - std::begin(EntryPoints));
    return found == std::end(EntryPoints) || stage->run.missingEntryPoint == index
               ? nullptr
               : found->function;
}

// ---- Output and input -------------------------------------------------------------------------

// The console of a run. Somebody who types sends line by line.
class Typing {
  public:
    explicit Typing(Stage& theStage) : stage_(theStage), typed_(theStage.run.typed) {}

    console::Device Device() {
        console::Device device;
        device.writeBytes = [this](std::string_view bytes) { return Write(bytes); };
        device.readBytes = [this](char* buffer, std::size_t size) { return Read(buffer, size); };
        device.isTerminal = stage_.run.isTerminal;
        device.blockSize = stage_.run.blockSize;
        if (stage_.run.device) {
            device = stage_.run.device(std::move(device));
        }
        device.asked = [this, next = std::move(device.asked)](std::wstring_view line,
                                                              bool isSecret) {
            NoteQuestion();
            if (next) {
                next(line, isSecret);
            }
        };
        device.refused = [this, next = std::move(device.refused)] {
            stage_.result.lastQuestion = stage_.result.output;
            if (next) {
                next();
            }
        };
        return device;
    }

  private:
    bool Write(std::string_view bytes) {
        constexpr std::size_t MostOutput = 1 << 20;
        const std::size_t most = stage_.run.mostOutput == 0 ? MostOutput : stage_.run.mostOutput;
        if (stage_.result.output.size() + bytes.size() > most) {
            stage_.result.wasEnded = true;
            return false;
        }
        stage_.result.output += bytes;
        return true;
    }

    std::size_t Read(char* buffer, std::size_t size) {
        const std::string_view left = std::string_view(typed_).substr(read_);
        const std::size_t line = std::min(left.find('\n'), left.size() - 1) + 1;
        const std::size_t count = left.substr(0, line).copy(buffer, size);
        read_ += count;
        ends_ += count == 0 ? 1 : 0;
        return count;
    }

    // Questions without end go on for ever where nobody answers.
    void NoteQuestion() {
        constexpr std::size_t MostEnds = 20;
        constexpr std::size_t MostQuestions = 2000;
        stage_.result.lastQuestion = stage_.result.output;
        if (ends_ > MostEnds || ++questions_ > MostQuestions) {
            stage_.result.wasEnded = true;
            throw console::CommandAbandoned("nobody answers any more");
        }
    }

    Stage& stage_;
    std::string typed_;
    std::size_t read_ = 0;
    std::size_t ends_ = 0;
    std::size_t questions_ = 0;
};

// ---- What must always hold --------------------------------------------------------------------

// Whether no control character acts on a terminal but line ends, tabs and the backspaces of a
// secret that is typed.
bool IsHarmless(std::string_view output) {
    return std::ranges::none_of(output, [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return (byte < 0x20 && byte != '\n' && byte != '\t' && byte != '\b') || byte == 0x7F;
    });
}

void RequireWholeRun(const Stage& played) {
    const PlayedResult& result = played.result;
    Require(played.initialized <= 1);
    if (!played.run.missingEntryPoint) {
        Require(played.initialized == played.uninitialized);
    }
    const std::wstring& failure = result.failure;
    Require(failure.empty() || failure.find(L'\n') == failure.size() - 1);
    const std::string& output = result.output;
    if (failure.empty() && !result.wasEnded) {
        Require(output.empty() || output.ends_with('\n') || output == result.lastQuestion);
    }
    if (played.run.isTerminal) {
        Require(IsHarmless(output));
    }
}

// The folder that the process works in now and then; it goes with the process.
class OwnFolder {
  public:
    OwnFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "fuzzed.XXXXXX").string();
        Require(::mkdtemp(name.data()) != nullptr);
        path_ = name;
    }
    ~OwnFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    OwnFolder(const OwnFolder&) = delete;
    OwnFolder& operator=(const OwnFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }

  private:
    std::filesystem::path path_;
};

void Prepare() {
    Require(::setenv("LC_ALL", "C.UTF-8", 1) == 0);
    tavro::UseLibrary({.failureReason = {}, .find = FindEntryPoint});
}

}  // namespace

PlayedResult Play(const PlayedRun& run, tavrosim::Host& host) {
    [[maybe_unused]] static const bool isPrepared = (Prepare(), true);
    const InOwnFolder inFolder;
    Stage played{.host = host, .run = run, .result = {}};
    stage = &played;
    told.clear();
    {
        Typing typing(played);
        const console::Redirect redirect(typing.Device());
        std::vector<const char*> values{"tavrocli"};
        for (const std::string& argument : run.arguments) {
            values.push_back(argument.c_str());
        }
        values.push_back(nullptr);
        played.result.failure =
            tavro::RunCommandLine(static_cast<int>(values.size() - 1), values.data());
    }
    stage = nullptr;
    std::error_code ignored;
    std::filesystem::resize_file("tavrocli.log", 0, ignored);
    RequireWholeRun(played);
    return std::move(played.result);
}

const tavrosim::Host& BuiltInHost() {
    static const tavrosim::Host Host = tavrosim::DefaultHost();
    return Host;
}

void RequireFile(const tavrosim::Host& host) {
    const std::string text = tavrosim::TextFromHost(host);
    Require(tavrosim::TextFromHost(tavrosim::HostFromText(text)) == text);
}

std::optional<std::uint32_t> MessageIn(std::wstring_view line) {
    const auto found = std::ranges::find_if(told, [line](const ToldMessage& message) {
        const std::wstring_view text = message.text;
        const std::wstring_view last = text.substr(text.find_last_of(L'\n') + 1);
        return !last.empty() && line.find(last) != std::wstring_view::npos;
    });
    return found == told.end() ? std::nullopt : std::optional(found->number);
}

InOwnFolder::InOwnFolder() : former_(::open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    static const OwnFolder folder;
    Require(former_ != -1 && ::chdir(folder.Path().c_str()) == 0);
}

InOwnFolder::~InOwnFolder() {
    Require(::fchdir(former_) == 0);
    ::close(former_);
}

}  // namespace tavro_fuzz
