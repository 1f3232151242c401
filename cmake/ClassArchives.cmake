# Archives of Java classes. Most of the time that a virtual machine takes to start goes into loading classes; from an
# archive it maps them into memory as it had them before. It ignores an archive that does not fit its jars.

# tavro_archive_classes(TARGET NAME JAVA command... DEPENDS file... COMMAND argument...)
# NAME.jsa in the folder of libraries, with the classes that JAVA loads for COMMAND. TARGET is built by default. Whether
# COMMAND succeeds does not matter.
function(tavro_archive_classes TARGET NAME)
    cmake_parse_arguments(PARSE_ARGV 2 ARG "" "" "JAVA;DEPENDS;COMMAND")
    set(archive ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/${NAME}.jsa)
    add_custom_command(OUTPUT ${archive} DEPENDS ${ARG_DEPENDS} VERBATIM
        COMMENT "Archiving the classes of ${NAME}.jsa"
        COMMAND ${CMAKE_SOURCE_DIR}/cmake/fresh-home.sh ${CMAKE_BINARY_DIR}/homes/${TARGET}/home
            ${CMAKE_SOURCE_DIR}/cmake/archive-classes.sh ${archive}
            ${ARG_JAVA} -XX:ArchiveClassesAtExit=${archive}.part ${ARG_COMMAND})
    add_custom_target(${TARGET} ALL DEPENDS ${archive})
    # Only an order: a new library does not change the classes.
    add_dependencies(${TARGET} velotra_tavro_channellist tavro_tool)
endfunction()
