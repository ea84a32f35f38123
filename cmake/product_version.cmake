# The version is stated once, by project(). What is compiled has it from <product_version.h>, and the files for Windows
# from their resources.
configure_file(${CMAKE_CURRENT_LIST_DIR}/product_version.h.in ${CMAKE_BINARY_DIR}/generated/product_version.h @ONLY)
add_library(product_version INTERFACE)
target_include_directories(product_version INTERFACE ${CMAKE_BINARY_DIR}/generated)

if(WIN32)
    enable_language(RC)
endif()

# Gives a program or library what Windows shows of it, and a program its manifest, whose name for it is "Tavro." and
# `identity`. On other systems it does nothing.
function(tavro_add_windows_resource target description)
    if(NOT WIN32)
        return()
    endif()
    cmake_parse_arguments(PARSE_ARGV 2 resource "" "MANIFEST_IDENTITY" "")
    set(folder ${PROJECT_SOURCE_DIR}/cmake/windows)
    set(resource_file ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
    set(manifest)
    set(file_type VFT_DLL)
    set(file_name ${target}.dll)
    string(REPLACE "." "," numbers ${PROJECT_VERSION})
    if(resource_MANIFEST_IDENTITY)
        set(identity Tavro.${resource_MANIFEST_IDENTITY})
        configure_file(${folder}/program.manifest.in ${CMAKE_CURRENT_BINARY_DIR}/${target}.manifest @ONLY)
        set(manifest "1 RT_MANIFEST \"${target}.manifest\"")
        set(file_type VFT_APP)
        set(file_name ${target}.exe)
        set_source_files_properties(${resource_file} PROPERTIES
            INCLUDE_DIRECTORIES ${CMAKE_CURRENT_BINARY_DIR}
            OBJECT_DEPENDS ${CMAKE_CURRENT_BINARY_DIR}/${target}.manifest)
    endif()
    configure_file(${folder}/resource.rc.in ${resource_file} @ONLY)
    target_sources(${target} PRIVATE ${resource_file})
endfunction()
