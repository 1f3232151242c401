// Counts and fails the system calls that the stand-ins make for files.
#pragma once

#include <functional>
#include <string>
#include <vector>

// While an object exists, counts the calls of this process, and lets one of them fail. The stand-ins' and SQLite's
// calls go through replacements in the test program.
class FileCalls {
public:
    FileCalls();
    ~FileCalls();
    FileCalls(const FileCalls&) = delete;
    FileCalls& operator=(const FileCalls&) = delete;

    // The next `call`th sync, read or flock from now on, counted from 1, fails with this errno value.
    static void fail_sync(int call, int error);
    static void fail_read(int call, int error);
    static void fail_lock(int call, int error);

    // The same for calls that change files: open, write, sync, truncate, rename, remove. Unless `period` is 0, every
    // `period`th call after that fails, too; with 1, all of them.
    static void fail_change(int call, int error, int period);
    // Lets every call pass again. Returns whether one failed.
    static bool end_failures();

    // Calls `action` once, when `path` is opened the next time: before or after the call.
    static void before_open(const std::string& path, const std::function<void()>& action);
    static void after_open(const std::string& path, const std::function<void()>& action);

    // The paths below a directory that were opened for writing or could have been created.
    static std::vector<std::string> opened_to_write(const std::string& directory);

    static int syncs();
    // The path of the file that was synced first.
    static std::string first_synced();
};
