# Stands in for the file of the same name in an NDK, which Debian does not carry: Clang for the same
# target, with the variables that CMake's users see. The target's C headers are those of Debian's ARM
# cross compiler, JNI and log headers are Android's own. There is no C library to link to, so that the
# library's C and C++ functions stay undefined.
set(CMAKE_SYSTEM_NAME Android)
set(CMAKE_SYSTEM_VERSION 1) # no NDK to look for
set(CMAKE_SYSTEM_PROCESSOR armv7-a)
set(ANDROID TRUE)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ANDROID_ABI)
if(NOT ANDROID_ABI STREQUAL "armeabi-v7a")
    message(FATAL_ERROR "ANDROID_ABI is '${ANDROID_ABI}' and should be armeabi-v7a")
endif()

set(CMAKE_C_COMPILER clang-14)
set(CMAKE_CXX_COMPILER clang++-14)
set(CMAKE_C_COMPILER_TARGET armv7a-linux-androideabi24)
set(CMAKE_CXX_COMPILER_TARGET armv7a-linux-androideabi24)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

# The ABI's calling convention passes floating point numbers in integer registers. The cross compiler's
# does not, and its headers have no list of missing functions for the other: an empty one will do.
set(abi_headers ${CMAKE_BINARY_DIR}/abi-headers)
if(NOT EXISTS ${abi_headers})
    file(WRITE ${abi_headers}/gnu/stubs-soft.h "")
    file(CREATE_LINK /usr/include/android/android ${abi_headers}/android SYMBOLIC)
endif()
set(abi_flags "-march=armv7-a -mfloat-abi=softfp -nostdlibinc -Qunused-arguments")
set(CMAKE_C_FLAGS_INIT "${abi_flags}")
set(CMAKE_CXX_FLAGS_INIT "${abi_flags}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-nostdlib -fuse-ld=lld-14")
set(platform_headers /usr/include/android/nativehelper ${abi_headers} /usr/arm-linux-gnueabihf/include)
set(CMAKE_C_STANDARD_INCLUDE_DIRECTORIES ${platform_headers})
# The C++ library's headers include C headers of the same names and come before them.
set(CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES /usr/lib/llvm-14/include/c++/v1 ${platform_headers})
