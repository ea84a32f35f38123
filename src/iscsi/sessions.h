#pragma once

#include <list>
#include <string>
#include <string_view>

namespace tavro {

// The session numbers of a list such as "3,5". Splitting stops at a comma that has nothing in
// front: what is left from there on is one entry, commas included ("3,,5" gives "3" and ",5").
std::list<std::string> SplitSessionIds(std::string_view text);

}  // namespace tavro
