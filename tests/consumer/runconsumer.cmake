# Configures, builds and runs the consumer project against an installed prefix, and checks the
# installed licence text and the pkg-config files. Arguments: CONSUMER_SOURCE_DIR,
# CONSUMER_BINARY_DIR, INSTALL_PREFIX, QT_MAJOR, CONSUMER_RTCM3 (ON when the RTCM 3 format
# library was built).
file(REMOVE_RECURSE ${CONSUMER_BINARY_DIR})
execute_process(
    COMMAND ${CMAKE_COMMAND} -S ${CONSUMER_SOURCE_DIR} -B ${CONSUMER_BINARY_DIR}
        -DCMAKE_PREFIX_PATH=${INSTALL_PREFIX} -DCMAKE_BUILD_TYPE=Release
        -DCONSUMER_RTCM3=${CONSUMER_RTCM3}
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
if(CONSUMER_RTCM3 AND NOT output MATCHES "rtcm3 frames: 1")
    message(FATAL_ERROR "the consumer did not frame RTCM 3 as expected")
endif()

# The flags pkg-config gives for the module must name the libraries and the include folders
# (the platform library's too: the value types report to its allocation tracer inline).
function(check_pkgconfig module)
    file(GLOB_RECURSE pcfile ${INSTALL_PREFIX}/*/${module}.pc)
    get_filename_component(pcdir "${pcfile}" DIRECTORY)
    execute_process(COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${pcdir}
        ${PKG_CONFIG} --libs --cflags ${module}
        OUTPUT_VARIABLE flags RESULT_VARIABLE result)
    foreach(expected -l${module} -lmessageapiframework -lfw include/messageapiframework
                     include/fw)
        if(result OR NOT flags MATCHES "${expected}")
            message(FATAL_ERROR "pkg-config does not describe ${module}: ${flags}")
        endif()
    endforeach()
endfunction()

set(licence LGPL-2.1-or-later.txt)
file(GLOB_RECURSE installed_licence ${INSTALL_PREFIX}/*/licenses/messageapiframework/${licence})
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files
    ${CONSUMER_SOURCE_DIR}/../../LICENSES/${licence} "${installed_licence}" RESULT_VARIABLE result)
if(result)
    message(FATAL_ERROR "LICENSES/${licence} is not installed as it is: '${installed_licence}'")
endif()

file(GLOB_RECURSE pcfiles ${INSTALL_PREFIX}/*/messageapi*.pc)
foreach(pcfile ${pcfiles})
    file(STRINGS ${pcfile} pclicence REGEX "^License:")
    if(NOT pclicence STREQUAL "License: LGPL-2.1-or-later")
        message(FATAL_ERROR "${pcfile} does not give the licence: '${pclicence}'")
    endif()
endforeach()
find_program(PKG_CONFIG pkg-config)
if(PKG_CONFIG)
    check_pkgconfig(messageapiframework)
    if(CONSUMER_RTCM3)
        check_pkgconfig(messageapirtcm3)
    endif()
endif()
