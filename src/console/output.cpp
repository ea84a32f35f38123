#include "console/console.h"
#include "console/state.h"

namespace tavro::console {
namespace {

void WritePending(State& state) {
    if (state.pendingText.empty() && state.pendingBytes.empty()) {
        return;
    }
    const bool written = !state.outputClosed &&
                         (state.device.writeText ? state.device.writeText(state.pendingText)
                                                 : state.device.writeBytes(state.pendingBytes));
    state.pendingText.clear();
    state.pendingBytes.clear();
    if (!written) {
        state.outputClosed = true;
        throw OutputClosed();
    }
}

// Bytes that the code page cannot make sense of are widened one by one.
std::wstring Widen(std::string_view bytes, unsigned codePage) {
    if (auto text = platform::DecodeText(bytes, codePage)) {
        return *std::move(text);
    }
    std::wstring text;
    for (const char byte : bytes) {
        text += static_cast<wchar_t>(static_cast<unsigned char>(byte));
    }
    return text;
}

void AppendPending(State& state, std::wstring_view text) {
    if (state.device.writeText) {
        state.pendingText += text;
    } else {
        state.pendingBytes += platform::EncodeText(text, state.device.codePage);
    }
}

void AppendPending(State& state, std::string_view bytes) {
    if (state.device.writeText) {
        state.pendingText += Widen(bytes, state.device.codePage);
    } else {
        state.pendingBytes += bytes;
    }
}

void FinishLine(State& state) {
    if (state.device.writeText) {
        state.pendingText.append(state.device.lineEnd.begin(), state.device.lineEnd.end());
    } else {
        state.pendingBytes += state.device.lineEnd;
    }
    WritePending(state);
}

template <typename View>
void PrintLines(View text) {
    State& state = Current();
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const View line = text.substr(0, end);
        if (!line.empty()) {
            AppendPending(state, line);
        }
        if (end == View::npos) {
            return;
        }
        FinishLine(state);
        text.remove_prefix(end + 1);
    }
}

}  // namespace

void Print(std::wstring_view text) {
    PrintLines(text);
}

void PrintNarrow(std::string_view bytes) {
    PrintLines(bytes);
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
