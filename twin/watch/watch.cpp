#include "twin/watch/watch.h"

#include <algorithm>
#include <iterator>

#include "dispatch.h"
#include "library/calls/operations.h"

namespace tavrohost {
namespace {

// A prompt is fetched right before it is shown, at times with one more message in front of it.
constexpr std::size_t KeptMessages = 8;

Watch* current = nullptr;

constexpr std::string_view Prefix = "TAVROAPI_";

template <class Entry>
std::string NameOf() {
    return std::string(std::string_view(Entry::Name).substr(Prefix.size()));
}

std::optional<std::string> TextAt(const std::string* text) {
    return text == nullptr ? std::nullopt : std::optional(*text);
}

// What the records of an operation that has returned 0 decide, for the commands; null where they
// do not matter.
tavro::Decision::RecordsTellSuccess* SuccessInRecordsOf(std::uint32_t operation) {
    for (const tavro::Command* const command : tavro::Commands()) {
        const tavro::Decision& decision = command->decidedBy;
        if (decision.SuccessInRecords() != nullptr &&
            static_cast<std::uint32_t>(decision.Calls().front().operation) == operation) {
            return decision.SuccessInRecords();
        }
    }
    return nullptr;
}

// What a call of an entry point tells, by its arguments: what identifies it, and once it has come
// back the completion code that the library left in a record, and whether the records tell that not
// all was done although it returned 0.
template <class Entry>
struct Telling {
    template <class... Arguments>
    static WatchedCall Description(Arguments...) {
        return {.entryPoint = NameOf<Entry>()};
    }
    template <class... Arguments>
    static std::optional<std::int64_t> CompletionCode(Arguments...) {
        return std::nullopt;
    }
    template <class... Arguments>
    static bool IsIncomplete(Arguments...) {
        return false;
    }
};

template <>
struct Telling<tavroapi::DoOperationEntry> {
    static WatchedCall Description(std::uint32_t code, const std::string* request, const void*,
                                   const void*) {
        const tavrolib::Operation* const operation = tavrolib::FindOperation(code);
        return {.entryPoint = NameOf<tavroapi::DoOperationEntry>(),
                .operation = code,
                .operationName = operation == nullptr ? "" : std::string(operation->name),
                .request = TextAt(request)};
    }
    static std::optional<std::int64_t> CompletionCode(std::uint32_t code, const std::string*,
                                                      const void* input, const void*) {
        const tavrolib::Operation* const operation = tavrolib::FindOperation(code);
        if (operation == nullptr || operation->input == nullptr || input == nullptr ||
            operation->input->completionCode == nullptr) {
            return std::nullopt;
        }
        return operation->input->completionCode(input);
    }
    static bool IsIncomplete(std::uint32_t code, const std::string*, const void* input,
                             const void* output) {
        auto* const tellsSuccess = SuccessInRecordsOf(code);
        return tellsSuccess != nullptr && input != nullptr && output != nullptr &&
               !tellsSuccess(input, output);
    }
};

template <>
struct Telling<tavroapi::GetPortWWNsEntry> : Telling<void> {
    static WatchedCall Description(const std::string* adapter, const std::string* port, const void*,
                                   const void*) {
        return {.entryPoint = NameOf<tavroapi::GetPortWWNsEntry>(),
                .adapter = TextAt(adapter),
                .port = TextAt(port)};
    }
};

// Of those that ask for something of a port.
template <class Entry>
struct TellingPort : Telling<void> {
    static WatchedCall Description(const std::string* identifier, const void*) {
        return {.entryPoint = NameOf<Entry>(), .request = TextAt(identifier)};
    }
};
template <>
struct Telling<tavroapi::GetPartitionStateEntry> : TellingPort<tavroapi::GetPartitionStateEntry> {};
template <>
struct Telling<tavroapi::GetAdapterTypeEntry> : TellingPort<tavroapi::GetAdapterTypeEntry> {};
template <>
struct Telling<tavroapi::GetAdapterPortNumberEntry>
    : TellingPort<tavroapi::GetAdapterPortNumberEntry> {};

template <class Entry>
typename Entry::Function* Real() {
    return reinterpret_cast<typename Entry::Function*>(current->Find(Entry::Name));
}

// What stands in the place of an entry point. The library has it, or nobody would call.
template <class Entry, class Function = typename Entry::Function>
struct Stand;

template <class Entry, class... Arguments>
struct Stand<Entry, std::uint32_t(Arguments...)> {
    static std::uint32_t In(Arguments... arguments) {
        current->Begin(Telling<Entry>::Description(arguments...));
        const std::uint32_t status = Real<Entry>()(arguments...);
        current->End(status, Telling<Entry>::CompletionCode(arguments...),
                     status == 0 && Telling<Entry>::IsIncomplete(arguments...));
        return status;
    }
};

std::uint32_t UninitializeInstead() {
    current->AskWhy();
    return Stand<tavroapi::UninitializeEntry>::In();
}

std::uint32_t GetLastErrorMessageInstead(tavroapi::ErrorRecord* error) {
    const std::uint32_t status = Stand<tavroapi::GetLastErrorMessageEntry>::In(error);
    if (error != nullptr) {
        current->NoteError(status, *error);
    }
    return status;
}

std::uint32_t GetLocalizeMessageInstead(std::uint32_t number, std::wstring* text) {
    const std::uint32_t status = Real<tavroapi::GetLocalizeMessageEntry>()(number, text);
    if (text != nullptr) {
        current->NoteMessage(number, *text);
    }
    return status;
}

struct Replacement {
    std::string_view name;
    void* entryPoint;
};

template <class Entry>
Replacement Watching(typename Entry::Function* instead = Stand<Entry>::In) {
    return {Entry::Name, reinterpret_cast<void*>(instead)};
}

// Every entry point that the program may look up.
const Replacement Replacements[] = {
    Watching<tavroapi::InitializeEntry>(),
    Watching<tavroapi::UninitializeEntry>(UninitializeInstead),
    Watching<tavroapi::DoOperationEntry>(),
    Watching<tavroapi::GetLocalizeMessageEntry>(GetLocalizeMessageInstead),
    Watching<tavroapi::GetLastErrorMessageEntry>(GetLastErrorMessageInstead),
    Watching<tavroapi::GetHostNameEntry>(),
    Watching<tavroapi::GetDiscoveredAdaptersEntry>(),
    Watching<tavroapi::GetPortWWNsEntry>(),
    Watching<tavroapi::GetPartitionStateEntry>(),
    Watching<tavroapi::GetAdapterTypeEntry>(),
    Watching<tavroapi::GetAdapterPortNumberEntry>(),
};

// What an open line shows of a text that ends in it.
std::wstring_view LastLine(std::wstring_view text) {
    return text.substr(text.find_last_of(L'\n') + 1);
}

}  // namespace

Watch::Watch(const tavro::LibrarySource& library, const std::filesystem::path& journalFile)
    : library_(library), writer_(journalFile) {
    current = this;
    if (!library_.failureReason.empty()) {
        writer_.NoteNoLibrary(library_.failureReason);
    }
}

Watch::~Watch() {
    current = nullptr;
}

tavro::LibrarySource Watch::Watched() const {
    return {.failureReason = library_.failureReason, .find = [this](const char* name) -> void* {
                if (Find(name) == nullptr) {
                    return nullptr;
                }
                const auto* const found = std::ranges::find(Replacements, name, &Replacement::name);
                return found == std::end(Replacements) ? nullptr : found->entryPoint;
            }};
}

std::optional<std::uint32_t> Watch::MessageIn(std::wstring_view line) const {
    for (const auto& [number, text] : messages_) {
        const std::wstring_view shown = LastLine(text);
        if (!shown.empty() && line.find(shown) != std::wstring_view::npos) {
            return number;
        }
    }
    return std::nullopt;
}

void Watch::AskWhy() {
    auto* const ask = Real<tavroapi::GetLastErrorMessageEntry>();
    if (wantsToKnowWhy_ && ask != nullptr) {
        tavroapi::ErrorRecord error;
        try {
            NoteError(ask(&error), error);
        } catch (...) {  // the program, which did not ask, must not notice
        }
    }
}

void Watch::Begin(const WatchedCall& call) {
    writer_.Begin(call);
}

void Watch::End(std::uint32_t status, std::optional<std::int64_t> completionCode,
                bool isIncomplete) {
    wantsToKnowWhy_ = status != 0;
    writer_.End(status, completionCode, isIncomplete);
}

void Watch::NoteError(std::uint32_t status, const tavroapi::ErrorRecord& error) {
    wantsToKnowWhy_ = false;
    if (status == 0) {
        writer_.NoteError(error);
    }
}

void Watch::NoteMessage(std::uint32_t number, std::wstring text) {
    messages_.emplace_front(number, std::move(text));
    if (messages_.size() > KeptMessages) {
        messages_.pop_back();
    }
}

}  // namespace tavrohost
