# CIM-XML over HTTP, and the program.
pkg_check_modules(crypt REQUIRED IMPORTED_TARGET libcrypt)
pkg_check_modules(gnutls REQUIRED IMPORTED_TARGET gnutls)
pkg_check_modules(microhttpd REQUIRED IMPORTED_TARGET libmicrohttpd)
add_subdirectory(auth)

add_library(cimd_wire STATIC
    http/Alarm.cpp
    http/cim_headers.cpp
    http/Connection.cpp
    http/Daemon.cpp
    http/HttpServer.cpp
    http/joined_write.cpp
    http/ListenSocket.cpp
    http/message.cpp
    http/Overflow.cpp
    http/queue_response.cpp
    http/received_bytes.cpp
    http/Reply.cpp
    http/SpoolArea.cpp
    http/TlsHandshake.cpp
    http/WorkerPool.cpp
    ops/association_calls.cpp
    ops/audit.cpp
    ops/Call.cpp
    ops/class_calls.cpp
    ops/failure.cpp
    ops/FrontEnd.cpp
    ops/instance_calls.cpp
    ops/LogInGate.cpp
    ops/method_calls.cpp
    ops/Operations.cpp
    ops/Parameters.cpp
    ops/property_calls.cpp
    ops/pull_calls.cpp
    pull/Enumerations.cpp
    pull/Spool.cpp
    xml/declaration_writer.cpp
    xml/ElementReader.cpp
    xml/element_writer.cpp
    xml/encoding.cpp
    xml/request_reader.cpp
    xml/ResponseWriter.cpp
    xml/utf8.cpp
    xml/xml_check.cpp
    xml/XmlDocument.cpp
    xml/XmlWriter.cpp
)
target_link_libraries(cimd_wire PUBLIC cimd_auth cimd_core PkgConfig::pugixml PRIVATE vrax_warnings PkgConfig::microhttpd PkgConfig::gnutls)

add_library(cimd_start STATIC Limits.cpp Options.cpp platform.cpp)
target_link_libraries(cimd_start PUBLIC cimd_core PRIVATE vrax_warnings ${CMAKE_DL_LIBS})

add_executable(cimd main.cpp)
target_compile_definitions(cimd PRIVATE CIMD_VERSION="${PROJECT_VERSION}")
target_link_libraries(cimd PRIVATE cimd_wire cimd_start vrax_warnings)
install(TARGETS cimd cimd-passwd)

# The manual page, with an entry for each row LIMIT(member, ..., unit, "option",\n"meaning") of the limits.
set(cimd_page "${CMAKE_BINARY_DIR}/share/man/man8/cimd.8")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/limits.def")
file(READ limits.def limit_text)
string(REPLACE ";" "<semicolon>" limit_text "${limit_text}") # would separate list elements
string(REGEX MATCHALL "\nLIMIT\\([^\n]*\n[^\n]*\"\\)" limit_rows "${limit_text}")
set(LIMITS)
foreach(row IN LISTS limit_rows)
    if(NOT row MATCHES "\"([a-z-]+)\",[ \n]*\"([^\n]*)\"\\)$")
        message(FATAL_ERROR "agent/limits.def: a row should end in option and meaning: ${row}")
    endif()
    set(meaning "${CMAKE_MATCH_2}")
    string(REPLACE "-" "\\-" option "--${CMAKE_MATCH_1}")
    string(APPEND LIMITS ".TP\n.BI ${option} \" NUMBER\"\n${meaning}\n")
endforeach()
string(REPLACE "<semicolon>" ";" LIMITS "${LIMITS}")
configure_file("${CMAKE_SOURCE_DIR}/docs/cimd.8.in" "${cimd_page}" @ONLY)
install(FILES "${cimd_page}" DESTINATION share/man/man8)
