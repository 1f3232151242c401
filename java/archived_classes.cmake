# Under an emulator, most of the time that a small program takes goes into loading its classes. This archives the classes
# that a demo with a few services loads, as the virtual machine has them in memory. Tests pass the option
# use_archived_classes, and ToolProcess passes it on.
set(training ${CMAKE_CURRENT_BINARY_DIR}/training)
file(WRITE ${training}/channels.conf.sat "\
Uno:11493:H:S19.2E:22000:101=27:102:0:0:1:1:1019:0
Due:11493:H:S19.2E:22000:201=27:202:0:98c:2:1:1019:0
Tre:11494:V:S19.2E:22000:0:302:0:0:3:1:1020:0
Vier:11494:V:S19.2E:22000:0:402:0:0:4:1:1020:0
")
file(WRITE ${training}/channels.conf.cable "\
Koeln:410:M64:C:6900:101:102:0:0:5:0:0:0
Bonn:418:M64:C:6900:201:202:0:0:6:0:0:0
")
file(WRITE ${training}/channels.conf.terr "Sieben:490000:I0:T:27500:545:546:0:0:7:0:0\n")
file(WRITE ${training}/sources.conf "S13E Quattro\nS19.2E Cinque Sei\n")
file(WRITE ${training}/diseqc.conf "S19.2E 99999 H 10600 t V\n")

set(archive ${CMAKE_BINARY_DIR}/lib/tavro-tests.jsa)
get_target_property(tests_file tavro_tests_jar JAR_FILE)
get_target_property(tavro_file tavro_jar JAR_FILE)
add_custom_command(OUTPUT ${archive} DEPENDS tavro_tests_jar tavro_jar ${tests_file} ${tavro_file} velotra_tavro_channellist
    COMMAND ${CMAKE_SOURCE_DIR}/cmake/fresh-home.sh ${training}/home ${TAVRO_JAVA} -XX:ArchiveClassesAtExit=${archive}
        -Djava.library.path=${CMAKE_BINARY_DIR}/lib -cp ${tests_file}:${tavro_file}:${TAVRO_JUNIT}
        com.velotra.tv.tavro.tool.Main demo ${training} ${training} ${training} > ${training}/log 2>&1
    VERBATIM)
add_custom_target(archived_classes ALL DEPENDS ${archive})
set(use_archived_classes -XX:SharedArchiveFile=${archive})
