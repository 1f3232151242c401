# Writes a file that adds a CTest entry AREA.SUITE for each suite of a GoogleTest program:
#
#   cmake -DPROGRAM=FILE -DAREA=AREA -DOUTPUT=FILE -P gtest_suites.cmake
execute_process(COMMAND ${PROGRAM} --gtest_list_tests OUTPUT_VARIABLE listing COMMAND_ERROR_IS_FATAL ANY)
# A suite is on a line of its own, with a dot and perhaps a comment after it. Its tests are on indented lines.
string(REGEX MATCHALL "(^|\n)[A-Za-z][A-Za-z0-9_/]*\\.[ \n]" suites "${listing}")
if(NOT suites)
    message(FATAL_ERROR "${PROGRAM} lists no tests")
endif()
set(entries "")
foreach(suite ${suites})
    string(REGEX REPLACE "[ .\n]" "" suite ${suite})
    string(APPEND entries "add_test([=[${AREA}.${suite}]=] [=[${PROGRAM}]=] [=[--gtest_filter=${suite}.*]=])\n"
        "set_tests_properties([=[${AREA}.${suite}]=] PROPERTIES LABELS quick TIMEOUT 300)\n")
endforeach()
file(WRITE ${OUTPUT} "${entries}")
