# Toolchain for 32-bit ARM Linux: Debian's cross compiler. Programs run under qemu-arm with the ARM packages that
# armhf-root.sh prepares.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)

execute_process(COMMAND ${CMAKE_CURRENT_LIST_DIR}/armhf-root.sh
    OUTPUT_VARIABLE TAVRO_ARMHF_ROOT OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "Cannot get the 32-bit ARM packages; see the lines above that begin with \"armhf:\".")
endif()

# Libraries come from the prepared folder. Programs, such as javac, and Java's headers come from this machine.
set(CMAKE_FIND_ROOT_PATH ${TAVRO_ARMHF_ROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE NEVER)

set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm -L ${TAVRO_ARMHF_ROOT})
set(TAVRO_JAVA ${TAVRO_ARMHF_ROOT}/usr/lib/jvm/java-17-openjdk-armhf/bin/java)
