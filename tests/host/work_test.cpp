// How the work of the storage grows with a list, counted in steps of its database.
#include "kinds.h"
#include "services/control.h"
#include "services/status.h"
#include "workspace.h"

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
    const MwdbHandle handle = list_of(1, 100);
    std::uint16_t id = 0;
    const auto ask = [&] { ASSERT_EQ(x_svl_qry_rec_id(handle, kMwQueryNextRecordId, &id), kMwOk); };
    const std::uint64_t early = of(ask);
    grow(handle, 101, 3000);
    EXPECT_EQ(of(ask), early);
    EXPECT_EQ(id, 3001);
}

TEST_F(Work, OfAReadIsTheSameAtEveryIndex) {
    const MwdbHandle handle = list_of(1, 3000);
    read_at(handle, 0);
    const std::uint64_t first = of([&] { read_at(handle, 0); });
    EXPECT_GT(first, 0u);
    EXPECT_EQ(of([&] { read_at(handle, 1500); }), first);
    EXPECT_EQ(of([&] { read_at(handle, 2999); }), first);
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
    const MwdbHandle one = list_of(1, 1000);
    const MwdbHandle two = list_of(2, 2000);
    const std::uint64_t single = of([&] { walk(one); });
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
