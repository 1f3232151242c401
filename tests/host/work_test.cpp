// How the storage's work grows with the length of a list, in SQLite virtual machine instructions.
#include "child_process.h"
#include "edited_database.h"
#include "kinds.h"
#include "services/control.h"
#include "services/status.h"
#include "workspace.h"

using namespace tavro;

namespace {

class Work : public Workspace {
protected:
    template <class Call>
    static std::uint64_t of(Call call) {
        const std::uint64_t before = tavro_host_work();
        call();
        return tavro_host_work() - before;
    }

    static MwdbHandle list_of(std::uint16_t list_id, std::uint16_t records) {
        const MwdbHandle handle = created<Services>(list_id);
        grow(handle, 1, records);
        return handle;
    }

    static void grow(MwdbHandle handle, std::uint16_t first, std::uint16_t last) {
        for (std::uint16_t id = first; id <= last; ++id) {
            ASSERT_EQ(add<Services>(handle, id, 0x11), kMwOk);
        }
    }

    static void update(MwdbHandle handle, std::uint16_t id, unsigned char fill) {
        auto record = record_of<Services>(id, fill);
        ASSERT_EQ(x_svl_update_rec(handle, &record, kMwUpdatePlain), kMwOk);
    }

    static void read(MwdbHandle handle, std::uint16_t id) {
        _SVL_REC_T record{};
        std::int32_t version = 0;
        ASSERT_EQ(x_svl_get_rec(handle, id, &record, &version), kMwOk);
    }

    // Makes every kind of read. The list must have consecutive record ids from 1.
    static void read_everything(MwdbHandle handle) {
        const Contents all = contents<Services>(handle);
        ASSERT_GT(all.size(), 1u);
        for (const auto& [id, fill] : all) {
            read(handle, static_cast<std::uint16_t>(id));
        }
        _SVL_REC_T record{};
        std::uint16_t number = 0;
        std::int32_t version = 0;
        EXPECT_EQ(x_svl_get_rec(handle, 0, &record, &version), kHostNoSuchRecord);
        EXPECT_EQ(Services::get_at(handle, static_cast<std::uint16_t>(all.size()), &record, &version),
                  kHostIndexOutOfRange);
        EXPECT_EQ(x_svl_get_num_rec_by_ts(handle, 0x1111, 0x1111, kMwEveryNetworkMask, &number, &version), kMwOk);
        EXPECT_EQ(x_svl_get_rec_by_ts(handle, 0x1111, 0x1111, kMwEveryNetworkMask, 0, &record, &version), kMwOk);
        EXPECT_EQ(x_svl_qry_rec_id(handle, kMwQueryNextRecordId, &number), kMwOk);
        EXPECT_EQ(number, all.size() + 1);
        MwdbHandle again = 0;
        EXPECT_EQ(x_svl_open(1, 0, 0, &again), kMwOk);
        EXPECT_EQ(x_svl_close(again), kMwOk);
    }

    static void read_at(MwdbHandle handle, std::uint16_t index) {
        _SVL_REC_T record{};
        std::int32_t version = 0;
        ASSERT_EQ(Services::get_at(handle, index, &record, &version), kMwOk);
    }
};

} // namespace

TEST_F(Work, OfAnAddIsTheSameInAShortAndALongList) {
    const MwdbHandle handle = list_of(1, 100);
    const std::uint64_t early = of([&] { grow(handle, 101, 101); });
    grow(handle, 102, 3000);
    const std::uint64_t late = of([&] { grow(handle, 3001, 3001); });
    EXPECT_GT(early, 0u);
    EXPECT_EQ(late, early);
}

TEST_F(Work, OfANextRecordIdIsTheSameInAShortAndALongList) {
    list_of(1, 100);
    std::uint16_t id = 0;
    const auto ask = [&](MwdbHandle handle) { ASSERT_EQ(x_svl_qry_rec_id(handle, kMwQueryNextRecordId, &id), kMwOk); };
    restart();
    const MwdbHandle short_list = opened<Services>(1);
    const std::uint64_t early = of([&] { ask(short_list); });
    EXPECT_GT(early, 0u);
    grow(short_list, 101, 3000);
    restart();
    const MwdbHandle long_list = opened<Services>(1);
    EXPECT_EQ(of([&] { ask(long_list); }), early);
    EXPECT_EQ(id, 3001);
}

// Reads of an unchanged list do not use the database.
TEST_F(Work, OfReadsOfAnUnchangedListIsNone) {
    list_of(1, 3000);
    restart();
    const MwdbHandle handle = opened<Services>(1);
    read_at(handle, 0);
    EXPECT_EQ(of([&] { read_everything(handle); }), 0u);
}

TEST_F(Work, OfReadsByIdIsOneReadForEachRecord) {
    list_of(1, 3000);
    restart();
    const MwdbHandle handle = opened<Services>(1);
    const std::uint64_t one = of([&] { read(handle, 7); });
    EXPECT_GT(one, 0u);
    EXPECT_LT(one, 100u); // not the whole list
    EXPECT_EQ(of([&] { read(handle, 7); }), 0u);
    EXPECT_EQ(of([&] { read(handle, 2999); }), one);
    EXPECT_EQ(of([&] { read(handle, 7); }), 0u);
}

TEST_F(Work, OfReadsAfterOwnChangesIsNone) {
    const MwdbHandle handle = list_of(1, 100);
    const MwdbHandle other = list_of(2, 100);
    const std::uint64_t change = of([&] { update(handle, 50, 0x22); });
    read_everything(handle);
    read_everything(other);
    EXPECT_EQ(of([&] {
                  update(handle, 50, 0x33);
                  read_everything(handle);
                  read_everything(other);
              }),
              change);
}

TEST_F(Work, OfReadsAfterAChangeOfAnotherListElsewhereIsALookAtTheVersion) {
    const MwdbHandle handle = list_of(1, 3000);
    const MwdbHandle networks = created<Networks>(1);
    ASSERT_EQ(add<Networks>(networks, 1, 0x11), kMwOk);
    read_everything(handle);
    EXPECT_EQ(ChildProcess({"remove", "1"}).wait(), 0);
    const std::uint64_t look = of([&] { read_at(handle, 2999); });
    EXPECT_GT(look, 0u);
    EXPECT_LT(look, 100u);
    EXPECT_EQ(of([&] { read_everything(handle); }), 0u);
}

// Three full lists exceed the memory limit.
TEST_F(Work, OfReadsIsNoneForTheListsUsedLast) {
    using Kind = TransportStreams;
    MwdbHandle lists[3];
    for (std::uint16_t i = 0; i < 3; ++i) {
        lists[i] = created<Kind>(static_cast<std::uint16_t>(i + 1));
        insert_records<Kind>(home() + "/lists.db", 2, static_cast<std::uint16_t>(i + 1), 1, 65534);
    }
    const auto read_last = [&](int list) {
        return of([&] {
            Kind::Record record{};
            std::int32_t version = 0;
            ASSERT_EQ(Kind::get_at(lists[list], 65533, &record, &version), kMwOk);
        });
    };
    EXPECT_GT(read_last(0), 65534u);
    EXPECT_GT(read_last(1), 65534u);
    EXPECT_EQ(read_last(0), 0u);
    EXPECT_GT(read_last(2), 65534u);
    EXPECT_EQ(read_last(2), 0u);
    EXPECT_EQ(read_last(0), 0u);
    EXPECT_GT(read_last(1), 65534u);
}

TEST_F(Work, OfReadsBetweenOwnChangesIsTheSameInAShortAndALongList) {
    const MwdbHandle handle = list_of(1, 100);
    std::uint16_t next = 101;
    const auto change_and_read = [&] {
        grow(handle, next, next);
        auto record = record_of<Services>(next, 0x22);
        ASSERT_EQ(x_svl_update_rec(handle, &record, kMwUpdatePlain), kMwOk);
        ASSERT_EQ(x_svl_del_rec(handle, 50), kMwOk);
        read_at(handle, 10);
        grow(handle, 50, 50);
    };
    read_at(handle, 0);
    const std::uint64_t early = of(change_and_read);
    grow(handle, 102, 3000);
    read_at(handle, 0);
    next = 3001;
    EXPECT_EQ(of(change_and_read), early);
}

TEST_F(Work, OfAFilteredWalkGrowsWithTheList) {
    const auto walk = [](MwdbHandle handle) {
        std::uint16_t number = 0;
        std::int32_t version = 0;
        ASSERT_EQ(x_svl_get_num_rec_by_ts(handle, 0x1111, 0x1111, 0xFFFFFFFF, &number, &version), kMwOk);
        for (std::uint16_t index = 0; index < number; ++index) {
            _SVL_REC_T record{};
            ASSERT_EQ(x_svl_get_rec_by_ts(handle, 0x1111, 0x1111, 0xFFFFFFFF, index, &record, &version), kMwOk);
        }
    };
    list_of(1, 1000);
    list_of(2, 2000);
    restart();
    const MwdbHandle one = opened<Services>(1);
    const MwdbHandle two = opened<Services>(2);
    const std::uint64_t single = of([&] { walk(one); });
    EXPECT_GT(single, 0u);
    EXPECT_LE(of([&] { walk(two); }), 2 * single + 100);
}

TEST_F(Work, OfCopyAndStoreGrowsWithTheList) {
    const MwdbHandle one = list_of(1, 1000);
    const MwdbHandle two = list_of(2, 2000);
    const MwdbHandle target = created<Services>(3);
    const std::uint64_t single_copy = of([&] { ASSERT_EQ(x_svl_copy_date(one, target), kMwOk); });
    ASSERT_EQ(x_svl_clean(target), kMwOk);
    EXPECT_LE(of([&] { ASSERT_EQ(x_svl_copy_date(two, target), kMwOk); }), 2 * single_copy + 100);
    const std::string file = path("list");
    const std::uint64_t single_store = of([&] { ASSERT_EQ(x_svl_fs_store(one, file.c_str(), 1), kMwOk); });
    EXPECT_LE(of([&] { ASSERT_EQ(x_svl_fs_store(two, file.c_str(), 2), kMwOk); }), 2 * single_store + 100);
}
