# Registers GoogleTest programs with CTest.
include(GoogleTest)

# The lanes compile faster with line numbers only, and if UndefinedBehaviorSanitizer checks the library and the platforms
# but not the tests.
add_library(tavro_test_flags INTERFACE)
if(TAVRO_LANE AND NOT CMAKE_CROSSCOMPILING)
    target_compile_options(tavro_test_flags INTERFACE -g1)
endif()
if(TAVRO_SANITIZE MATCHES undefined)
    target_compile_options(tavro_test_flags INTERFACE -fno-sanitize=undefined)
endif()

# tavro_add_gtests(AREA PROGRAM): adds a CTest entry AREA.SUITE.TEST for each test of the target PROGRAM. In the lanes,
# which are faster with few processes, adds a single entry AREA.PROGRAM.
function(tavro_add_gtests AREA PROGRAM)
    target_link_libraries(${PROGRAM} PRIVATE tavro_test_flags) # after tavro_flags
    if(TAVRO_LANE)
        add_test(NAME ${AREA}.${PROGRAM} COMMAND ${PROGRAM})
        set_tests_properties(${AREA}.${PROGRAM} PROPERTIES LABELS quick TIMEOUT 600)
    else()
        gtest_discover_tests(${PROGRAM} TEST_PREFIX ${AREA}. DISCOVERY_TIMEOUT 120
            PROPERTIES LABELS quick TIMEOUT 120)
    endif()
endfunction()
