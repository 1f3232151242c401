// Processes that only read: they open nothing for writing and create nothing, whatever other processes do.
#include "changes.h"
#include "child_process.h"
#include "edited_database.h"
#include "file_calls.h"
#include "kinds.h"
#include "sandbox.h"
#include "services/control.h"
#include "services/status.h"
#include "workspace.h"

#include <csignal>
#include <filesystem>
#include <map>
#include <sqlite3.h>

using namespace tavro;

namespace fs = std::filesystem;

namespace {

using Names = std::vector<std::string>;

// Reads a list by every kind of read. Returns its content.
template <class Kind>
Contents read_in_every_way(std::uint16_t list_id) {
    const MwdbHandle handle = opened<Kind>(list_id);
    EXPECT_EQ(Kind::read_lock(handle), kMwOk);
    std::uint16_t highest = 0;
    const MwStatus found = Kind::query(handle, kMwQueryHighestRecordId, &highest);
    EXPECT_TRUE(found == kMwOk || found == kMwEmpty);
    typename Kind::Record record{};
    std::int32_t version = 0;
    EXPECT_EQ(Kind::get(handle, highest, &record, &version), found == kMwOk ? kMwOk : kHostNoSuchRecord);
    Contents all = contents<Kind>(handle);
    EXPECT_EQ(Kind::read_unlock(handle), kMwOk);
    EXPECT_EQ(Kind::close(handle), kMwOk);
    return all;
}

// The files of a directory, each with its bytes. Opened and closed while no process uses them: the end of any access
// releases this process's locks.
std::map<std::string, std::string> tree(const std::string& directory, std::string (*read)(const std::string&)) {
    std::map<std::string, std::string> files;
    for (const auto& file : fs::recursive_directory_iterator(directory)) {
        files[file.path().string()] = file.is_regular_file() ? read(file.path().string()) : "";
    }
    return files;
}

class ReadOnlyWorkspace : public Workspace {
protected:
    ~ReadOnlyWorkspace() override {
        only_read(false);
        std::error_code ignored;
        fs::permissions(home(), fs::perms::owner_all, ignored);
    }

    static void only_read(bool read_only = true) { tavro_host_set_read_only(read_only ? 1 : 0); }
    std::string database() const { return home() + "/lists.db"; }
    std::map<std::string, std::string> files() const { return tree(home(), read_file); }
    Names names() const {
        Names found;
        for (const auto& [name, bytes] : files()) {
            found.push_back(name.substr(home().size() + 1));
        }
        return found;
    }
    // The log line of a change that is refused.
    std::string refusal() const {
        return line("cannot change the lists in " + home() +
                    ": this process only reads them; unset TAVRO_READ_ONLY, or call tavro_host_set_read_only(0)");
    }
    static std::string line(const std::string& text) { return "E/TavroHost" + process_mark() + ": " + text; }
};

template <class Kind>
class ReadOnly : public ReadOnlyWorkspace {
protected:
    ReadOnly() {
        const MwdbHandle handle = created<Kind>(1);
        EXPECT_EQ(add<Kind>(handle, 7, 0x11), kMwOk);
        EXPECT_EQ(add<Kind>(handle, 3, 0x22), kMwOk);
        restart(); // lists.db and locks remain
    }

    // Reads list 1 while recording what is opened.
    void expect_list(const Contents& all) const {
        const FileCalls calls;
        only_read();
        EXPECT_EQ(read_in_every_way<Kind>(1), all);
        EXPECT_EQ(FileCalls::opened_to_write(home()), Names{});
        EXPECT_EQ(log(), Names{});
    }

    const Contents kBoth{{7, 0x11}, {3, 0x22}};
};

using ReadOnlyNetworks = ReadOnly<Networks>;

} // namespace

TYPED_TEST_SUITE(ReadOnly, EveryKind, KindNames);

TYPED_TEST(ReadOnly, ReadsWithoutAWriter) {
    const auto before = this->files();
    this->expect_list(this->kBoth);
    this->restart();
    EXPECT_EQ(this->files(), before);
    EXPECT_EQ(this->names(), (Names{"lists.db", "locks"}));
}

TYPED_TEST(ReadOnly, ReadsWhileAWriterIsIdle) {
    ChildProcess writer({"changes", TypeParam::kName});
    ASSERT_EQ(writer.ask("add 1 9 51"), "0");
    this->expect_list({{7, 0x11}, {3, 0x22}, {9, 51}});
}

TYPED_TEST(ReadOnly, ReadsWhatAKilledWriterLeftInTheLog) {
    ChildProcess writer({"changes", TypeParam::kName});
    ASSERT_EQ(writer.ask("add 1 9 51"), "0");
    writer.kill();
    const auto before = this->files();
    EXPECT_EQ(this->names(), (Names{"lists.db", "lists.db-shm", "lists.db-wal", "locks"}));
    this->expect_list({{7, 0x11}, {3, 0x22}, {9, 51}});
    this->restart();
    EXPECT_EQ(this->files(), before);
}

TYPED_TEST(ReadOnly, ReadsALogWithoutItsIndex) {
    ChildProcess writer({"changes", TypeParam::kName});
    ASSERT_EQ(writer.ask("add 1 9 51"), "0");
    writer.kill();
    fs::remove(this->home() + "/lists.db-shm");
    const auto before = this->files();
    this->expect_list({{7, 0x11}, {3, 0x22}, {9, 51}});
    this->restart();
    EXPECT_EQ(this->files(), before);
}

TYPED_TEST(ReadOnly, ReadsInADirectoryThatItMayNotWrite) {
    for (const bool has_log : {false, true}) {
        SCOPED_TRACE(has_log);
        if (has_log) {
            ChildProcess writer({"changes", TypeParam::kName});
            ASSERT_EQ(writer.ask("update 1 3 51"), "0");
            writer.kill();
        }
        const auto before = this->files();
        for (const auto& [name, bytes] : before) {
            fs::permissions(name, fs::perms::owner_read);
        }
        fs::permissions(this->home(), fs::perms::owner_read | fs::perms::owner_exec);
        this->environment.set("TAVRO_READ_ONLY", "1");
        ChildProcess reader({"read", TypeParam::kName}, without_privileges());
        EXPECT_EQ(reader.read_lines(), (Names{"7 17", has_log ? "3 51" : "3 34"}));
        EXPECT_EQ(reader.wait(), 0);
        this->environment.set("TAVRO_READ_ONLY", "");
        fs::permissions(this->home(), fs::perms::owner_all);
        EXPECT_EQ(this->files(), before);
        for (const auto& [name, bytes] : before) {
            fs::permissions(name, fs::perms::owner_read | fs::perms::owner_write);
        }
    }
    EXPECT_EQ(this->log(), Names{});
}

TYPED_TEST(ReadOnly, ChangesNothing) {
    ASSERT_EQ(TypeParam::store(opened<TypeParam>(1), this->path("list").c_str(), 1), kMwOk);
    this->restart();
    const auto before = this->files();
    this->only_read();
    const MwdbHandle handle = opened<TypeParam>(1);
    auto record = record_of<TypeParam>(7, 0x33);
    MwdbHandle made = 0;
    EXPECT_EQ(TypeParam::create("list", 2, kMwCreateMode, kMwCreateGrowth, 0, 0, &made), kHostReadOnly);
    EXPECT_EQ(TypeParam::lock(handle), kHostReadOnly);
    EXPECT_EQ(TypeParam::unlock(handle), kHostReadOnly);
    EXPECT_EQ(TypeParam::add(handle, &record), kHostReadOnly);
    EXPECT_EQ(TypeParam::update(handle, &record, kMwUpdatePlain), kHostReadOnly);
    EXPECT_EQ(TypeParam::remove_record(handle, 7), kHostReadOnly);
    EXPECT_EQ(TypeParam::clean(handle), kHostReadOnly);
    EXPECT_EQ(TypeParam::sync(handle, kMwRootDrive, this->path("list").c_str(), 1), kHostReadOnly);
    EXPECT_EQ(TypeParam::store(handle, this->path("other").c_str(), 1), kHostReadOnly);
    EXPECT_EQ(TypeParam::remove(handle), kHostReadOnly);
    EXPECT_EQ(contents<TypeParam>(handle), this->kBoth);
    EXPECT_EQ(made, 0U);
    EXPECT_FALSE(fs::exists(this->path("other")));
    this->restart();
    EXPECT_EQ(this->files(), before);
    EXPECT_EQ(this->log(), Names{this->refusal()});
}

TEST_F(ReadOnlyNetworks, ReadsWhileAWriterNeverPauses) {
    ASSERT_EQ(add<Networks>(opened<Networks>(1), 1, 0), kMwOk);
    insert_records<Networks>(database(), 3, 1, 10, 2000);
    restart();
    ChildProcess writer({"churn"});
    ASSERT_EQ(writer.read_line(), "updated");
    const FileCalls calls;
    for (int round = 0; round < 20 && !HasFailure(); ++round) {
        only_read();
        const Contents all = read_in_every_way<Networks>(1);
        EXPECT_EQ(all.size(), 1994U);
        EXPECT_EQ(read_in_every_way<Networks>(1), all);
    }
    EXPECT_EQ(FileCalls::opened_to_write(home()), Names{});
    EXPECT_EQ(log(), Names{});
}

TEST_F(ReadOnlyNetworks, ReadsWhileWritersComeAndGo) {
    for (int round = 1; round <= 20; ++round) {
        ChildProcess writer({"add", std::to_string(100 + round), "1"});
        only_read();
        const Contents all = read_in_every_way<Networks>(1);
        EXPECT_EQ(all.size(), read_in_every_way<Networks>(1).size());
        writer.wait();
        only_read();
        EXPECT_EQ(read_in_every_way<Networks>(1).size(), 2U + round);
    }
    EXPECT_EQ(log(), Names{});
}

// Wherever a writer was killed: the next reader sees the change or not, and says so if only a writer can tell.
TEST_F(ReadOnlyNetworks, ReadsWhatAKilledWriterLeftBesideAnIdleOne) {
    ChildProcess idle({"changes", Networks::kName});
    ASSERT_EQ(idle.ask("add 1 1000 51"), "0");
    int failed = 0;
    for (int step = 1; step < 200; ++step) {
        SCOPED_TRACE(step);
        const int end = ChildProcess({"killed_add", std::to_string(step), std::to_string(2000 + step)}).wait();
        ASSERT_TRUE(end == 0 || end == -SIGKILL) << end;
        only_read();
        MwdbHandle handle = 0;
        const MwStatus status = Networks::open(1, 0, 0, &handle);
        failed += status == kHostStorageUnavailable ? 1 : 0;
        ASSERT_TRUE(status == kMwOk || status == kHostStorageUnavailable);
        ASSERT_EQ(idle.ask("update 1 1000 " + std::to_string(step)), "0"); // repairs the index
        only_read();
        EXPECT_EQ(read_in_every_way<Networks>(1)[2], (std::pair<int, int>{1000, step}));
        if (end == 0) {
            break;
        }
    }
    EXPECT_LE(failed, 2); // the header of the index is written in two copies
    for (const std::string& text : log()) {
        EXPECT_EQ(text, line("cannot read the list database " + database() +
                             ": attempt to write a readonly database; a process ended while it changed lists; run a "
                             "command that changes lists"));
    }
}

TEST_F(ReadOnlyNetworks, KeepsTheStateOfItsFirstReadWhileOthersWrite) {
    ChildProcess writer({"changes", Networks::kName});
    ASSERT_EQ(writer.ask("create 2"), "0");
    only_read();
    const MwdbHandle first = opened<Networks>(1);
    const MwdbHandle second = opened<Networks>(2);
    EXPECT_EQ(contents<Networks>(first), kBoth);
    ASSERT_EQ(writer.ask("clean 1"), "0");
    ASSERT_EQ(writer.ask("add 2 5 85"), "0");
    EXPECT_EQ(contents<Networks>(first), kBoth);
    EXPECT_EQ(contents<Networks>(second), Contents{});
    only_read();
    EXPECT_EQ(contents<Networks>(first), Contents{});
    EXPECT_EQ(contents<Networks>(second), (Contents{{5, 85}}));
}

TEST_F(ReadOnlyNetworks, SeesALaterStateOnceTheFirstWriterHasCome) {
    created<Networks>(2);
    restart();
    only_read();
    const MwdbHandle first = opened<Networks>(1);
    const MwdbHandle second = opened<Networks>(2);
    EXPECT_EQ(contents<Networks>(first), kBoth);
    ChildProcess writer({"changes", Networks::kName});
    ASSERT_EQ(writer.ask("clean 1"), "0");
    ASSERT_EQ(writer.ask("add 2 5 85"), "0");
    EXPECT_EQ(contents<Networks>(first), kBoth); // in memory
    EXPECT_EQ(contents<Networks>(second), (Contents{{5, 85}}));
    EXPECT_EQ(log(), Names{});
}

TEST_F(ReadOnlyNetworks, OpensAgainIfAWriterComesMeanwhile) {
    const FileCalls calls;
    std::unique_ptr<ChildProcess> writer;
    const std::string name = database();
    FileCalls::before_open(name, [&] {
        writer = std::make_unique<ChildProcess>(Names{"changes", Networks::kName});
        EXPECT_EQ(writer->ask("add 1 9 51"), "0");
    });
    only_read();
    EXPECT_EQ(read_in_every_way<Networks>(1), (Contents{{7, 0x11}, {3, 0x22}, {9, 51}}));
    EXPECT_EQ(FileCalls::opened_to_write(home()), Names{});
}

TEST_F(ReadOnlyNetworks, LetsWritersCheckpointAndEnd) {
    only_read();
    const MwdbHandle handle = opened<Networks>(1);
    EXPECT_EQ(contents<Networks>(handle), kBoth);
    EXPECT_EQ(ChildProcess({"add", "100", "1500"}).wait(), 0);
    EXPECT_EQ(contents<Networks>(handle), kBoth);
    only_read();
    EXPECT_EQ(contents<Networks>(handle).size(), 1502U);
    EXPECT_EQ(log(), Names{});
}

TEST_F(ReadOnlyNetworks, SwitchesWithValidHandles) {
    const MwdbHandle handle = opened<Networks>(1);
    for (std::uint16_t id = 100; id < 105; ++id) {
        only_read();
        const auto before = contents<Networks>(handle).size();
        EXPECT_EQ(add<Networks>(handle, id, 0x44), kHostReadOnly);
        only_read(false);
        EXPECT_EQ(add<Networks>(handle, id, 0x44), kMwOk);
        EXPECT_EQ(contents<Networks>(handle).size(), before + 1);
        ChildProcess other({"add", std::to_string(id + 100), "1"});
        EXPECT_EQ(other.wait(), 0);
        only_read();
        EXPECT_EQ(contents<Networks>(handle).size(), before + 2);
    }
}

TEST_F(ReadOnlyNetworks, HoldsNoListLocks) {
    const MwdbHandle handle = opened<Networks>(1);
    environment.set("TAVRO_LOCK_TIMEOUT_MS", "0");
    ASSERT_EQ(Networks::lock(handle), kMwOk);
    only_read();
    ASSERT_EQ(Networks::read_lock(handle), kMwOk);
    ChildProcess other({"lock"});
    EXPECT_EQ(other.read_line(), "locked");
    EXPECT_EQ(Networks::read_lock(handle), kMwOk);
    EXPECT_EQ(contents<Networks>(handle), kBoth);
    only_read(false);
    EXPECT_EQ(Networks::unlock(handle), kHostNotLockHolder);
}

TEST_F(ReadOnlyNetworks, TakesTheModeFromTheEnvironment) {
    for (const char* value : {"1", "yes"}) {
        environment.set("TAVRO_READ_ONLY", value);
        restart();
        EXPECT_EQ(add<Networks>(opened<Networks>(1), 9, 0x33), kHostReadOnly);
        only_read(false); // does not override the environment
        EXPECT_EQ(add<Networks>(opened<Networks>(1), 9, 0x33), kHostReadOnly);
    }
    std::uint16_t id = 9;
    for (const char* value : {"0", ""}) {
        environment.set("TAVRO_READ_ONLY", value);
        restart();
        EXPECT_EQ(add<Networks>(opened<Networks>(1), id++, 0x33), kMwOk);
    }
    EXPECT_EQ(log(),
              (Names{refusal(), line("TAVRO_READ_ONLY is 'yes', but must be 0 or 1; this process only reads lists")}));
}

TEST_F(ReadOnlyNetworks, FindsNoListsWhereThereIsNothing) {
    only_read();
    MwdbHandle handle = 0;
    environment.set("TAVRO_HOME", path("missing"));
    EXPECT_EQ(Networks::open(1, 0, 0, &handle), kHostNoSuchList);
    EXPECT_FALSE(fs::exists(path("missing")));
    restart();
    fs::create_directory(path("empty"));
    environment.set("TAVRO_HOME", path("empty"));
    EXPECT_EQ(Networks::open(1, 0, 0, &handle), kHostNoSuchList);
    write_file(path("empty/lists.db"), "");
    EXPECT_EQ(Networks::open(1, 0, 0, &handle), kHostNoSuchList);
    write_file(path("empty/lists.db-wal"), "a log that belongs to no database");
    const auto before = tree(path("empty"), read_file);
    EXPECT_EQ(Networks::open(1, 0, 0, &handle), kHostNoSuchList);
    EXPECT_EQ(tree(path("empty"), read_file), before);
    EXPECT_EQ(log(), Names{});
}

TEST_F(ReadOnlyNetworks, SaysWhatIsWrongWithADatabase) {
    const std::string is_wrong = "cannot read the list database " + database();
    const auto expect = [&](const std::string& text) {
        SCOPED_TRACE(text);
        only_read();
        MwdbHandle handle = 0;
        EXPECT_EQ(Networks::open(1, 0, 0, &handle), kHostStorageUnavailable);
        ASSERT_FALSE(log().empty());
        EXPECT_EQ(log().back(), line(text));
        restart();
    };
    const std::string good = read_file(database());
    edit_database(database(), "PRAGMA user_version = 99");
    expect(is_wrong + ": it was written by another version; use that version");
    edit_database(database(), "PRAGMA application_id = 5");
    expect("cannot read " + database() + ": it is not a list database");
    write_file(database(), std::string(4096, 'x'));
    expect(is_wrong + ": file is not a database; move the file away to start without lists, or use another storage "
                      "directory");
    write_file(database(), good.substr(0, 4096) + std::string(good.size() - 4096, '\x5A'));
    expect(is_wrong + ": the file is damaged (database disk image is malformed); move the file away to start without "
                      "lists, or use another storage directory");
    fs::remove(database());
    fs::create_directory(database());
    expect(is_wrong + ": Is a directory; move it away, or use another storage directory");
}
