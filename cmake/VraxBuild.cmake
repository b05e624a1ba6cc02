# Compiler settings shared by every target, and the two functions that create libraries and programs with them.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_CXX_FLAGS_RELEASE "-Os -DNDEBUG") # but for what vrax_optimise() names
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib/cimd")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

find_package(Threads REQUIRED)

# vrax_run_path(<target> <path>)
#   Where an installed target looks for the project's shared libraries, relative to itself. The build tree has the same
#   layout and takes the path as it is: the one CMake makes up for later replacement is filled up with colons, and an
#   empty element of a run path is the current directory, from which anybody's library would be loaded.
function(vrax_run_path target path)
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "${path}" BUILD_WITH_INSTALL_RPATH ON)
endfunction()

# The project's Python tools (pywbem's MOF compiler) live in a virtual environment made by scripts/setup.
if(EXISTS "${CMAKE_SOURCE_DIR}/.venv/bin/python3")
    set(VRAX_PYTHON "${CMAKE_SOURCE_DIR}/.venv/bin/python3" CACHE FILEPATH "Python with pywbem")
else()
    set(VRAX_PYTHON python3 CACHE FILEPATH "Python with pywbem")
endif()

# Compile options of the project's own sources. Generated sources take only the first group.
add_library(vrax_options INTERFACE)
target_compile_options(vrax_options INTERFACE -Wall -Wextra $<$<BOOL:${VRAX_WERROR}>:-Werror>)
target_link_libraries(vrax_options INTERFACE Threads::Threads)
# Memory is what a switch is short of: programs leave out the functions that they do not call.
target_compile_options(vrax_options INTERFACE $<$<CONFIG:Release>:-ffunction-sections -fdata-sections>)
target_link_options(vrax_options INTERFACE $<$<CONFIG:Release>:-Wl,--gc-sections>)
if(VRAX_SANITIZE)
    target_compile_options(vrax_options INTERFACE -fsanitize=${VRAX_SANITIZE} -fno-sanitize-recover=all
                                                  -fno-omit-frame-pointer)
    target_link_options(vrax_options INTERFACE -fsanitize=${VRAX_SANITIZE})
endif()
if(VRAX_SANITIZE STREQUAL "thread")
    target_sources(vrax_options INTERFACE
        $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:${CMAKE_CURRENT_LIST_DIR}/thread_sanitizer.cpp>)
endif()

add_library(vrax_warnings INTERFACE)
target_link_libraries(vrax_warnings INTERFACE vrax_options)
target_compile_options(vrax_warnings INTERFACE -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
                       -Woverloaded-virtual -Wformat=2)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Without -Wnull-dereference: it speaks only in optimised builds, and there of the standard library's streams.
    target_compile_options(vrax_warnings INTERFACE -Wduplicated-cond -Wlogical-op)
elseif(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    target_compile_options(vrax_warnings INTERFACE -Wthread-safety -Wthread-safety-beta)
endif()

# vrax_unity(<target> [ALONE <files>])
#   Where VRAX_UNITY is on, up to eight sources of one folder are compiled as one, which saves reading the headers seven
#   times. ALONE: sources whose local names stand in others of their folder too.
function(vrax_unity target)
    if(NOT VRAX_UNITY)
        return()
    endif()
    cmake_parse_arguments(arg "" "" "ALONE" ${ARGN})
    get_target_property(sources ${target} SOURCES)
    foreach(source IN LISTS sources)
        cmake_path(ABSOLUTE_PATH source NORMALIZE OUTPUT_VARIABLE path)
        cmake_path(RELATIVE_PATH path BASE_DIRECTORY "${CMAKE_SOURCE_DIR}")
        cmake_path(GET path PARENT_PATH folder)
        string(MAKE_C_IDENTIFIER "${folder}" name)
        math(EXPR part "0${count_${name}} / 8")
        math(EXPR count_${name} "0${count_${name}} + 1")
        set_source_files_properties("${source}" PROPERTIES UNITY_GROUP ${name}_${part})
    endforeach()
    set_source_files_properties(${arg_ALONE} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
    # An unnamed namespace is as local as it was: nothing includes the included source but its unit.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
endfunction()

# vrax_optimise(<sources>)
#   Sources in which a release spends its time are compiled for speed, all others for size. Other builds leave the
#   property alone: a source that has it is not compiled together with others.
function(vrax_optimise)
    if(CMAKE_BUILD_TYPE STREQUAL "Release")
        set_property(SOURCE ${ARGN} APPEND PROPERTY COMPILE_OPTIONS -O2)
    endif()
endfunction()

# vrax_run_time_library(<target> <DEFINITION> <file>)
#   The target loads the library when it first needs it, by the name that the linker would note.
function(vrax_run_time_library target definition file)
    execute_process(COMMAND "${CMAKE_OBJDUMP}" -p "${file}" OUTPUT_VARIABLE description COMMAND_ERROR_IS_FATAL ANY)
    if(NOT description MATCHES "SONAME +([^ \n]+)")
        message(FATAL_ERROR "${file} is no shared library with a name")
    endif()
    target_compile_definitions(${target} PRIVATE "${definition}=\"${CMAKE_MATCH_1}\"")
    target_link_libraries(${target} PRIVATE ${CMAKE_DL_LIBS})
endfunction()

# vrax_completion(<programs>)
#   Bash completes the options that the --help of a program shows.
function(vrax_completion)
    foreach(program IN LISTS ARGN)
        install(FILES "${CMAKE_SOURCE_DIR}/packaging/completion.bash" DESTINATION share/bash-completion/completions
                RENAME ${program})
    endforeach()
endfunction()

# 64-bit seconds on 32-bit platforms: switches outlive the year 2038.
set(vrax_wide_time _FILE_OFFSET_BITS=64 _TIME_BITS=64)
