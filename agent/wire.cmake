# CIM-XML over HTTP, and the program.
pkg_check_modules(crypt REQUIRED IMPORTED_TARGET libcrypt)
pkg_check_modules(gnutls REQUIRED IMPORTED_TARGET gnutls)
add_subdirectory(auth)

file(GLOB sources CONFIGURE_DEPENDS http/*.cpp metrics/*.cpp ops/*.cpp pull/*.cpp xml/*.cpp)
add_library(cimd_wire STATIC ${sources})
vrax_unity(cimd_wire ALONE http/Channel.cpp http/Connection.cpp http/HttpServer.cpp http/connection_answers.cpp http/Reply.cpp
                           http/RequestReader.cpp http/answer_head.cpp http/cim_headers.cpp)
file(GLOB hot_sources CONFIGURE_DEPENDS xml/*.cpp)
vrax_optimise(${hot_sources})
target_compile_definitions(cimd_wire PUBLIC CIMD_VERSION="${PROJECT_VERSION}")
target_link_libraries(cimd_wire PUBLIC cimd_auth cimd_core PRIVATE vrax_warnings PkgConfig::gnutls)

file(GLOB sources CONFIGURE_DEPENDS *.cpp control/*.cpp settings/*.cpp)
list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
add_library(cimd_start STATIC ${sources})
target_link_libraries(cimd_start PUBLIC cimd_wire PRIVATE vrax_warnings ${CMAKE_DL_LIBS})

add_executable(cimd main.cpp)
target_link_libraries(cimd PRIVATE cimd_start vrax_warnings)
install(TARGETS cimd cimd-passwd)

# The manual pages; that of cimd has an entry for each row LIMIT(member, type, default, least, most, "unit",
# "option",\n"meaning") of the limits.
set(cimd_page "${CMAKE_BINARY_DIR}/share/man/man8/cimd.8")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/limits/limits.def")
file(READ limits/limits.def limit_text)
string(REPLACE ";" "<semicolon>" limit_text "${limit_text}") # would separate list elements
string(REGEX MATCHALL "\nLIMIT\\([^\n]*\n[^\n]*\"\\)" limit_rows "${limit_text}")
set(LIMITS)
foreach(row IN LISTS limit_rows)
    if(NOT row MATCHES "^\nLIMIT\\([^,]+,[^,]+,([^,]+),[^,]+,[^,]+, \"([^\"]*)\", \"([a-z-]+)\",[ \n]*\"([^\n]*)\"\\)$")
        message(FATAL_ERROR "agent/limits/limits.def: a row is not as the head of the file says: ${row}")
    endif()
    string(REPLACE "-" "\\-" option "--${CMAKE_MATCH_3}")
    set(unit "${CMAKE_MATCH_2}")
    set(meaning "${CMAKE_MATCH_4}")
    math(EXPR default "${CMAKE_MATCH_1}")
    string(STRIP "${default} ${unit}" default)
    string(APPEND LIMITS ".TP\n.BI ${option} \" NUMBER\"\n${meaning} Default: ${default}.\n")
endforeach()
string(REPLACE "<semicolon>" ";" LIMITS "${LIMITS}")
configure_file("${CMAKE_SOURCE_DIR}/docs/cimd.8.in" "${cimd_page}" @ONLY)
install(FILES "${cimd_page}" "${CMAKE_SOURCE_DIR}/docs/cimd-passwd.8" DESTINATION share/man/man8)
configure_file("${CMAKE_SOURCE_DIR}/docs/cimd.conf.5.in" "${CMAKE_BINARY_DIR}/share/man/man5/cimd.conf.5" @ONLY)
install(FILES "${CMAKE_BINARY_DIR}/share/man/man5/cimd.conf.5" DESTINATION share/man/man5)

vrax_completion(cimd cimd-passwd)

# The configuration file, in which everything is commented out. Only a cimd that can run here can write it.
include(GNUInstallDirs)
set(cimd_conf "${CMAKE_BINARY_DIR}/etc/cimd/cimd.conf")
if(NOT CMAKE_CROSSCOMPILING OR CMAKE_CROSSCOMPILING_EMULATOR)
    add_custom_command(
        TARGET cimd POST_BUILD COMMAND "${CMAKE_COMMAND}" -E make_directory "${CMAKE_BINARY_DIR}/etc/cimd"
        COMMAND cimd --sample-config > "${cimd_conf}" BYPRODUCTS "${cimd_conf}" VERBATIM)
    install(FILES "${cimd_conf}" DESTINATION "${CMAKE_INSTALL_SYSCONFDIR}/cimd")
endif()
