# Debian packages (cpack -G DEB in the build folder), one per install component:
#   runtime      libmessageapiframework15      the library, libfw, the licence, the catalogues
#   rtcm3        libmessageapirtcm3-1          the RTCM 3 format library
#   development  libmessageapiframework-dev    headers, CMake package, pkg-config files
#   programs     messageapiframework-tools     the programs of apps/ and their item models
# A new part of the project joins a package by naming its component in its install() rules.
# Dependencies on Qt and the C++ runtime come from dpkg-shlibdeps, those between the packages
# from the component dependencies below.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME messageapiframework)
set(CPACK_PACKAGE_VENDOR "The libmessageapiframework developers")
set(CPACK_PACKAGE_CONTACT "The libmessageapiframework developers <messageapiframework@localhost>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSES/${MESSAGEAPI_LICENSE}.txt)
set(CPACK_COMPONENTS_ALL runtime development)
if(MESSAGEAPI_BUILD_RTCM3)
    list(APPEND CPACK_COMPONENTS_ALL rtcm3)
    if(MESSAGEAPI_BUILD_APPS)
        list(APPEND CPACK_COMPONENTS_ALL programs)
    endif()
endif()

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# So that dpkg-shlibdeps finds the project's own libraries, which no installed package holds.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
    ${PROJECT_BINARY_DIR}/platform/fw ${PROJECT_BINARY_DIR}/src ${PROJECT_BINARY_DIR}/formats/rtcm3
    ${PROJECT_BINARY_DIR}/apps/models)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libmessageapiframework${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RTCM3_PACKAGE_NAME libmessageapirtcm3-1)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libmessageapiframework-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_NAME messageapiframework-tools)
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_SECTION utils)
# Building against the headers needs Qt's development files of the same major version.
if(QT_VERSION_MAJOR EQUAL 6)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "qt6-base-dev (>= 6.4)")
else()
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "qtbase5-dev (>= 5.15)")
endif()

# The first line of a description is the package's synopsis. CPack puts the project's summary
# before each description unless it is its own default, so leave it at that.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${CMAKE_PROJECT_NAME} built using CMake")
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "GNSS receiver message dictionary, flow and statistics
The shared library of the GNSS receiver desktop tools: a run-time message dictionary,
the message flow (decoders, sources, multiplexers, event log), path expressions, demand
tracking and per-message statistics. With its platform library libfw and its
translations.")
set(CPACK_DEBIAN_RTCM3_DESCRIPTION "RTCM 3 format library of libmessageapiframework
Framer, dictionary, decoder and stream time of RTCM 3, the format of GNSS reference
stations, receivers and correction services.")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "development files of libmessageapiframework
Headers of libmessageapiframework and libmessageapirtcm3, the CMake package
MessageApiFramework and the pkg-config files messageapiframework and messageapirtcm3.")
set(CPACK_DEBIAN_PROGRAMS_DESCRIPTION "GNSS stream tools built on libmessageapiframework
msgscan tells what is in an RTCM 3 stream (a file, standard input, a TCP server, an
NTRIP caster or a serial port): message rates, gaps, errors and where the station is.
msgmonitor shows the same in a window, live: statistics, the dictionary, the last
message of a type, intervals and gaps, and the event log.")

include(CPack)

cpack_add_component(runtime)
cpack_add_component(rtcm3 DEPENDS runtime)
cpack_add_component(development DEPENDS runtime rtcm3)
cpack_add_component(programs DEPENDS runtime rtcm3)
