// These tests open and sync many files, so they work in memory if there is a file system there.
#include <cstdlib>
#include <gtest/gtest.h>
#include <unistd.h>

int main(int count, char** arguments) {
    ::testing::InitGoogleTest(&count, arguments);
    if (::access("/dev/shm", W_OK | X_OK) == 0) {
        ::setenv("TMPDIR", "/dev/shm", 0);
    }
    return RUN_ALL_TESTS();
}
