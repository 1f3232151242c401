// Launchers for child processes that see a file system of their own or obey permissions.
#pragma once

#include <string>
#include <vector>

// Runs a program in a mount namespace of its own, after `script`, a shell script that mounts what the program is
// to see. The child ends with kNoSandbox, and says nothing, when the kernel refuses the namespace or a mount.
std::vector<std::string> sandboxed(const std::string& script);
inline constexpr int kNoSandbox = 77;

// Whether the kernel lets this user have mounts in a namespace of its own.
bool sandbox_works();

// Runs a program that permissions apply to, although the tests may run as root.
std::vector<std::string> without_privileges();

#define TAVRO_NEEDS_SANDBOX()                                                                                          \
    if (!sandbox_works()) {                                                                                            \
        GTEST_SKIP() << "the kernel allows no mounts here, not even in a namespace of our own";                        \
    }
