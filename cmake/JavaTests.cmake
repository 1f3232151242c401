# Registers JUnit 5 tests with CTest, one entry per class.

set(TAVRO_JUNIT /usr/share/java/junit-platform-console-standalone.jar)

# Most tests end before much of their code is compiled, and the leak check of AddressSanitizer looks at less memory.
set(TAVRO_JVM_OPTIONS "")
if(NOT CMAKE_CROSSCOMPILING)
    set(TAVRO_JVM_OPTIONS -XX:+UseSerialGC -XX:TieredStopAtLevel=1)
endif()

# With AddressSanitizer, sanitized.sh runs the virtual machine and looks for errors and leaks.
set(TAVRO_SANITIZED "")
if(TAVRO_SANITIZE MATCHES address)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libasan.so OUTPUT_VARIABLE asan_library
        OUTPUT_STRIP_TRAILING_WHITESPACE)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libstdc++.so OUTPUT_VARIABLE cxx_library
        OUTPUT_STRIP_TRAILING_WHITESPACE)
    file(REAL_PATH ${asan_library} asan_library)
    file(REAL_PATH ${cxx_library} cxx_library)
    set(TAVRO_SANITIZED ${CMAKE_SOURCE_DIR}/cmake/sanitized.sh ${asan_library}:${cxx_library})
endif()

# The Java virtual machine that the tests use: the toolchain file's, or else this machine's.
if(NOT TAVRO_JAVA)
    set(TAVRO_JAVA ${Java_JAVA_EXECUTABLE})
endif()
set(TAVRO_TEST_JAVA ${TAVRO_JAVA} CACHE INTERNAL "Virtual machine that the tests run on")

# tavro_archive_test_classes(JAR class...): archives the classes that these classes of tests load, JUnit's among them,
# for the tests of JAR that are added later. Only the plain build has a virtual machine for each class of tests.
function(tavro_archive_test_classes JAR)
    get_target_property(jar_file ${JAR} JAR_FILE)
    get_target_property(tavro_file tavro_jar JAR_FILE)
    list(TRANSFORM ARGN PREPEND "-c;" OUTPUT_VARIABLE selection)
    tavro_archive_classes(${JAR}_classes ${JAR} JAVA ${TAVRO_JAVA} ${TAVRO_JVM_OPTIONS}
        DEPENDS ${JAR} ${jar_file} ${tavro_file}
        COMMAND -Djava.library.path=${CMAKE_BINARY_DIR}/lib -cp ${jar_file}:${tavro_file}:${TAVRO_JUNIT}
            org.junit.platform.console.ConsoleLauncher --disable-banner --details=tree ${selection})
    set_target_properties(${JAR} PROPERTIES TAVRO_ARCHIVE ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/${JAR}.jsa)
endfunction()

# tavro_add_junit(AREA GROUP JAR CLASSES class... [TOGETHER] [ENVIRONMENT name=value...] [JVM_ARGS arg...])
# Runs the tests of CLASSES from JAR (a target of add_jar), each class in a fresh storage directory, as entries
# AREA.CLASS. In the lanes, which are faster with few processes, and with TOGETHER, adds a single entry AREA.GROUP.
function(tavro_add_junit AREA GROUP JAR)
    cmake_parse_arguments(PARSE_ARGV 3 ARG "TOGETHER" "" "CLASSES;ENVIRONMENT;JVM_ARGS")
    if(TAVRO_LANE OR ARG_TOGETHER)
        list(TRANSFORM ARG_CLASSES PREPEND "-c;" OUTPUT_VARIABLE selection)
        add_junit_entry(${AREA}.${GROUP})
    else()
        foreach(class ${ARG_CLASSES})
            string(REGEX REPLACE ".*\\." "" name ${class})
            set(selection -c ${class})
            add_junit_entry(${AREA}.${name})
        endforeach()
    endif()
endfunction()

macro(add_junit_entry NAME)
    get_target_property(jar_file ${JAR} JAR_FILE)
    get_target_property(tavro_file tavro_jar JAR_FILE)
    get_target_property(archive ${JAR} TAVRO_ARCHIVE)
    set(use_archive "")
    if(archive)
        set(use_archive -XX:SharedArchiveFile=${archive})
    endif()
    set(sanitized "")
    if(TAVRO_SANITIZED)
        set(sanitized ${TAVRO_SANITIZED} ${CMAKE_BINARY_DIR}/reports/${NAME})
    endif()
    add_test(NAME ${NAME} COMMAND ${CMAKE_SOURCE_DIR}/cmake/fresh-home.sh ${CMAKE_BINARY_DIR}/homes/${NAME} ${sanitized}
        ${TAVRO_JAVA} ${TAVRO_JVM_OPTIONS} -ea -Djava.library.path=${CMAKE_BINARY_DIR}/lib:${CMAKE_BINARY_DIR}/lib/scripted
        ${use_archive} ${ARG_JVM_ARGS} -cp ${jar_file}:${tavro_file}:${TAVRO_JUNIT}
        org.junit.platform.console.ConsoleLauncher --disable-banner --disable-ansi-colors --details=tree --details-theme=ascii
        --fail-if-no-tests ${selection})
    set_tests_properties(${NAME} PROPERTIES LABELS quick TIMEOUT 900
        ENVIRONMENT "${ARG_ENVIRONMENT}")
endmacro()
