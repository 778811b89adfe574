# Runs lupdate on the sources of the library, the format libraries and the programs (not their
# tests) for every catalogue of translations/. Arguments: LUPDATE, SOURCE_DIR, WORK_DIR, and
# CHECK: when ON, updates copies in WORK_DIR instead and fails if any differs from the committed
# catalogue, naming the texts that are new or gone.
file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})
file(GLOB_RECURSE sources LIST_DIRECTORIES false
    ${SOURCE_DIR}/src/*.cpp ${SOURCE_DIR}/src/*.h
    ${SOURCE_DIR}/formats/*.cpp ${SOURCE_DIR}/formats/*.h
    ${SOURCE_DIR}/apps/*.cpp ${SOURCE_DIR}/apps/*.h)
list(FILTER sources EXCLUDE REGEX "/tests/")
list(SORT sources)
list(JOIN sources "\n" lines)
file(WRITE ${WORK_DIR}/sources.lst "${lines}\n")

file(GLOB catalogues ${SOURCE_DIR}/translations/*.ts)
foreach(catalogue ${catalogues})
    get_filename_component(name ${catalogue} NAME)
    set(target ${catalogue})
    if(CHECK)
        set(target ${WORK_DIR}/${name})
        file(COPY_FILE ${catalogue} ${target})
    endif()
    # No source locations: they would change with every edit of a source file.
    execute_process(
        COMMAND ${LUPDATE} -silent -locations none -no-obsolete @${WORK_DIR}/sources.lst
            -ts ${target}
        RESULT_VARIABLE result)
    if(result)
        message(FATAL_ERROR "lupdate failed on ${name}")
    endif()
    if(CHECK)
        file(READ ${catalogue} before)
        file(READ ${target} after)
        if(NOT before STREQUAL after)
            execute_process(COMMAND diff -u ${catalogue} ${target})
            message(FATAL_ERROR "translations/${name} is not current: "
                "run cmake --build <build> --target update_translations and translate the new texts")
        endif()
    endif()
endforeach()
