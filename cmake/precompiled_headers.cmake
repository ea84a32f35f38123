# The headers of the standard library that most sources include, compiled once for a target. Clang alone does so:
# GCC 12 forgets in a precompiled header what is the system's, and warns of it. Nor does clang-tidy (the preset
# "tidy"), so a source that forgets an include of its own is found by both.
function(tavro_precompile_headers target)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        target_precompile_headers(${target} PRIVATE
            <algorithm> <array> <cstdint> <list> <map> <memory> <optional> <span> <string> <string_view> <utility>
            <vector> ${ARGN})
    endif()
endfunction()
