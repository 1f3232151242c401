# GoogleTest programs as CTest entries.
include(GoogleTest)

# tavro_add_gtests(AREA PROGRAM): an entry AREA.SUITE.TEST for each test of PROGRAM (a target), or, where a
# program starts under an emulator, one entry AREA.PROGRAM for all.
function(tavro_add_gtests AREA PROGRAM)
    if(CMAKE_CROSSCOMPILING)
        add_test(NAME ${AREA}.${PROGRAM} COMMAND ${PROGRAM})
        set_tests_properties(${AREA}.${PROGRAM} PROPERTIES LABELS quick TIMEOUT 600)
    else()
        gtest_discover_tests(${PROGRAM} TEST_PREFIX ${AREA}. DISCOVERY_TIMEOUT 120
            PROPERTIES LABELS quick TIMEOUT 120)
    endif()
endfunction()
