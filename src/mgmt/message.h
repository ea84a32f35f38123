#pragma once

#include <string>
#include <string_view>

#include "mgmt/layout.h"
#include "mgmt/message_id.h"

namespace tavro {

// The value of a message that has none.
inline constexpr const char* NoValue = " ";

// Prints a library message. Prints nothing when the library cannot supply message texts; a message
// that the library does not know prints whatever text it gives.
void ShowMessage(MessageId id, std::string_view value = NoValue, Layout layout = Layout::Message,
                 std::string_view prefix = "");

// Shows a prompt and leaves its line open for the answer.
void ShowPrompt(MessageId prompt, std::string_view prefix = "");

// Shows an indented notice.
void ShowNotice(MessageId notice);

// Shows an empty line and an indented notice.
void ShowSpacedNotice(MessageId notice);

// Prints the wide-valued row of the Ethernet port information (`MessageId::WideRowLabel`).
void ShowWideRow(std::wstring_view value, std::string_view prefix);

// Prints the library's description of the most recent failure: message, details, action and
// additional text, each only when it is not empty.
void ShowLastError();

// A failure's own message, and then the library's description of it.
void ShowFailure(MessageId id, std::string_view value = NoValue);

}  // namespace tavro
