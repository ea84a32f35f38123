// A management library that knows nothing but messages: the text of each is its number.
#include <string>

#include "tavroapi/entry_points.h"

extern "C" {

tavroapi::GetLocalizeMessageEntry::Function TAVROAPI_GetLocalizeMessage;

std::uint32_t TAVROAPI_GetLocalizeMessage(std::uint32_t messageId, std::wstring* text) {
    *text = L"#" + std::to_wstring(messageId);
    return 0;
}

}  // extern "C"
