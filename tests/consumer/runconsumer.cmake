# Configures, builds and runs the consumer project against an installed prefix, and checks the
# installed licence text and the pkg-config file. Arguments: CONSUMER_SOURCE_DIR,
# CONSUMER_BINARY_DIR, INSTALL_PREFIX, QT_MAJOR.
file(REMOVE_RECURSE ${CONSUMER_BINARY_DIR})
execute_process(
    COMMAND ${CMAKE_COMMAND} -S ${CONSUMER_SOURCE_DIR} -B ${CONSUMER_BINARY_DIR}
        -DCMAKE_PREFIX_PATH=${INSTALL_PREFIX} -DCMAKE_BUILD_TYPE=Release
    RESULT_VARIABLE result)
if(result)
    message(FATAL_ERROR "configuring the consumer failed")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} --build ${CONSUMER_BINARY_DIR} RESULT_VARIABLE result)
if(result)
    message(FATAL_ERROR "building the consumer failed")
endif()
execute_process(COMMAND ${CONSUMER_BINARY_DIR}/consumer
    OUTPUT_VARIABLE output RESULT_VARIABLE result)
message(STATUS "consumer printed: ${output}")
if(result OR NOT output MATCHES "Client Error: consumer")
    message(FATAL_ERROR "the consumer did not run as expected")
endif()

set(licence LGPL-2.1-or-later.txt)
file(GLOB_RECURSE installed_licence ${INSTALL_PREFIX}/*/licenses/messageapiframework/${licence})
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files
    ${CONSUMER_SOURCE_DIR}/../../LICENSES/${licence} "${installed_licence}" RESULT_VARIABLE result)
if(result)
    message(FATAL_ERROR "LICENSES/${licence} is not installed as it is: '${installed_licence}'")
endif()

file(GLOB_RECURSE pcfile ${INSTALL_PREFIX}/*/messageapiframework.pc)
file(STRINGS ${pcfile} pclicence REGEX "^License:")
if(NOT pclicence STREQUAL "License: LGPL-2.1-or-later")
    message(FATAL_ERROR "the pkg-config file does not give the licence: '${pclicence}'")
endif()
find_program(PKG_CONFIG pkg-config)
if(PKG_CONFIG)
    get_filename_component(pcdir "${pcfile}" DIRECTORY)
    execute_process(COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${pcdir}
        ${PKG_CONFIG} --libs --cflags messageapiframework
        OUTPUT_VARIABLE flags RESULT_VARIABLE result)
    if(result OR NOT flags MATCHES "-lmessageapiframework" OR NOT flags MATCHES "include/messageapiframework")
        message(FATAL_ERROR "pkg-config does not describe the library: ${flags}")
    endif()
endif()
