# Some builds compile the sources of a folder as one, which saves reading the same headers again and again: a folder is
# about one thing, so its sources can do without equal names. What a forgotten include breaks is still found: the
# preset "native" compiles each source of the program, the libraries and the simulator by itself, and
# scripts/lib/check_includes.py has those that no build compiles so read each by itself, but tests. What the platform's
# headers define as macros stays within the platform folders, which are compiled with no others.
option(TAVRO_BUILD_BY_FOLDER "Compile the sources of a folder as one" OFF)

# As the option says.
function(tavro_build_by_folder target)
    if(TAVRO_BUILD_BY_FOLDER)
        tavro_compile_by_folder(${target} ${ARGN})
    endif()
endfunction()

# In every build. Each further argument names folders that are compiled as one, separated by blanks: what their sources
# make of the templates of JSON is then made once. A name that two of them use for two things parts them.
function(tavro_compile_by_folder target)
    foreach(folders IN LISTS ARGN)
        string(REPLACE " " ";" folders ${folders})
        list(GET folders 0 first)
        string(MAKE_C_IDENTIFIER ${first} first_group)
        foreach(folder IN LISTS folders)
            set(group_of_${folder} ${first_group}_and_others)
        endforeach()
    endforeach()
    get_target_property(sources ${target} SOURCES)
    foreach(source IN LISTS sources)
        cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
        cmake_path(GET source PARENT_PATH folder)
        cmake_path(RELATIVE_PATH folder BASE_DIRECTORY ${CMAKE_SOURCE_DIR})
        string(MAKE_C_IDENTIFIER ${folder} group)
        if(DEFINED group_of_${folder})
            set(group ${group_of_${folder}})
        endif()
        set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${group})
    endforeach()
    # A source counts as a header here, whose types must not have members of unnamed namespaces.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
    set_target_properties(${target} PROPERTIES
        UNITY_BUILD ON
        UNITY_BUILD_MODE GROUP
        UNITY_BUILD_CODE_BEFORE_INCLUDE "// NOLINTNEXTLINE(bugprone-suspicious-include)")
endfunction()
