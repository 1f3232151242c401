# Java archives. They do not depend on the processor or the compiler, so a lane can take those of the plain build instead
# of compiling the same sources again.
set(TAVRO_JARS_OF "" CACHE PATH "Build folder with tests whose Java archives this build uses; empty: it makes its own")
if(TAVRO_JARS_OF)
    # Lanes run side by side, but only one build at a time can use a build folder.
    add_custom_target(made_jars COMMENT "Java archives of ${TAVRO_JARS_OF}" VERBATIM
        COMMAND flock ${TAVRO_JARS_OF}/.jars.lock ${CMAKE_COMMAND} --build ${TAVRO_JARS_OF} --target tavro_tests_jar tavro_jvm_tests_jar -- --quiet)
endif()

# tavro_add_jar(TARGET NAME arguments of add_jar...): NAME.jar in the folder of libraries.
function(tavro_add_jar TARGET NAME)
    if(NOT TAVRO_JARS_OF)
        set(CMAKE_JAVA_COMPILE_FLAGS -Xlint:all -Werror --release 17 -encoding UTF-8 -parameters)
        set(CMAKE_JAVA_TARGET_OUTPUT_DIR ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
        add_jar(${TARGET} ${ARGN} OUTPUT_NAME ${NAME})
        return()
    endif()
    set(jar ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/${NAME}.jar)
    add_custom_command(OUTPUT ${jar} DEPENDS made_jars ${TAVRO_JARS_OF}/lib/${NAME}.jar VERBATIM
        COMMAND ${CMAKE_COMMAND} -E copy ${TAVRO_JARS_OF}/lib/${NAME}.jar ${jar})
    add_custom_target(${TARGET} ALL DEPENDS ${jar})
    set_target_properties(${TARGET} PROPERTIES JAR_FILE ${jar})
endfunction()
