# Run by CPack once the components are installed into its folder: adds to each package its changelog and copyright,
# compresses the manual pages, and puts the completion for zsh where packages have it. The changelog's date is SOURCE_DATE_EPOCH, where that is set.
function(tavro_compress file)
    execute_process(COMMAND gzip -9nf ${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# A link to a page leads to the compressed one then, and is named as that is.
function(tavro_compress_page page)
    if(IS_SYMLINK ${page})
        file(READ_SYMLINK ${page} target)
        file(CREATE_LINK ${target}.gz ${page}.gz SYMBOLIC)
        file(REMOVE ${page})
    else()
        tavro_compress(${page})
    endif()
endfunction()

function(tavro_finish_package component package)
    set(folder ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share)
    set(documents ${folder}/doc/${package})
    string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
    configure_file(${CPACK_TAVRO_DEBIAN_FOLDER}/changelog.in ${documents}/changelog @ONLY)
    tavro_compress(${documents}/changelog)
    configure_file(${CPACK_TAVRO_DEBIAN_FOLDER}/copyright ${documents}/copyright COPYONLY)
    file(GLOB pages ${folder}/man/man1/*.1)
    foreach(page IN LISTS pages)
        tavro_compress_page(${page})
    endforeach()
    if(EXISTS ${folder}/zsh)
        file(RENAME ${folder}/zsh/site-functions ${folder}/zsh/vendor-completions)
    endif()
endfunction()

# Modules are no programs. Ansible starts them with the host's interpreter whether they name one or not, and the one that its
# own tests want to be named is none that Debian has.
function(tavro_unname_interpreters folder)
    file(GLOB modules ${CPACK_TEMPORARY_DIRECTORY}/${folder}/*.py)
    execute_process(COMMAND sed -i 1s,^\#!/usr/bin/python$,, ${modules} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

tavro_finish_package(tavrocli tavrocli)
tavro_finish_package(simulator tavrocli-simulator)
tavro_finish_package(linux tavrocli-linux)
tavro_finish_package(fleet ansible-collection-tavro)
tavro_unname_interpreters(fleet/usr/share/ansible/collections/ansible_collections/tavro/fleet/plugins/modules)
