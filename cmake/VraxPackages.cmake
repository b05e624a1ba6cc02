# Debian packages, one for each component of the installation: `cpack` in the build tree, or `make package`.

if(VRAX_AGENT)
    install(FILES packaging/cimd.service DESTINATION lib/systemd/system)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL module simulator cimd toolkit)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
    WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_OUTPUT_FILE_PREFIX "${CMAKE_SOURCE_DIR}/build/packages")
# What packages have beyond an installation: compressed pages, copyright and changelog, a list of configuration files.
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_SOURCE_DIR}/packaging/finish.cmake")

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The VRAX module's developers <developers@vrax.invalid>")
set(CPACK_DEBIAN_PACKAGE_SOURCE cimd)
set(CPACK_DEBIAN_PACKAGE_SECTION net)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# vrax_package(<component> <package> <text> [<VARIABLE> <value>]...)
#   <text>: a line, then the long description.
function(vrax_package component package text)
    string(TOUPPER ${component} name)
    set(CPACK_DEBIAN_${name}_PACKAGE_NAME ${package} PARENT_SCOPE)
    set(CPACK_DEBIAN_${name}_DESCRIPTION "${text}" PARENT_SCOPE)
    while(ARGN)
        list(POP_FRONT ARGN variable value)
        set(CPACK_DEBIAN_${name}_PACKAGE_${variable} "${value}" PARENT_SCOPE)
    endwhile()
endfunction()

# libcurl is loaded when the first indication is sent, so dpkg-shlibdeps does not see it.
set(module_depends "vrax-simulator | vrax-platform")
if(VRAX_DELIVERS)
    string(APPEND module_depends ", libcurl3-gnutls (>= 7.87)")
endif()
vrax_package(module vrax-providers "CMPI providers for a Fibre Channel switch
CIM classes of the SMI-S Fabric, Switch and Server profiles, for a CIM server
that runs on the switch: the provider library, the classes as MOF and as
repository of cimd, and their registration."
    DEPENDS "${module_depends}" SUGGESTS python3)
vrax_package(simulator vrax-simulator "simulated Fibre Channel switch
The interface of the switch's firmware over a model in memory, with example
fabrics, the generator simgen and switchctl, which does to the simulated
switch what people and hardware do to a real one."
    PROVIDES vrax-platform CONFLICTS vrax-platform) # there is one platform library: this, or the firmware's
vrax_package(cimd cimd "small CIM-XML server
CIM operations over HTTP and HTTPS, answered by CMPI providers. After
installation it serves this machine only, at port 5988; see cimd.conf(5)."
    DEPENDS "vrax-providers (= ${PROJECT_VERSION}), adduser, libsystemd0, procps")
vrax_package(toolkit vrax-toolkit-dev "development files of the CIM provider toolkit
Headers and libraries to write CIM providers with, their CMPI adapter, the
headers of CMPI, and genclass, which makes C++ classes of MOF. genclass needs
the Python package pywbem."
    SECTION libdevel SUGGESTS python3)

# Maintainer scripts, and the list of configuration files that finish.cmake writes.
set(packaging "${CMAKE_SOURCE_DIR}/packaging/cimd")
set(CPACK_VRAX_CONFFILES "${CMAKE_BINARY_DIR}/packaging/conffiles")
set(CPACK_DEBIAN_CIMD_PACKAGE_CONTROL_EXTRA "${packaging}/postinst;${packaging}/prerm;${packaging}/postrm"
                                            "${CPACK_VRAX_CONFFILES}")

include(CPack)
