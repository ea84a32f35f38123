// A management library that has another one answer, and damages one of its answers. The
// environment tells which:
//   DAMAGING_LIBRARY  the file of the other one
//   DAMAGING_REPORT   a file. The line "end" and the number of the message that was fetched last
//                     are written to it when the process ends. Before that come lines of calls:
//                     ordinal, entry point, operation, message fetched last, what the answer holds
//                     (`Telling`); "-" is none. Without a fault there is one for each call,
//                     otherwise one for the damaged call, and for that which uninitializes.
//   DAMAGING_FAULT    the ordinal of a call, counted from 1, and what is done to it (`ParseFault`);
//                     empty for nothing
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <list>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

#include "exceptions.h"
#include "faults.h"
#include "platform/shared_library.h"
#include "tavroapi/described_operations.h"
#include "tavroapi/exported_functions.h"
#include "values.h"

namespace {

using misbehaving::Visitor;
using tavroapi::OperationCode;

std::string Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

// The other library, and what the process was told to do to its answers.
class Session {
  public:
    static Session& Current() {
        static Session session;
        return session;
    }

    ~Session() {
        if (report_ != nullptr) {
            std::fprintf(report_, "end %s\n", message_.c_str());
            std::fclose(report_);
        }
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // What is done to the next call.
    misbehaving::Fault Next() {
        ++count_;
        return count_ == damaged_ ? fault_ : misbehaving::Fault{};
    }

    void Report(std::string_view entry, const std::string& operation, const std::string& content) {
        const bool isWanted =
            damaged_ == 0 || count_ == damaged_ || entry == tavroapi::UninitializeEntry::Name;
        if (isWanted && report_ != nullptr) {
            std::fprintf(report_, "%zu %s %s %s %s\n", count_, entry.data(), operation.c_str(),
                         message_.c_str(), content.empty() ? "-" : content.c_str());
            std::fflush(report_);
        }
    }

    void NoteMessage(std::uint32_t number) { message_ = std::to_string(number); }

    template <class Entry>
    typename Entry::Function* Real() const {
        return library_.Resolve<typename Entry::Function>(Entry::Name);
    }

  private:
    Session()
        : library_(tavro::platform::SharedLibrary::LoadFrom(Variable("DAMAGING_LIBRARY"))),
          report_(std::fopen(Variable("DAMAGING_REPORT").c_str(), "w")) {
        if (!library_.IsLoaded()) {
            throw std::runtime_error("the library to damage cannot be loaded");
        }
        const std::string fault = Variable("DAMAGING_FAULT");
        if (!fault.empty()) {
            const std::size_t blank = fault.find(' ');
            damaged_ = std::stoul(fault.substr(0, blank));
            fault_ = misbehaving::ParseFault(fault.substr(blank + 1));
        }
    }

    tavro::platform::SharedLibrary library_;
    std::FILE* report_;
    std::size_t count_ = 0;
    std::size_t damaged_ = 0;
    misbehaving::Fault fault_;
    std::string message_ = "-";
};

// Shows the values of a call to a visitor.
using Walk = std::function<void(Visitor&)>;

// The values at these addresses, of which some may be null.
template <class... Values>
Walk WalkOver(Values*... values) {
    return [=](Visitor& visitor) {
        const auto show = [&](auto* value) {
            if (value != nullptr) {
                misbehaving::Walk(*value, visitor);
            }
        };
        (show(values), ...);
    };
}

// How a call is answered: by the other library, and then what the fault says.
struct Call {
    const char* entry;
    std::string operation = "-";
    Walk inputs = [](Visitor&) {};
    Walk outputs = [](Visitor&) {};
    std::function<void()> shorten = [] {};

    template <class Ask>
    std::uint32_t Answer(const Ask& ask) const {
        Session& session = Session::Current();
        const misbehaving::Fault fault = session.Next();
        std::uint32_t status = 0;
        if (fault.isForwarded) {
            status = ask(session);
        }
        misbehaving::Telling content;
        outputs(content);
        session.Report(entry, operation, content.Letters());
        misbehaving::Damaging damaging(fault.answer);
        outputs(damaging);
        misbehaving::Damaging writing(fault.inputs);
        inputs(writing);
        if (fault.isUneven) {
            shorten();
        }
        if (!fault.thrown.empty()) {
            misbehaving::Throw(fault.thrown, "the library");
        }
        return fault.status.value_or(status);
    }
};

// Has the other library's entry point asked.
template <class Entry, class... Arguments>
std::uint32_t Answer(const Call& call, Arguments... arguments) {
    return call.Answer([&](const Session& session) { return session.Real<Entry>()(arguments...); });
}

// ---- The records of operations
// ----------------------------------------------------------------------

template <class Record>
Walk WalkOverRecord(void* record) {
    if constexpr (std::is_same_v<Record, tavroapi::NoRecord>) {
        return [](Visitor&) {};
    } else if constexpr (std::is_same_v<Record, tavroapi::CharacterString>) {
        // It has no room for more than it holds.
        return [=](Visitor& visitor) {
            auto* const characters = static_cast<char*>(record);
            std::string text(characters);
            const std::size_t size = text.size();
            visitor.Text(text);
            text.resize(size);
            std::memcpy(characters, text.data(), size);
        };
    } else {
        return WalkOver(static_cast<Record*>(record));
    }
}

template <class Record>
Walk WalkOverCompletionCode(void* record) {
    if constexpr (tavroapi::RecordWithCompletionCode<Record>) {
        return WalkOver(&(static_cast<Record*>(record)->*Record::CompletionCode()));
    } else {
        return [](Visitor&) {};
    }
}

template <OperationCode Code>
bool Describe(std::uint32_t code, std::string* request, void* input, void* output, Call& call) {
    if (code != static_cast<std::uint32_t>(Code)) {
        return false;
    }
    using Input = tavroapi::InputOf<Code>;
    call.inputs = [walk = WalkOverRecord<Input>(input), request](Visitor& visitor) {
        visitor.Text(*request);
        walk(visitor);
    };
    call.outputs = [record = WalkOverRecord<tavroapi::OutputOf<Code>>(output),
                    completionCode = WalkOverCompletionCode<Input>(input)](Visitor& visitor) {
        record(visitor);
        completionCode(visitor);
    };
    return true;
}

template <OperationCode... Codes>
Call Described(tavroapi::OperationList<Codes...>, std::uint32_t code, std::string* request,
               void* input, void* output) {
    Call call{.entry = tavroapi::DoOperationEntry::Name, .operation = std::to_string(code)};
    if (!(Describe<Codes>(code, request, input, output, call) || ...)) {
        throw std::logic_error("the operation is not described");
    }
    return call;
}

}  // namespace

std::uint32_t TAVROAPI_Initialize(std::uint32_t debugFlag, std::wstring* localeName) {
    using Entry = tavroapi::InitializeEntry;
    return Answer<Entry>({.entry = Entry::Name, .inputs = WalkOver(localeName)}, debugFlag,
                         localeName);
}

std::uint32_t TAVROAPI_Uninitialize() {
    using Entry = tavroapi::UninitializeEntry;
    return Answer<Entry>({.entry = Entry::Name});
}

std::uint32_t TAVROAPI_DoOperation(std::uint32_t operation, std::string* request, void* input,
                                   void* output) {
    return Answer<tavroapi::DoOperationEntry>(
        Described(tavroapi::DescribedOperations{}, operation, request, input, output), operation,
        request, input, output);
}

std::uint32_t TAVROAPI_GetLocalizeMessage(std::uint32_t messageId, std::wstring* text) {
    using Entry = tavroapi::GetLocalizeMessageEntry;
    Session::Current().NoteMessage(messageId);
    return Answer<Entry>({.entry = Entry::Name, .outputs = WalkOver(text)}, messageId, text);
}

std::uint32_t TAVROAPI_GetLastErrorMessage(tavroapi::ErrorRecord* error) {
    using Entry = tavroapi::GetLastErrorMessageEntry;
    return Answer<Entry>({.entry = Entry::Name, .outputs = WalkOver(error)}, error);
}

std::uint32_t TAVROAPI_GetHostName(std::string* hostName) {
    using Entry = tavroapi::GetHostNameEntry;
    return Answer<Entry>({.entry = Entry::Name, .outputs = WalkOver(hostName)}, hostName);
}

std::uint32_t TAVROAPI_GetDiscoveredAdapters(std::list<tavroapi::AdapterRecord>* adapters) {
    using Entry = tavroapi::GetDiscoveredAdaptersEntry;
    return Answer<Entry>({.entry = Entry::Name, .outputs = WalkOver(adapters)}, adapters);
}

std::uint32_t TAVROAPI_GetPortWWNs(std::string* adapterName, std::string* portName,
                                   std::list<tavroapi::FunctionAddress>* addresses,
                                   std::list<tavroapi::FunctionIdentity>* identities) {
    using Entry = tavroapi::GetPortWWNsEntry;
    const auto shorten = [=] {
        if (!identities->empty()) {
            identities->pop_back();
        }
    };
    return Answer<Entry>({.entry = Entry::Name,
                          .inputs = WalkOver(adapterName, portName),
                          .outputs = WalkOver(addresses, identities),
                          .shorten = shorten},
                         adapterName, portName, addresses, identities);
}

std::uint32_t TAVROAPI_GetPartitionState(std::string* portIdentifier, std::uint32_t* state) {
    using Entry = tavroapi::GetPartitionStateEntry;
    return Answer<Entry>(
        {.entry = Entry::Name, .inputs = WalkOver(portIdentifier), .outputs = WalkOver(state)},
        portIdentifier, state);
}

std::uint32_t TAVROAPI_GetAdapterType(std::string* mac, std::string* typeText) {
    using Entry = tavroapi::GetAdapterTypeEntry;
    return Answer<Entry>(
        {.entry = Entry::Name, .inputs = WalkOver(mac), .outputs = WalkOver(typeText)}, mac,
        typeText);
}

std::uint32_t TAVROAPI_GetAdapterPortNumber(std::string* mac, std::uint32_t* portCount) {
    using Entry = tavroapi::GetAdapterPortNumberEntry;
    return Answer<Entry>(
        {.entry = Entry::Name, .inputs = WalkOver(mac), .outputs = WalkOver(portCount)}, mac,
        portCount);
}
