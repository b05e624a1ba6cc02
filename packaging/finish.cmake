# Run by cpack over the files of each package: what Debian wants that an installation elsewhere need not have.

# The time stamp in compressed files would differ from build to build.
function(compress file)
    execute_process(COMMAND gzip -9 -n -f "${file}" COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    string(TOUPPER ${component} name)
    set(root "${CPACK_TEMPORARY_DIRECTORY}/${component}")
    set(documents "${root}/usr/share/doc/${CPACK_DEBIAN_${name}_PACKAGE_NAME}")
    file(MAKE_DIRECTORY "${documents}")
    configure_file("${CMAKE_CURRENT_LIST_DIR}/copyright" "${documents}/copyright" COPYONLY)
    configure_file("${CMAKE_CURRENT_LIST_DIR}/changelog" "${documents}/changelog" COPYONLY)
    compress("${documents}/changelog")
    file(GLOB pages "${root}/usr/share/man/man?/*.[1-9]")
    foreach(page IN LISTS pages)
        compress("${page}")
    endforeach()

    # Configuration is the system's, not that of the prefix; dpkg keeps what was edited.
    if(EXISTS "${root}/usr/etc")
        file(RENAME "${root}/usr/etc" "${root}/etc")
    endif()
    if(component STREQUAL cimd)
        # In the directory that the unit has made for the service, so that root can ask it: cimd --list-providers.
        set(file "${root}/etc/cimd/cimd.conf")
        file(READ "${file}" text)
        string(REPLACE "\n#control-socket = \"PATH\"\n" "\ncontrol-socket = \"/run/cimd/control\"\n" changed "${text}")
        if(changed STREQUAL text)
            message(FATAL_ERROR "${file}: no line #control-socket = \"PATH\"")
        endif()
        file(WRITE "${file}" "${changed}")
        file(GLOB_RECURSE configuration RELATIVE "${root}" "${root}/etc/*")
        list(TRANSFORM configuration REPLACE "^(.+)$" "/\\1\n")
        list(JOIN configuration "" lines)
        file(WRITE "${CPACK_VRAX_CONFFILES}" "${lines}")
    endif()
endforeach()
