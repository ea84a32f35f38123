#include "mgmt/message.h"

#include <cstdint>
#include <optional>

#include "console/console.h"
#include "mgmt/library.h"

namespace tavro {

namespace {

// The text of a message that is about to be shown; nothing where none can be shown.
std::optional<std::wstring> MessageText(MessageId id) {
    if (console::OutputIsLost()) {
        return std::nullopt;
    }
    auto* const getMessage = ResolveEntryPoint<tavroapi::GetLocalizeMessageEntry>();
    if (getMessage == nullptr) {
        return std::nullopt;
    }
    std::wstring text;
    getMessage(static_cast<std::uint32_t>(id), &text);
    return text;
}

void PrintUnlessEmpty(std::wstring_view label, std::wstring_view text, std::wstring_view end) {
    if (!text.empty()) {
        console::Print(label);
        console::Print(text);
        console::Print(end);
    }
}

}  // namespace

void ShowMessage(MessageId id, std::string_view value, Layout layout, std::string_view prefix) {
    if (const auto text = MessageText(id)) {
        console::Print(LayOutMessage(*text, value, layout, prefix));
    }
}

void ShowPrompt(MessageId prompt, std::string_view prefix) {
    ShowMessage(prompt, NoValue, Layout::Prompt, prefix);
}

void ShowNotice(MessageId notice) {
    ShowMessage(notice, NoValue, Layout::Notice);
}

void ShowSpacedNotice(MessageId notice) {
    console::EndLine();
    ShowNotice(notice);
}

void ShowWideRow(std::wstring_view value, std::string_view prefix) {
    if (const auto text = MessageText(MessageId::WideRowLabel)) {
        console::Print(LayOutRow(*text, value, prefix));
    }
}

void ShowLastError() {
    auto* const getLastError = ResolveEntryPoint<tavroapi::GetLastErrorMessageEntry>();
    if (getLastError == nullptr) {
        return;
    }
    tavroapi::ErrorRecord error;
    CallLibrary(getLastError, &error);
    PrintUnlessEmpty(L"\nError Details\n\nMessage: ", error.message, L"\n");
    PrintUnlessEmpty(L"Details: [", error.details, L"]\n");
    PrintUnlessEmpty(L"Action: ", error.action, L"\n");
    PrintUnlessEmpty(L"Additional: ", error.additional, L"\n");
}

void ShowFailure(MessageId id, std::string_view value) {
    ShowMessage(id, value);
    ShowLastError();
}

}  // namespace tavro
