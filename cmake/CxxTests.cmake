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

# Compiles several sources of TARGET at a time: tests spend most of their compile time in the same headers and templates.
# Names in anonymous namespaces must therefore differ between them. Sources named after TARGET are compiled alone, because
# they have names that others have, too.
function(tavro_compile_together TARGET)
    set_source_files_properties(${ARGN} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    set_target_properties(${TARGET} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 10)
    if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
        # GCC takes the tests for headers, because the sources that it compiles include them.
        set_target_properties(${TARGET} PROPERTIES
            UNITY_BUILD_CODE_BEFORE_INCLUDE "#pragma GCC diagnostic ignored \"-Wsubobject-linkage\"")
    endif()
endfunction()
