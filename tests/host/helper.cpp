// The child process of the tests. It uses network list 1, and some commands list 2, in TAVRO_HOME, and prints one line
// per completed step to standard output. The exit code is 0 unless a call failed.
//
//     add FIRST COUNT   adds records FIRST, FIRST + 1, … and prints each id after its add
//     remove ID         removes a record
//     changes KIND      reads changes from standard input, applies them to lists of a kind, and prints the status of
//                       each
//     read KIND         opens list 1 of a kind, and prints id and fill of each record
//     churn             updates record 1 until it is killed; prints a line after the first update
//     killed_add N ID   adds a record and kills itself before the Nth file operation that SQLite makes for it
//     lock | read_lock [LIST]
//                       locks LIST (default 1), prints "locked" and holds the lock until standard input ends
//     read_twice        takes the read lock, prints "locked", waits for a line on standard input, takes the read lock
//     in
//                       another thread too, prints that status, and holds the locks until standard input ends
//     lock_loop         takes and releases the read and write locks until it is killed; prints "locked" after the first
//                       round
//     read_loop         takes and releases the read lock in two threads until standard input ends; prints "locked" when
//                       they have started
//     write_loop        takes the write lock, changes a record several times and releases the lock, again and again
//     until
//                       standard input ends; prints "locked" after the first round
//     fork_lock         takes the write lock and forks a child, which prints the statuses of its calls. Both live until
//                       standard input ends
//     first_call_without_memory
//                       opens list 1 without memory and then with memory, and prints both statuses
//     stopped_open STEP opens list 1, and stops itself before that file operation of SQLite; prints "opened"
//     increment PATH COUNT
//                       increments the number in a file COUNT times, under the write lock
//     store PATH        stores list 1 and list 2 to PATH in turn until it is killed; prints a line after each
//     fill COUNT [FILE] makes COUNT calls. Each adds a record to list 1 or, if the list is not open, opens or creates
//                       it. Prints each distinct status once, in order of occurrence. With FILE, then removes that file
//                       and prints the status of one more call
//     property NAME     prints a property twice; "default" if it is not set
//     property_after_mount NAME FROM TO
//                       prints a property before and after mounting directory FROM over TO
//     property_calls NAME, lock_calls
//                       reads a property, or takes and releases the list's locks, 1000 times. Only epoll_wait and read,
//                       or no system calls at all, are allowed meanwhile. Prints "done", or "done, with all calls" if
//                       system calls cannot be forbidden
//     use files|properties|lists DIRECTORY
//                       prints the names of standard input and error and closes them. Makes calls that open files, with
//                       files in DIRECTORY, and logs a line after each. Prints what else than /dev/null took the place
//                       of the closed ones, then "done"
//     traffic DIRECTORY PROCESS ROUNDS
//                       makes the traffic of traffic.h
//     store_once PATH   creates list 1, stores it to PATH twice and prints the status of each store
#include "changes.h"
#include "failing_memory.h"
#include "faults/faults.h"
#include "middleware/files.h"
#include "services/status.h"
#include "system_calls.h"
#include "traffic.h"

#include <android/log.h>
#include <cutils/properties.h>

#include <algorithm>
#include <atomic>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <poll.h>
#include <sqlite3.h>
#include <string>
#include <sys/mount.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace tavro;

namespace {

int failures = 0;

void check(MwStatus status, const char* call) {
    if (status != kMwOk) {
        ++failures;
        std::printf("%s: %d\n", call, status);
        std::fflush(stdout);
    }
}

void say(const std::string& line) {
    std::puts(line.c_str());
    std::fflush(stdout);
}

MwdbHandle opened(std::uint16_t list_id) {
    MwdbHandle handle = 0;
    check(x_nwl_open(list_id, 0, 0, &handle), "open");
    return handle;
}

void add(int first, int count) {
    const MwdbHandle list = opened(1);
    for (int id = first; id < first + count; ++id) {
        _NWL_REC_T record;
        std::memset(&record, id % 251, sizeof record);
        record.ui2_nwl_rec_id = static_cast<std::uint16_t>(id);
        check(x_nwl_add_rec(list, &record), "add");
        say(std::to_string(id));
    }
}

template <class Kind>
void apply_changes() {
    Changes<Kind> changes;
    for (std::string line; std::getline(std::cin, line);) {
        say(std::to_string(changes.apply(line)));
    }
}

void apply_changes(const std::string& kind) {
    if (kind == Services::kName) {
        apply_changes<Services>();
    } else if (kind == TransportStreams::kName) {
        apply_changes<TransportStreams>();
    } else if (kind == Networks::kName) {
        apply_changes<Networks>();
    } else if (kind == Satellites::kName) {
        apply_changes<Satellites>();
    }
}

template <class Kind>
void read_list() {
    MwdbHandle list = 0;
    check(Kind::open(1, 0, 0, &list), "open");
    for (const auto& [id, fill] : contents<Kind>(list)) {
        say(std::to_string(id) + " " + std::to_string(fill));
    }
}

void read_list(const std::string& kind) {
    if (kind == Services::kName) {
        read_list<Services>();
    } else if (kind == TransportStreams::kName) {
        read_list<TransportStreams>();
    } else if (kind == Networks::kName) {
        read_list<Networks>();
    } else if (kind == Satellites::kName) {
        read_list<Satellites>();
    }
}

[[noreturn]] void churn() {
    const MwdbHandle list = opened(1);
    for (unsigned i = 0;; ++i) {
        auto record = record_of<Networks>(1, static_cast<unsigned char>(i));
        check(x_nwl_update_rec(list, &record, kMwUpdatePlain), "update");
        if (i == 0) {
            say("updated");
        }
    }
}

// SQLite's methods for one type of file: its own and the replacement.
struct FileMethods {
    const sqlite3_io_methods* usual = nullptr;
    sqlite3_io_methods deadly{};
};
FileMethods database_methods;
FileMethods log_methods;

// A SQLite VFS that counts the operations on the database, its log and its shared memory, and kills the process before
// a given one. xShmBarrier is counted because it separates the writes of the two header copies.
class DeadlyFileSystem {
public:
    DeadlyFileSystem() {
        usual = sqlite3_vfs_find(nullptr);
        static sqlite3_vfs deadly = *usual;
        deadly.zName = "deadly";
        deadly.xOpen = open;
        sqlite3_vfs_register(&deadly, /*makeDflt*/ 1);
    }
    static void kill_before_step(int step) { send_before_step(SIGKILL, step); }
    static void send_before_step(int signal, int step) {
        signal_sent = signal;
        steps_left = step;
    }

private:
    static void step() {
        if (steps_left > 0 && --steps_left == 0) {
            ::raise(signal_sent);
        }
    }
    static int open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* out_flags) {
        const int code = usual->xOpen(usual, name, file, flags, out_flags);
        if (code == SQLITE_OK && (flags & SQLITE_OPEN_MAIN_DB) != 0) {
            replace<database_methods>(file);
        } else if (code == SQLITE_OK && (flags & SQLITE_OPEN_WAL) != 0) {
            replace<log_methods>(file);
        }
        return code;
    }

    template <FileMethods& kMethods>
    static void replace(sqlite3_file* file) {
        kMethods.usual = file->pMethods;
        kMethods.deadly = *kMethods.usual;
        kMethods.deadly.xWrite = [](sqlite3_file* file, const void* bytes, int count, sqlite3_int64 offset) {
            step();
            return kMethods.usual->xWrite(file, bytes, count, offset);
        };
        kMethods.deadly.xShmBarrier = [](sqlite3_file* file) {
            step();
            kMethods.usual->xShmBarrier(file);
        };
        kMethods.deadly.xShmLock = [](sqlite3_file* file, int offset, int count, int flags) {
            step();
            return kMethods.usual->xShmLock(file, offset, count, flags);
        };
        file->pMethods = &kMethods.deadly;
    }

    static inline sqlite3_vfs* usual = nullptr;
    static inline int signal_sent = 0;
    static inline int steps_left = 0;
};

void killed_add(int step, int id) {
    const DeadlyFileSystem deadly;
    const MwdbHandle list = opened(1);
    auto record = record_of<Networks>(static_cast<std::uint16_t>(id), static_cast<unsigned char>(id));
    DeadlyFileSystem::kill_before_step(step);
    const MwStatus status = x_nwl_add_rec(list, &record);
    DeadlyFileSystem::kill_before_step(0);
    check(status, "add");
}

// Adds a record or, if the list is not open, opens or creates it.
MwStatus add_one(MwdbHandle& list, int id) {
    if (list == 0) {
        const MwStatus opened = x_nwl_open(1, 0, 0, &list);
        return opened == kMwOk ? opened : x_nwl_create("list", 1, kMwCreateMode, kMwCreateGrowth, 0, 0, &list);
    }
    _NWL_REC_T record{};
    record.ui2_nwl_rec_id = static_cast<std::uint16_t>(id);
    return x_nwl_add_rec(list, &record);
}

void fill(int count, const char* ballast) {
    MwdbHandle list = 0;
    std::vector<MwStatus> seen;
    for (int id = 1; id <= count; ++id) {
        const MwStatus status = add_one(list, id);
        if (std::find(seen.begin(), seen.end(), status) == seen.end()) {
            seen.push_back(status);
            say(std::to_string(status));
        }
    }
    if (ballast != nullptr) {
        std::remove(ballast);
        say("then " + std::to_string(add_one(list, count + 1)));
    }
}

void store_once(const char* path) {
    MwdbHandle list = 0;
    check(x_nwl_create("list", 1, kMwCreateMode, kMwCreateGrowth, 0, 0, &list), "create");
    say(std::to_string(x_nwl_fs_store(list, path, 1)));
    say(std::to_string(x_nwl_fs_store(list, path, 1)));
}

std::string name_of(int descriptor) {
    char name[PATH_MAX] = "closed";
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t size = ::readlink(link.c_str(), name, sizeof name - 1);
    return size < 0 ? "closed" : std::string(name, static_cast<std::size_t>(size));
}

// Prints which of standard input and error is open and not /dev/null, and logs a line.
void check_standard_descriptors() {
    for (const int descriptor : {STDIN_FILENO, STDERR_FILENO}) {
        const std::string name = name_of(descriptor);
        if (name != "closed" && name != "/dev/null") {
            say(std::to_string(descriptor) + " is " + name);
        }
    }
    __android_log_print(3, "LogLine", "text");
}

void use(const std::string& what, const std::string& directory) {
    const auto checked = [&](MwStatus status, const char* call) {
        check(status, call);
        check_standard_descriptors();
    };
    const std::string file = directory + "/file";
    say(name_of(STDIN_FILENO) + " " + name_of(STDERR_FILENO));
    ::close(STDIN_FILENO);
    ::close(STDERR_FILENO);
    if (what == "files") {
        checked(fs_raw_init(0, file.c_str()), "init");
        checked(fs_raw_copy(0, file.c_str(), 0, (file + "2").c_str()), "copy");
    } else if (what == "properties") {
        char value[PROPERTY_VALUE_MAX];
        checked(property_get("a.property", value, "") == 5 ? kMwOk : -1, "property");
    } else {
        MwdbHandle list = 0;
        checked(x_nwl_create("list", 1, kMwCreateMode, kMwCreateGrowth, 0, 0, &list), "create");
        checked(x_nwl_lock(list), "lock");
        auto record = record_of<Networks>(1, 1);
        checked(x_nwl_add_rec(list, &record), "add");
        checked(x_nwl_unlock(list), "unlock");
        checked(x_nwl_fs_store(list, file.c_str(), 1), "store");
        checked(x_nwl_fs_sync(list, 0, file.c_str(), 1), "load");
    }
    say("done");
}

std::string property(const char* name) {
    char value[PROPERTY_VALUE_MAX];
    property_get(name, value, "default");
    return value;
}

void print_property(const char* name) {
    say(property(name));
    say(property(name));
}

void property_after_mount(const char* name, const char* from, const char* to) {
    say(property(name));
    check(::mount(from, to, nullptr, MS_BIND, nullptr), "mount");
    say(property(name));
}

// Runs `body` once, and then 1000 times with only the system calls in `allowed`. Does not return, because a normal
// process exit makes other calls.
template <class Body>
[[noreturn]] void run_with_only(std::vector<int> allowed, Body body) {
    body();
    say("ready");
    allowed.insert(allowed.end(), {SYS_write, SYS_exit_group});
    std::string result = allow_only(allowed) ? "done\n" : "done, with all calls\n";
    for (int i = 0; i < 1000; ++i) {
        body();
    }
    if (failures != 0) {
        result = "failed\n";
    }
    const bool written = ::write(STDOUT_FILENO, result.data(), result.size()) > 0;
    ::syscall(SYS_exit_group, written ? 0 : 1); // _exit under sanitizers makes other calls first
    std::abort();
}

[[noreturn]] void property_calls(const char* name) {
    // read: the watch's queue may have events of other files in the watched directories.
    run_with_only({SYS_epoll_wait, SYS_epoll_pwait, SYS_read}, [name] {
        char value[PROPERTY_VALUE_MAX];
        property_get(name, value, "default");
        failures += std::strcmp(value, "D") == 0 ? 0 : 1;
    });
}

[[noreturn]] void lock_calls() {
    tavro_host_set_faults(""); // otherwise a call reads the property every 10 ms
    run_with_only({}, [list = opened(1)] {
        check(x_nwl_read_lock(list), "read_lock");
        check(x_nwl_read_unlock(list), "read_unlock");
        check(x_nwl_lock(list), "lock");
        check(x_nwl_unlock(list), "unlock");
    });
}

void await_end_of_input() {
    for (char letter = 0; ::read(STDIN_FILENO, &letter, 1) == 1;) {
    }
}

void hold(MwStatus (*lock)(MwdbHandle), MwStatus (*unlock)(MwdbHandle), const char* list_id) {
    const MwdbHandle list = opened(static_cast<std::uint16_t>(list_id == nullptr ? 1 : std::atoi(list_id)));
    check(lock(list), "lock");
    say("locked");
    await_end_of_input();
    check(unlock(list), "unlock");
}

void read_twice() {
    const MwdbHandle list = opened(1);
    check(x_nwl_read_lock(list), "lock");
    say("locked");
    char letter = 0;
    check(::read(STDIN_FILENO, &letter, 1) == 1 ? kMwOk : -1, "read");
    std::thread([list] { say(std::to_string(x_nwl_read_lock(list))); }).join();
    await_end_of_input();
}

[[noreturn]] void lock_loop() {
    const MwdbHandle list = opened(1);
    for (int i = 0;; ++i) {
        check(x_nwl_read_lock(list), "read_lock");
        check(x_nwl_lock(list), "lock");
        check(x_nwl_unlock(list), "unlock");
        check(x_nwl_read_unlock(list), "read_unlock");
        if (i == 0) {
            say("locked");
        }
    }
}

void read_loop() {
    const MwdbHandle list = opened(1);
    std::atomic<bool> ended{false};
    const auto read = [&] {
        while (!ended) {
            if (x_nwl_read_lock(list) == kMwOk) {
                std::this_thread::yield();
                x_nwl_read_unlock(list);
            }
        }
    };
    std::thread first(read);
    std::thread second(read);
    say("locked");
    await_end_of_input();
    ended = true;
    first.join();
    second.join();
}

void write_loop() {
    const MwdbHandle list = opened(1);
    pollfd input{STDIN_FILENO, POLLIN, 0};
    for (unsigned round = 0; ::poll(&input, 1, 0) == 0; ++round) {
        check(x_nwl_lock(list), "lock");
        auto record = record_of<Networks>(1, static_cast<unsigned char>(round));
        for (int i = 0; i < 10; ++i) {
            check(x_nwl_update_rec(list, &record, kMwUpdatePlain), "update");
        }
        check(x_nwl_unlock(list), "unlock");
        if (round == 0) {
            say("locked");
        }
    }
}

[[noreturn]] void fork_lock() {
    const MwdbHandle list = opened(1);
    const MwdbHandle other = opened(2);
    check(x_nwl_lock(list), "lock");
    const bool forked = ::fork() == 0;
    if (forked) {
        auto record = record_of<Networks>(1, 1);
        MwdbHandle fresh = 0;
        std::string statuses = "lock " + std::to_string(x_nwl_lock(list));
        statuses += ", read lock " + std::to_string(x_nwl_read_lock(other));
        statuses += ", add " + std::to_string(x_nwl_add_rec(list, &record));
        statuses += ", open " + std::to_string(x_nwl_open(1, 0, 0, &fresh));
        say(statuses);
    }
    await_end_of_input();
    ::_exit(0);
}

void first_call_without_memory() {
    MwdbHandle list = 0;
    MwStatus without = kMwOk;
    {
        const FailingMemory memory(0);
        without = x_nwl_open(1, 0, 0, &list);
    }
    say(std::to_string(without) + " " + std::to_string(x_nwl_open(1, 0, 0, &list)));
}

void stopped_open(int step) {
    const DeadlyFileSystem deadly;
    DeadlyFileSystem::send_before_step(SIGSTOP, step);
    MwdbHandle list = 0;
    const MwStatus status = x_nwl_open(1, 0, 0, &list);
    check(status == kHostNoSuchList ? kMwOk : status, "open");
    say("opened");
}

void increment(const char* path, int count) {
    const MwdbHandle list = opened(1);
    for (int i = 0; i < count; ++i) {
        check(x_nwl_lock(list), "lock");
        int number = 0;
        std::ifstream(path) >> number;
        std::ofstream(path) << number + 1;
        check(x_nwl_unlock(list), "unlock");
    }
}

[[noreturn]] void store(const char* path) {
    const MwdbHandle lists[] = {opened(1), opened(2)};
    for (int i = 0;; ++i) {
        check(x_nwl_fs_store(lists[i % 2], path, 1), "store");
        say("stored");
    }
}

} // namespace

int main(int count, char** arguments) {
    const std::string command = count > 1 ? arguments[1] : "";
    if (command == "add") {
        add(std::atoi(arguments[2]), std::atoi(arguments[3]));
    } else if (command == "remove") {
        check(x_nwl_del_rec(opened(1), static_cast<std::uint16_t>(std::atoi(arguments[2]))), "remove");
    } else if (command == "changes") {
        apply_changes(arguments[2]);
    } else if (command == "read") {
        read_list(arguments[2]);
    } else if (command == "churn") {
        churn();
    } else if (command == "killed_add") {
        killed_add(std::atoi(arguments[2]), std::atoi(arguments[3]));
    } else if (command == "lock") {
        hold(x_nwl_lock, x_nwl_unlock, arguments[2]);
    } else if (command == "read_lock") {
        hold(x_nwl_read_lock, x_nwl_read_unlock, arguments[2]);
    } else if (command == "read_twice") {
        read_twice();
    } else if (command == "lock_loop") {
        lock_loop();
    } else if (command == "read_loop") {
        read_loop();
    } else if (command == "write_loop") {
        write_loop();
    } else if (command == "fork_lock") {
        fork_lock();
    } else if (command == "first_call_without_memory") {
        first_call_without_memory();
    } else if (command == "stopped_open") {
        stopped_open(std::atoi(arguments[2]));
    } else if (command == "increment") {
        increment(arguments[2], std::atoi(arguments[3]));
    } else if (command == "store") {
        store(arguments[2]);
    } else if (command == "fill") {
        fill(std::atoi(arguments[2]), count > 3 ? arguments[3] : nullptr);
    } else if (command == "property") {
        print_property(arguments[2]);
    } else if (command == "property_after_mount") {
        property_after_mount(arguments[2], arguments[3], arguments[4]);
    } else if (command == "property_calls") {
        property_calls(arguments[2]);
    } else if (command == "lock_calls") {
        lock_calls();
    } else if (command == "traffic") {
        failures += Traffic(arguments[2], std::atoi(arguments[3]), std::atoi(arguments[4])).run();
    } else if (command == "use") {
        use(arguments[2], arguments[3]);
    } else if (command == "store_once") {
        store_once(arguments[2]);
    } else {
        ++failures;
    }
    return failures == 0 ? 0 : 1;
}
