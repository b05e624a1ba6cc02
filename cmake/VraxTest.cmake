# vrax_add_test(<name> [SOURCES <files>] [EXCEPT <files>] [ALSO <files>] [ALONE <files>] [LIBS <libraries>])
#   A GoogleTest program whose cases run one by one under ctest, or all in one through the emulator when
#   cross-compiling. Without SOURCES: of every source of the folder but for those excepted, and ALSO those of other folders.
#   ALONE as in vrax_unity.

if(VRAX_TESTS)
    enable_testing()
    include(GoogleTest)
    if(CMAKE_CROSSCOMPILING)
        # The packaged library is the build machine's; for the target it is built from Debian's source package.
        add_subdirectory(/usr/src/googletest "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL)
    else()
        find_package(GTest REQUIRED)
    endif()
endif()

function(vrax_add_test name)
    if(NOT VRAX_TESTS)
        return()
    endif()
    cmake_parse_arguments(arg "" "" "SOURCES;EXCEPT;ALSO;ALONE;LIBS" ${ARGN})
    if(NOT arg_SOURCES)
        file(GLOB arg_SOURCES RELATIVE "${CMAKE_CURRENT_SOURCE_DIR}" CONFIGURE_DEPENDS *.cpp)
        list(REMOVE_ITEM arg_SOURCES ${arg_EXCEPT})
    endif()
    add_executable(${name} ${arg_SOURCES} ${arg_ALSO})
    vrax_unity(${name} ALONE ${arg_ALONE})
    target_link_libraries(${name} PRIVATE vrax_warnings ${arg_LIBS} $<IF:$<TARGET_EXISTS:GTest::gtest_main>,GTest::gtest_main,gtest_main>)
    # Assertions are if and else. Which if an else belongs to shows from the indentation, which is checked.
    target_compile_options(${name} PRIVATE -Wno-dangling-else)
    if(CMAKE_CROSSCOMPILING) # the emulator takes longer to start a program than a case takes
        add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
        set_tests_properties(${name} PROPERTIES TIMEOUT 1200 LABELS unit)
        return()
    endif()
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 600 LABELS unit)
endfunction()
