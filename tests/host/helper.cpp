// The second process of the tests. It works on network list 1, or on list 1 and 2, of TAVRO_HOME and
// tells each step that is done in a line on standard output. The exit code is 0 unless a call failed.
//
//     add FIRST COUNT   adds records FIRST, FIRST + 1, … and prints each id after its add
//     remove ID         removes a record
//     lock | read_lock  takes the lock, prints "locked" and holds it until standard input ends
//     store PATH        stores list 1 and list 2 to PATH in turn until it is killed; a line after each
#include "middleware/nwl.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>

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

void hold(MwStatus (*lock)(MwdbHandle), MwStatus (*unlock)(MwdbHandle)) {
    const MwdbHandle list = opened(1);
    check(lock(list), "lock");
    say("locked");
    for (char letter = 0; ::read(STDIN_FILENO, &letter, 1) == 1;) {
    }
    check(unlock(list), "unlock");
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
    } else if (command == "lock") {
        hold(x_nwl_lock, x_nwl_unlock);
    } else if (command == "read_lock") {
        hold(x_nwl_read_lock, x_nwl_read_unlock);
    } else if (command == "store") {
        store(arguments[2]);
    } else {
        ++failures;
    }
    return failures == 0 ? 0 : 1;
}
