# Builds the Debian packages, unpacks them into a scratch root as dpkg would install them, and
# checks that they serve: their names and dependencies, the consumer project built and run
# against the root (runconsumer.cmake), and msgscan from the root in German.
# Arguments: BUILD_DIR, WORK_DIR, CONSUMER_SOURCE_DIR, QT_MAJOR, CONSUMER_RTCM3, PROGRAMS (ON
# when msgscan was built).
file(REMOVE_RECURSE ${WORK_DIR})
execute_process(
    COMMAND ${CMAKE_CPACK_COMMAND} -G DEB --config ${BUILD_DIR}/CPackConfig.cmake
        -B ${WORK_DIR}/packages
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(result)
    message(FATAL_ERROR "cpack failed:\n${output}")
endif()

# Each package by its name, with its dependencies.
set(expected libmessageapiframework15 libmessageapiframework-dev)
if(CONSUMER_RTCM3)
    list(APPEND expected libmessageapirtcm3-1)
endif()
if(PROGRAMS)
    list(APPEND expected messageapiframework-tools)
endif()
file(GLOB debs ${WORK_DIR}/packages/*.deb)
set(names)
foreach(deb ${debs})
    execute_process(COMMAND dpkg-deb -f ${deb} Package OUTPUT_VARIABLE name
        OUTPUT_STRIP_TRAILING_WHITESPACE)
    execute_process(COMMAND dpkg-deb -f ${deb} Depends OUTPUT_VARIABLE depends_${name}
        OUTPUT_STRIP_TRAILING_WHITESPACE)
    message(STATUS "${name}: Depends: ${depends_${name}}")
    list(APPEND names ${name})
    execute_process(COMMAND dpkg-deb -x ${deb} ${WORK_DIR}/root RESULT_VARIABLE result)
    if(result)
        message(FATAL_ERROR "dpkg-deb cannot unpack ${deb}")
    endif()
endforeach()
list(SORT names)
list(SORT expected)
if(NOT names STREQUAL expected)
    message(FATAL_ERROR "packages built: '${names}', expected: '${expected}'")
endif()
function(expect_depends package dependency)
    if(NOT depends_${package} MATCHES "(^|, )${dependency}")
        message(FATAL_ERROR "${package} does not depend on ${dependency}: ${depends_${package}}")
    endif()
endfunction()
expect_depends(libmessageapiframework15 "libqt${QT_MAJOR}core")
expect_depends(libmessageapiframework-dev "libmessageapiframework15 \\(= ")
if(CONSUMER_RTCM3)
    expect_depends(libmessageapirtcm3-1 "libmessageapiframework15 \\(= ")
endif()
if(PROGRAMS)
    expect_depends(messageapiframework-tools "libmessageapirtcm3-1 \\(= ")
    expect_depends(messageapiframework-tools "libqt${QT_MAJOR}network")
    expect_depends(messageapiframework-tools "libqt${QT_MAJOR}widgets")
endif()

execute_process(
    COMMAND ${CMAKE_COMMAND} -DCONSUMER_SOURCE_DIR=${CONSUMER_SOURCE_DIR}
        -DCONSUMER_BINARY_DIR=${WORK_DIR}/consumer-build -DINSTALL_PREFIX=${WORK_DIR}/root/usr
        -DQT_MAJOR=${QT_MAJOR} -DCONSUMER_RTCM3=${CONSUMER_RTCM3}
        -P ${CMAKE_CURRENT_LIST_DIR}/runconsumer.cmake
    RESULT_VARIABLE result)
if(result)
    message(FATAL_ERROR "the consumer does not work with the unpacked packages")
endif()

# The program finds the catalogues that the runtime package put beside it.
if(PROGRAMS)
    execute_process(
        COMMAND ${CMAKE_COMMAND} -E env --unset=LC_ALL --unset=LC_MESSAGES LANG=de_DE.UTF-8
            ${WORK_DIR}/root/usr/bin/msgscan
        RESULT_VARIABLE result ERROR_VARIABLE error)
    if(NOT result EQUAL 2 OR NOT error MATCHES "^msgscan: keine Eingabe angegeben\n")
        message(FATAL_ERROR "msgscan from the packages does not speak German: ${result}: ${error}")
    endif()
endif()
