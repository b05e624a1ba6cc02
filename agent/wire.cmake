# CIM-XML over HTTP, and the program.
pkg_check_modules(microhttpd REQUIRED IMPORTED_TARGET libmicrohttpd)

add_library(cimd_wire STATIC
    http/CimHeaders.cpp
    http/HttpServer.cpp
    http/ListenSocket.cpp
    http/Message.cpp
    http/WorkerPool.cpp
    ops/AssociationCalls.cpp
    ops/Call.cpp
    ops/ClassCalls.cpp
    ops/Failure.cpp
    ops/FrontEnd.cpp
    ops/InstanceCalls.cpp
    ops/MethodCalls.cpp
    ops/Operations.cpp
    ops/Parameters.cpp
    ops/PropertyCalls.cpp
    ops/PullCalls.cpp
    pull/Enumerations.cpp
    pull/Spool.cpp
    xml/DeclarationWriter.cpp
    xml/ElementReader.cpp
    xml/ElementWriter.cpp
    xml/Encoding.cpp
    xml/RequestReader.cpp
    xml/ResponseWriter.cpp
    xml/Utf8.cpp
    xml/XmlCheck.cpp
    xml/XmlDocument.cpp
    xml/XmlWriter.cpp
)
target_link_libraries(cimd_wire PUBLIC cimd_core PkgConfig::pugixml PRIVATE vrax_warnings PkgConfig::microhttpd)

add_library(cimd_start STATIC Limits.cpp Options.cpp Platform.cpp)
target_link_libraries(cimd_start PUBLIC cimd_core PRIVATE vrax_warnings ${CMAKE_DL_LIBS})

add_executable(cimd main.cpp)
target_compile_definitions(cimd PRIVATE CIMD_VERSION="${PROJECT_VERSION}")
target_link_libraries(cimd PRIVATE cimd_wire cimd_start vrax_warnings)
