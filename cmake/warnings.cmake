# Warnings are errors on both compilers; third-party code is included as system headers and stays out of it.
add_library(tavro_warnings INTERFACE)
target_compile_options(tavro_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Werror -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast
    -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough -Wundef)
# GCC 12 sees overlapping copies in the standard library's own text concatenation.
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(tavro_warnings INTERFACE -Wno-restrict)
endif()

# GCC 12 sees overlapping copies in plain assignments of string literals once it inlines them.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(tavro_warnings INTERFACE -Wno-restrict)
endif()

if(TAVRO_SANITIZE)
    # What the sanitizers insert hides from GCC that a value was set.
    target_compile_options(tavro_warnings INTERFACE -Wno-maybe-uninitialized)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()
