// The time of a list's last change, and databases of the version that did not have it.
#include "edited_database.h"
#include "kinds.h"
#include "services/control.h"
#include "services/kinds.h"
#include "services/snapshot.h"
#include "services/status.h"
#include "workspace.h"

#include <chrono>
#include <filesystem>

using namespace tavro;

namespace {

std::int64_t now() {
    const auto time = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(time).count();
}

class ChangeTimesOfLists : public Workspace {
protected:
    ~ChangeTimesOfLists() override { tavro_host_set_read_only(0); }

    std::string database() const { return home() + "/lists.db"; }

    // The time of the last change of list 1, the first of its kind.
    std::optional<std::int64_t> time() const {
        const auto lists = host::Snapshot(home()).lists(0, INT32_MAX);
        EXPECT_FALSE(lists.empty());
        return lists.empty() ? std::nullopt : lists[0].changed;
    }
    // Makes the database one of the first version.
    void make_old() const {
        edit_database(database(), "ALTER TABLE lists DROP COLUMN changed; PRAGMA user_version = 1");
    }
    std::int64_t version_of_database() const {
        return static_cast<unsigned char>(read_file(database())[63]); // the last byte of user_version
    }

    static constexpr std::int64_t kLongAgo = 1234;
};

template <class Kind>
class ChangeTimes : public ChangeTimesOfLists {
protected:
    // The change must store the present time if it succeeds, and otherwise leave the old one.
    template <class Change>
    void expect(MwStatus status, Change change) const {
        edit_database(database(), "UPDATE lists SET changed = " + std::to_string(kLongAgo));
        const std::int64_t before = now();
        EXPECT_EQ(change(), status);
        const std::int64_t found = time().value_or(-1);
        if (status == kMwOk) {
            EXPECT_GE(found, before);
            EXPECT_LE(found, now());
        } else {
            EXPECT_EQ(found, kLongAgo);
        }
    }
};

} // namespace

TYPED_TEST_SUITE(ChangeTimes, EveryKind, KindNames);

TYPED_TEST(ChangeTimes, AreStoredWithEveryChange) {
    using Kind = TypeParam;
    MwdbHandle list = created<Kind>(1);
    const MwdbHandle other = created<Kind>(2);
    ASSERT_EQ(Kind::store(other, this->path("file").c_str(), 2), kMwOk);
    auto record = record_of<Kind>(7, 0x22);
    this->expect(kMwOk, [&] { return add<Kind>(list, 7, 0x11); });
    this->expect(kMwRecordExists, [&] { return add<Kind>(list, 7, 0x11); });
    this->expect(kMwOk, [&] { return Kind::update(list, &record, kMwUpdatePlain); });
    this->expect(kMwOk, [&] { return Kind::remove_record(list, 7); });
    this->expect(kHostNoSuchRecord, [&] { return Kind::remove_record(list, 7); });
    this->expect(kMwOk, [&] { return Kind::copy(other, list); });
    this->expect(kMwOk, [&] { return Kind::sync(list, kMwRootDrive, this->path("file").c_str(), 1); });
    this->expect(kMwOk, [&] { return Kind::clean(list); });
    ASSERT_EQ(Kind::remove(list), kMwOk);
    const std::int64_t before = now();
    list = created<Kind>(1);
    EXPECT_GE(this->time().value_or(-1), before);
    EXPECT_EQ(contents<Kind>(list), Contents{});
}

TEST_F(ChangeTimesOfLists, AreUnknownInAnOldDatabaseThatIsOnlyRead) {
    ASSERT_EQ(add<Networks>(created<Networks>(1), 7, 0x11), kMwOk);
    restart();
    make_old();
    const std::string before = read_file(database());
    tavro_host_set_read_only(1);
    EXPECT_EQ(contents<Networks>(opened<Networks>(1)), (Contents{{7, 0x11}}));
    EXPECT_EQ(time(), std::nullopt);
    restart();
    EXPECT_EQ(read_file(database()), before);
    EXPECT_EQ(version_of_database(), 1);
}

TEST_F(ChangeTimesOfLists, AreStoredOnceAnOldDatabaseIsWrittenTo) {
    const MwdbHandle second = created<Networks>(2);
    ASSERT_EQ(add<Networks>(created<Networks>(1), 7, 0x11), kMwOk);
    ASSERT_EQ(add<Networks>(second, 8, 0x22), kMwOk);
    restart();
    make_old();
    for (int opening = 0; opening < 2; ++opening) {
        EXPECT_EQ(contents<Networks>(opened<Networks>(1)), (Contents{{7, 0x11}}));
        EXPECT_EQ(contents<Networks>(opened<Networks>(2)), (Contents{{8, 0x22}}));
        EXPECT_EQ(time(), std::nullopt);
        restart();
        EXPECT_EQ(version_of_database(), 2);
    }
    const std::int64_t before = now();
    EXPECT_EQ(add<Networks>(opened<Networks>(1), 9, 0x33), kMwOk);
    EXPECT_GE(time().value_or(-1), before);
    EXPECT_EQ(log(), std::vector<std::string>{});
}

TEST_F(ChangeTimesOfLists, AreCheckedLikeOtherValues) {
    created<Networks>(1);
    for (const char* value : {"-1", "'soon'", "253402300800000"}) {
        edit_database(database(), std::string("UPDATE lists SET changed = ") + value);
        EXPECT_THROW(time(), std::exception) << value;
    }
}
