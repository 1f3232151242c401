# Input for a demo with a few services, which loads the classes that most commands load. tavro_archive_classes takes
# "training_demo" and the folder that TAVRO_HOME is in as arguments of the tool.
set(training ${CMAKE_CURRENT_BINARY_DIR}/training)
file(CONFIGURE OUTPUT ${training}/channels.conf.sat CONTENT "\
Uno:11493:H:S19.2E:22000:101=27:102:0:0:1:1:1019:0
Due:11493:H:S19.2E:22000:201=27:202:0:98c:2:1:1019:0
Tre:11494:V:S19.2E:22000:0:302:0:0:3:1:1020:0
Vier:11494:V:S19.2E:22000:0:402:0:0:4:1:1020:0
")
file(CONFIGURE OUTPUT ${training}/channels.conf.cable CONTENT "\
Koeln:410:M64:C:6900:101:102:0:0:5:0:0:0
Bonn:418:M64:C:6900:201:202:0:0:6:0:0:0
")
file(CONFIGURE OUTPUT ${training}/channels.conf.terr CONTENT "Sieben:490000:I0:T:27500:545:546:0:0:7:0:0\n")
file(CONFIGURE OUTPUT ${training}/sources.conf CONTENT "S13E Quattro\nS19.2E Cinque Sei\n")
file(CONFIGURE OUTPUT ${training}/diseqc.conf CONTENT "S19.2E 99999 H 10600 t V\n")
set(training_demo demo ${training} ${training})
