# Registers GoogleTest programs with CTest.

# The lanes compile faster with line numbers only, and if UndefinedBehaviorSanitizer checks the library and the platforms
# but not the tests.
add_library(tavro_test_flags INTERFACE)
if(TAVRO_LANE AND NOT CMAKE_CROSSCOMPILING)
    target_compile_options(tavro_test_flags INTERFACE -g1)
endif()
if(TAVRO_SANITIZE MATCHES undefined)
    target_compile_options(tavro_test_flags INTERFACE -fno-sanitize=undefined)
endif()

# tavro_add_gtests(AREA PROGRAM): adds a CTest entry AREA.SUITE for each suite of the target PROGRAM, because an entry for
# each test would take more time than most tests do. In the lanes, which are faster with few processes, adds a single
# entry AREA.PROGRAM.
function(tavro_add_gtests AREA PROGRAM)
    target_link_libraries(${PROGRAM} PRIVATE tavro_test_flags) # after tavro_flags
    if(TAVRO_LANE)
        add_test(NAME ${AREA}.${PROGRAM} COMMAND ${PROGRAM})
        set_tests_properties(${AREA}.${PROGRAM} PROPERTIES LABELS quick TIMEOUT 600)
        return()
    endif()
    # The program itself knows its suites, so they are listed whenever it is linked.
    set(script ${CMAKE_SOURCE_DIR}/cmake/gtest_suites.cmake)
    set(suites ${CMAKE_CURRENT_BINARY_DIR}/${PROGRAM}_suites.cmake)
    set_property(TARGET ${PROGRAM} APPEND PROPERTY LINK_DEPENDS ${script})
    add_custom_command(TARGET ${PROGRAM} POST_BUILD BYPRODUCTS ${suites} VERBATIM
        COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:${PROGRAM}> -DAREA=${AREA} -DOUTPUT=${suites} -P ${script})
    # A program that was not built must not pass unnoticed.
    set(entries ${CMAKE_CURRENT_BINARY_DIR}/${PROGRAM}_entries.cmake)
    file(CONFIGURE OUTPUT ${entries} @ONLY CONTENT
"if(EXISTS [=[@suites@]=])
    include([=[@suites@]=])
else()
    add_test([=[@AREA@.@PROGRAM@-is-not-built]=] false)
    set_tests_properties([=[@AREA@.@PROGRAM@-is-not-built]=] PROPERTIES LABELS quick)
endif()
")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${entries})
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
