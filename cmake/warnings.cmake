# Warnings are errors on every compiler; third-party code is included as system headers and stays out of it.
add_library(tavro_warnings INTERFACE)
target_compile_options(tavro_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Werror -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast
    -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough -Wundef)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # GCC 12 sees overlapping copies where texts are joined or assigned, inside the standard library.
    target_compile_options(tavro_warnings INTERFACE -Wno-restrict)
endif()

if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # Here it costs nothing; clang-tidy's own check of the same is its slowest.
    target_compile_options(tavro_warnings INTERFACE -Wreserved-identifier)
endif()

if(TAVRO_SANITIZE)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # What the sanitizers insert hides from GCC that a value was set.
        target_compile_options(tavro_warnings INTERFACE -Wno-maybe-uninitialized)
    endif()
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()
