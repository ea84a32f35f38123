#include "console/console.h"
#include "console/state.h"
#include "platform/control_characters.h"

namespace tavro::console {
namespace {

void WritePending(State& state) {
    if (state.pendingText.empty() && state.pendingBytes.empty()) {
        return;
    }
    const bool written = state.device.writeText ? state.device.writeText(state.pendingText)
                                                : state.device.writeBytes(state.pendingBytes);
    state.outputIsLost = !written;
    state.unseenEnds = 0;
    state.pendingText.clear();
    state.pendingBytes.clear();
}

std::wstring WidenEach(std::string_view bytes) {
    std::wstring text;
    for (const char byte : bytes) {
        text += static_cast<wchar_t>(static_cast<unsigned char>(byte));
    }
    return text;
}

// Bytes that the code page cannot make sense of are widened one by one.
std::wstring Widen(std::string_view bytes, unsigned codePage) {
    auto text = platform::DecodeText(bytes, codePage);
    return text ? *std::move(text) : WidenEach(bytes);
}

// Keeps what the open line shows for a device that is told of questions.
void KeepOpenLine(State& state, std::wstring_view text) {
    if (state.device.asked) {
        state.openLine += text;
    }
}

// Appends text as it stands.
void AppendRaw(State& state, std::wstring_view text) {
    if (state.device.writeText) {
        state.pendingText += text;
    } else {
        platform::AppendEncoded(text, state.device.codePage, state.pendingBytes);
    }
}

void AppendPending(State& state, std::wstring_view text) {
    KeepOpenLine(state, text);
    if (state.device.isTerminal) {
        AppendRaw(state, platform::MaskControlCharacters(text));
    } else {
        AppendRaw(state, text);
    }
}

void AppendPending(State& state, std::string_view bytes) {
    if (state.device.asked && !state.device.writeText) {
        KeepOpenLine(state, Widen(bytes, state.device.codePage));
    }
    if (state.device.writeText) {
        AppendPending(state, Widen(bytes, state.device.codePage));
    } else if (state.device.isTerminal) {
        state.pendingBytes += platform::MaskControlCharacters(bytes);
    } else {
        state.pendingBytes += bytes;
    }
}

void AppendWidened(State& state, std::string_view bytes) {
    const Device& device = state.device;
    const bool asItIs = !device.writeText && !device.isTerminal && !device.asked;
    if (asItIs && platform::IsAscii(bytes)) {
        state.pendingBytes += bytes;
    } else {
        AppendPending(state, WidenEach(bytes));
    }
}

void FinishLine(State& state) {
    PrintControlSequence(state, state.device.lineEnd);
    if (state.pendingBytes.size() + state.pendingText.size() >= state.device.blockSize) {
        WritePending(state);
    }
    state.openLine.clear();
}

// Calls append(state, line) for the text of each line.
template <typename View, typename Append>
void PrintLines(View text, Append append) {
    State& state = Current();
    while (!text.empty() && !state.outputIsLost) {
        const std::size_t end = text.find('\n');
        const View line = text.substr(0, end);
        if (!line.empty()) {
            append(state, line);
        }
        if (end == View::npos) {
            return;
        }
        FinishLine(state);
        text.remove_prefix(end + 1);
    }
}

}  // namespace

void PrintControlSequence(State& state, std::string_view sequence) {
    if (state.outputIsLost) {
        return;
    }
    if (state.device.writeText) {
        state.pendingText.append(sequence.begin(), sequence.end());
    } else {
        state.pendingBytes += sequence;
    }
}

bool OutputIsLost() {
    return Current().outputIsLost;
}

void RequireOutput() {
    Flush();
    if (OutputIsLost()) {
        throw OutputLost();
    }
}

void Print(std::wstring_view text) {
    PrintLines(text, [](State& state, std::wstring_view line) { AppendPending(state, line); });
}

void PrintNarrow(std::string_view bytes) {
    PrintLines(bytes, [](State& state, std::string_view line) { AppendPending(state, line); });
}

void PrintWidened(std::string_view bytes) {
    PrintLines(bytes, AppendWidened);
}

void EndLine() {
    FinishLine(Current());
}

void PrintLine(std::wstring_view text) {
    Print(text);
    EndLine();
}

void PrintNarrowLine(std::string_view bytes) {
    PrintNarrow(bytes);
    EndLine();
}

void Flush() {
    WritePending(Current());
}

}  // namespace tavro::console
