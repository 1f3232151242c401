// Launchers that run child processes with their own mounts, or without root's override of permissions.
#pragma once

#include <string>
#include <vector>

// Runs a program in its own mount namespace, after the shell commands in `script` have made the mounts. Exits silently
// with kNoSandbox if the kernel refuses the namespace or a mount.
std::vector<std::string> sandboxed(const std::string& script);
inline constexpr int kNoSandbox = 77;

// True if this user can mount file systems in a new namespace.
bool sandbox_works();

// Runs a program for which file permissions apply even if the tests run as root.
std::vector<std::string> without_privileges();

#define TAVRO_NEEDS_SANDBOX()                                                                                          \
    if (!sandbox_works()) {                                                                                            \
        GTEST_SKIP() << "the kernel allows no mounts here, not even in a new namespace";                               \
    }
