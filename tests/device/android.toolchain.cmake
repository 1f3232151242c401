# Replaces the NDK's file of the same name, because Debian has no NDK: Clang for the same target, with the same CMake
# variables. C headers come from Debian's ARM cross compiler; the JNI and log headers are Android's. There is no C library
# to link to, so the library's C and C++ functions stay undefined.
set(CMAKE_SYSTEM_NAME Android)
set(CMAKE_SYSTEM_VERSION 1) # stops CMake from looking for an NDK
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

# The Android ABI passes floating point numbers in integer registers (soft-float calls). The cross compiler's headers are
# for hard-float and lack gnu/stubs-soft.h; an empty file is enough.
set(abi_headers ${CMAKE_BINARY_DIR}/abi-headers)
if(NOT EXISTS ${abi_headers})
    file(WRITE ${abi_headers}/gnu/stubs-soft.h "")
    file(CREATE_LINK /usr/include/android/android ${abi_headers}/android SYMBOLIC)
endif()
set(abi_flags "-march=armv7-a -mfloat-abi=softfp -nostdlibinc -Qunused-arguments")
set(CMAKE_C_FLAGS_INIT "${abi_flags}")
set(CMAKE_CXX_FLAGS_INIT "${abi_flags}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-nostdlib -fuse-ld=lld-14")
# Replaces the NDK's libdl by nothing, like the C library.
file(WRITE ${CMAKE_BINARY_DIR}/no-libraries/libdl.so "INPUT()\n")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-nostdlib -fuse-ld=lld-14 -L${CMAKE_BINARY_DIR}/no-libraries -Wl,--entry=main -Wl,--unresolved-symbols=ignore-all")
set(platform_headers /usr/include/android/nativehelper ${abi_headers} /usr/arm-linux-gnueabihf/include)
set(CMAKE_C_STANDARD_INCLUDE_DIRECTORIES ${platform_headers})
# The C++ library's headers include the C headers of the same names, so they must come first.
set(CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES /usr/lib/llvm-14/include/c++/v1 ${platform_headers})
