#pragma once

#include <string>
#include <string_view>

#include "linux/state/state.h"

namespace tavrolinux {

// The state as the text of its file, a document of JSON, and what such a text holds. The secrets
// are in no other memory than the text's and the state's own. Throws tavrolib::ShapeError that
// names the place, and nothing of what stands there, for every other text.
std::string TextFromState(const State& state);
State StateFromText(std::string_view text);

}  // namespace tavrolinux
