# Registers GoogleTest programs with CTest.
include(GoogleTest)

# tavro_add_gtests(AREA PROGRAM): adds a CTest entry AREA.SUITE.TEST for each test of the target PROGRAM. Under an
# emulator and with sanitizers, where processes start slowly, adds a single entry AREA.PROGRAM.
function(tavro_add_gtests AREA PROGRAM)
    if(CMAKE_CROSSCOMPILING OR TAVRO_SANITIZE)
        add_test(NAME ${AREA}.${PROGRAM} COMMAND ${PROGRAM})
        set_tests_properties(${AREA}.${PROGRAM} PROPERTIES LABELS quick TIMEOUT 600)
    else()
        gtest_discover_tests(${PROGRAM} TEST_PREFIX ${AREA}. DISCOVERY_TIMEOUT 120
            PROPERTIES LABELS quick TIMEOUT 120)
    endif()
endfunction()
