# Links the library for a device; used with an NDK's toolchain file.
#
# With TAVRO_PLATFORM_LIBRARIES the library is linked to the device's own libraries. Otherwise it is linked to empty
# stub libraries with the same names and functions, which gives the same result without files from a device. The stubs
# are in the build folder's link/ and must never be installed.

if(NOT CMAKE_SIZEOF_VOID_P EQUAL 4)
    message(FATAL_ERROR "The channel list library must be 32-bit, like the middleware, but this toolchain builds for "
        "${CMAKE_SIZEOF_VOID_P}-byte pointers. Configure with -DANDROID_ABI=armeabi-v7a.")
endif()

set(TAVRO_PLATFORM_LIBRARIES "" CACHE STRING
    "The device's three middleware libraries, libcutils and liblog, as file names separated by semicolons")

# Adds a stub library NAME with the platform functions that match PATTERN.
function(tavro_link_library NAME PATTERN)
    file(STRINGS ${CMAKE_SOURCE_DIR}/include/platform/symbols.txt functions REGEX ${PATTERN})
    list(TRANSFORM functions REPLACE "(.+)" "void \\1(void) {}\n" OUTPUT_VARIABLE bodies)
    string(CONCAT text ${bodies})
    file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/link/${NAME}.c CONTENT "${text}")
    add_library(link_${NAME} SHARED ${CMAKE_BINARY_DIR}/link/${NAME}.c)
    set_target_properties(link_${NAME} PROPERTIES
        OUTPUT_NAME ${NAME} LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/link)
    target_link_libraries(velotra_tavro_channellist PRIVATE link_${NAME})
endfunction()

if(TAVRO_PLATFORM_LIBRARIES)
    target_link_libraries(velotra_tavro_channellist PRIVATE ${TAVRO_PLATFORM_LIBRARIES})
else()
    tavro_link_library(velotra_tv_basic "^(fs_|x_fm_)")
    tavro_link_library(velotra_tv_svl_builder "^x_sb_")
    tavro_link_library(velotra_tv_services "^x_(svl|tsl|nwl|satl)_")
    tavro_link_library(cutils "^property_")
    tavro_link_library(log "^__android_log_")
endif()
