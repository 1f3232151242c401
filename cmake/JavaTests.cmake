# JUnit 5 tests as CTest entries, one a class.

set(TAVRO_JUNIT /usr/share/java/junit-platform-console-standalone.jar)

# A Java virtual machine is not built with sanitizers: their run-time libraries are loaded first. The
# C++ library comes along because the first exception would not find its functions otherwise. The
# machine's own signals stay its own.
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

# The virtual machine that the tests run on: this machine's, or one that a toolchain file names.
if(NOT TAVRO_JAVA)
    set(TAVRO_JAVA ${Java_JAVA_EXECUTABLE})
endif()
set(TAVRO_TEST_JAVA ${TAVRO_JAVA} CACHE INTERNAL "Virtual machine that the tests run on")

# tavro_add_junit(AREA GROUP JAR CLASSES class... [ENVIRONMENT name=value...] [JVM_ARGS arg...])
# Runs the tests of CLASSES, which JAR (a target of add_jar) holds, over a fresh storage directory: an
# entry AREA.CLASS for each, or, where a virtual machine starts under an emulator and takes its time, one
# entry AREA.GROUP for all.
function(tavro_add_junit AREA GROUP JAR)
    cmake_parse_arguments(PARSE_ARGV 3 ARG "" "" "CLASSES;ENVIRONMENT;JVM_ARGS")
    if(CMAKE_CROSSCOMPILING)
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
