# vrax_genclass(<target> SCHEMA <folders> OUTPUT <folder> [PROVIDERS <file>] [CLASSES <names>] [ALSO <names>]
#               [REPOSITORY <file>] [REGISTRATION <file>] [MOF <folder>])
#   A static library of C++ class descriptions generated from MOF, with its include directory. The generator rewrites
#   only files whose content changes, so an edited MOF file recompiles only what depends on it. Which files it writes
#   follows from the MOF and is asked for when the build is configured, so an edited MOF file also configures again.

set(VRAX_GENCLASS_DIR "${CMAKE_SOURCE_DIR}/toolkit/genclass")

function(vrax_genclass target)
    cmake_parse_arguments(arg "" "OUTPUT;PROVIDERS;REPOSITORY;REGISTRATION;MOF" "SCHEMA;CLASSES;ALSO" ${ARGN})
    set(options --name ${target} --output "${arg_OUTPUT}")
    foreach(folder IN LISTS arg_SCHEMA)
        list(APPEND options --schema "${folder}")
    endforeach()
    foreach(name IN LISTS arg_CLASSES)
        list(APPEND options --class ${name})
    endforeach()
    foreach(name IN LISTS arg_ALSO)
        list(APPEND options --also ${name})
    endforeach()
    foreach(option PROVIDERS REPOSITORY REGISTRATION MOF)
        if(arg_${option})
            string(TOLOWER ${option} flag)
            list(APPEND options --${flag} "${arg_${option}}")
        endif()
    endforeach()

    set(genclass ${CMAKE_COMMAND} -E env "PYTHONPATH=${VRAX_GENCLASS_DIR}" PYTHONDONTWRITEBYTECODE=1
        "${VRAX_PYTHON}" -m genclass)
    execute_process(COMMAND ${genclass} ${options} --list WORKING_DIRECTORY "${CMAKE_SOURCE_DIR}"
                    OUTPUT_VARIABLE listed ERROR_VARIABLE problem RESULT_VARIABLE result)
    if(result)
        message(FATAL_ERROR "${problem}")
    endif()
    string(REGEX MATCHALL "in [^\n]+" inputs "${listed}")
    list(TRANSFORM inputs REPLACE "^in " "")
    string(REGEX MATCHALL "out [^\n]+" outputs "${listed}")
    list(TRANSFORM outputs REPLACE "^out " "")
    file(GLOB generator "${VRAX_GENCLASS_DIR}/genclass/*.py")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${inputs} ${generator} ${arg_PROVIDERS})

    add_custom_command(OUTPUT ${outputs} COMMAND ${genclass} ${options}
                       DEPENDS ${inputs} ${generator} ${arg_PROVIDERS} WORKING_DIRECTORY "${CMAKE_SOURCE_DIR}"
                       COMMENT "Generating ${target} from MOF" VERBATIM)
    add_library(${target} STATIC ${outputs})
    target_include_directories(${target} SYSTEM PUBLIC "${arg_OUTPUT}")
    target_link_libraries(${target} PUBLIC cimple PRIVATE vrax_options)
    if(CIMPLE_ROOT)
        # The original's flag and offset macros are wider than the fields they initialise.
        target_compile_options(${target} PRIVATE -Wno-narrowing)
    endif()
endfunction()
