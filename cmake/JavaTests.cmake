# Registers JUnit 5 tests with CTest, one entry per class.

set(TAVRO_JUNIT /usr/share/java/junit-platform-console-standalone.jar)

# The Java virtual machine is not built with sanitizers, so their runtime is preloaded. The C++ library must be preloaded
# too: otherwise the first C++ exception aborts. handle_segv=0 leaves SIGSEGV to the virtual machine, which uses it.
set(TAVRO_JVM_ENVIRONMENT "")
if(TAVRO_SANITIZE MATCHES address)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libasan.so OUTPUT_VARIABLE asan_library
        OUTPUT_STRIP_TRAILING_WHITESPACE)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libstdc++.so OUTPUT_VARIABLE cxx_library
        OUTPUT_STRIP_TRAILING_WHITESPACE)
    file(REAL_PATH ${asan_library} asan_library)
    file(REAL_PATH ${cxx_library} cxx_library)
    set(TAVRO_JVM_ENVIRONMENT
        "LD_PRELOAD=${asan_library}:${cxx_library}"
        "ASAN_OPTIONS=handle_segv=0:intercept_tls_get_addr=0:detect_leaks=0:exitcode=99"
        "UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1")
endif()

# The Java virtual machine that the tests use: the toolchain file's, or else this machine's.
if(NOT TAVRO_JAVA)
    set(TAVRO_JAVA ${Java_JAVA_EXECUTABLE})
endif()
set(TAVRO_TEST_JAVA ${TAVRO_JAVA} CACHE INTERNAL "Virtual machine that the tests run on")

# tavro_add_junit(AREA GROUP JAR CLASSES class... [ENVIRONMENT name=value...] [JVM_ARGS arg...])
# Runs the tests of CLASSES from JAR (a target of add_jar), each class in a fresh storage directory, as entries
# AREA.CLASS. In the lanes, which are faster with few processes, adds a single entry AREA.GROUP.
function(tavro_add_junit AREA GROUP JAR)
    cmake_parse_arguments(PARSE_ARGV 3 ARG "" "" "CLASSES;ENVIRONMENT;JVM_ARGS")
    if(TAVRO_LANE)
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
    add_test(NAME ${NAME} COMMAND ${CMAKE_SOURCE_DIR}/cmake/fresh-home.sh ${CMAKE_BINARY_DIR}/homes/${NAME}
        ${TAVRO_JAVA} -ea -Djava.library.path=${CMAKE_BINARY_DIR}/lib:${CMAKE_BINARY_DIR}/lib/scripted
        ${ARG_JVM_ARGS} -cp ${jar_file}:${tavro_file}:${TAVRO_PICOCLI}:${TAVRO_JUNIT}
        org.junit.platform.console.ConsoleLauncher --disable-banner --disable-ansi-colors --details=tree --details-theme=ascii
        --fail-if-no-tests ${selection})
    set_tests_properties(${NAME} PROPERTIES LABELS quick TIMEOUT 900
        ENVIRONMENT "${TAVRO_JVM_ENVIRONMENT};${ARG_ENVIRONMENT}")
endmacro()
