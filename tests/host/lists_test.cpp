// The contract of the middleware's list calls, for every kind.
#include "kinds.h"
#include "services/status.h"
#include "workspace.h"

#include <set>

using namespace tavro;

template <class Kind>
class Lists : public Workspace {};
TYPED_TEST_SUITE(Lists, EveryKind, KindNames);

TYPED_TEST(Lists, OpenFindsOnlyListsThatWereCreated) {
    MwdbHandle handle = 77;
    EXPECT_EQ(TypeParam::open(1, 0, 0, &handle), kHostNoSuchList);
    EXPECT_EQ(handle, 77u);
    created<TypeParam>(1);
    EXPECT_EQ(TypeParam::open(1, 0, 0, &handle), kMwOk);
    EXPECT_EQ(TypeParam::open(2, 0, 0, &handle), kHostNoSuchList);
}

TYPED_TEST(Lists, CreateRefusesAListThatIsThereAndListZero) {
    created<TypeParam>(1);
    MwdbHandle handle = 77;
    EXPECT_EQ(TypeParam::create("list", 1, 1, 16, 0, 0, &handle), kHostListExists);
    EXPECT_EQ(TypeParam::create("list", 0, 1, 16, 0, 0, &handle), kHostBadArgument);
    EXPECT_EQ(TypeParam::create(nullptr, 2, 1, 16, 0, 0, &handle), kHostBadArgument);
    EXPECT_EQ(TypeParam::create("list", 2, 1, 16, 0, 0, nullptr), kHostBadArgument);
    EXPECT_EQ(handle, 77u);
}

TYPED_TEST(Lists, EveryOpenGivesAHandleOfItsOwnThatEndsWithClose) {
    std::set<MwdbHandle> handles{created<TypeParam>(1), opened<TypeParam>(1)};
    const MwdbHandle closed = opened<TypeParam>(1);
    EXPECT_EQ(TypeParam::close(closed), kMwOk);
    handles.insert(closed);
    handles.insert(opened<TypeParam>(1));
    EXPECT_EQ(handles.size(), 4u);
    EXPECT_EQ(handles.count(0), 0u);
    EXPECT_EQ(TypeParam::close(closed), kHostBadHandle);
    EXPECT_EQ(TypeParam::clean(closed), kHostBadHandle);
    EXPECT_EQ(TypeParam::clean(0), kHostBadHandle);
}

TYPED_TEST(Lists, ListsAndRecordsOutliveTheProcess) {
    const MwdbHandle before = created<TypeParam>(3);
    ASSERT_EQ(add<TypeParam>(before, 9, 0x11), kMwOk);
    ASSERT_EQ(add<TypeParam>(before, 4, 0x22), kMwOk);
    this->restart();
    EXPECT_EQ(TypeParam::close(before), kHostBadHandle);
    EXPECT_EQ(contents<TypeParam>(opened<TypeParam>(3)), (Contents{{9, 0x11}, {4, 0x22}}));
}

TYPED_TEST(Lists, DeleteRemovesTheListAndItsRecordsOnly) {
    const MwdbHandle first = created<TypeParam>(1);
    const MwdbHandle second = created<TypeParam>(2);
    ASSERT_EQ(add<TypeParam>(first, 1, 0x11), kMwOk);
    ASSERT_EQ(add<TypeParam>(second, 1, 0x22), kMwOk);
    const MwdbHandle again = opened<TypeParam>(1);
    EXPECT_EQ(TypeParam::remove(first), kMwOk);
    MwdbHandle handle = 0;
    EXPECT_EQ(TypeParam::open(1, 0, 0, &handle), kHostNoSuchList);
    EXPECT_EQ(TypeParam::remove(first), kHostBadHandle);
    EXPECT_EQ(TypeParam::clean(again), kHostNoSuchList);
    EXPECT_EQ(contents<TypeParam>(second), (Contents{{1, 0x22}}));
    EXPECT_EQ(contents<TypeParam>(created<TypeParam>(1)), Contents{});
}

TYPED_TEST(Lists, CleanRemovesTheRecordsAndKeepsTheList) {
    const MwdbHandle handle = created<TypeParam>(1);
    ASSERT_EQ(add<TypeParam>(handle, 1, 0x11), kMwOk);
    ASSERT_EQ(contents<TypeParam>(handle).size(), 1u);
    EXPECT_EQ(TypeParam::clean(handle), kMwOk);
    EXPECT_EQ(contents<TypeParam>(handle), Contents{});
    EXPECT_EQ(add<TypeParam>(handle, 1, 0x22), kMwOk);
    EXPECT_EQ(contents<TypeParam>(handle), (Contents{{1, 0x22}}));
}

TYPED_TEST(Lists, CopyReplacesTheTargetWithIdsAndOrder) {
    const MwdbHandle from = created<TypeParam>(1);
    const MwdbHandle to = created<TypeParam>(2);
    ASSERT_EQ(add<TypeParam>(from, 7, 0x77), kMwOk);
    ASSERT_EQ(add<TypeParam>(from, 2, 0x22), kMwOk);
    ASSERT_EQ(add<TypeParam>(to, 5, 0x55), kMwOk);
    ASSERT_EQ(contents<TypeParam>(to).size(), 1u);
    EXPECT_EQ(TypeParam::copy(from, to), kMwOk);
    EXPECT_EQ(contents<TypeParam>(to), (Contents{{7, 0x77}, {2, 0x22}}));
    EXPECT_EQ(contents<TypeParam>(from), (Contents{{7, 0x77}, {2, 0x22}}));
    EXPECT_EQ(add<TypeParam>(to, 1, 0x11), kMwOk);
    EXPECT_EQ(contents<TypeParam>(to), (Contents{{7, 0x77}, {2, 0x22}, {1, 0x11}}));
    this->restart();
    EXPECT_EQ(contents<TypeParam>(opened<TypeParam>(2)), (Contents{{7, 0x77}, {2, 0x22}, {1, 0x11}}));
}

TYPED_TEST(Lists, CopyOntoItselfChangesNothing) {
    const MwdbHandle handle = created<TypeParam>(1);
    ASSERT_EQ(add<TypeParam>(handle, 7, 0x77), kMwOk);
    EXPECT_EQ(TypeParam::copy(handle, handle), kMwOk);
    EXPECT_EQ(TypeParam::copy(handle, opened<TypeParam>(1)), kMwOk);
    EXPECT_EQ(contents<TypeParam>(handle), (Contents{{7, 0x77}}));
    EXPECT_EQ(TypeParam::copy(handle, 0), kHostBadHandle);
    EXPECT_EQ(TypeParam::copy(0, handle), kHostBadHandle);
}

TYPED_TEST(Lists, RecordsKeepAllTheirBytesAndTheirPlace) {
    const MwdbHandle handle = created<TypeParam>(1);
    ASSERT_EQ(add<TypeParam>(handle, 30, 0x30), kMwOk);
    ASSERT_EQ(add<TypeParam>(handle, 10, 0x10), kMwOk);
    ASSERT_EQ(add<TypeParam>(handle, 20, 0x20), kMwOk);
    ASSERT_EQ(contents<TypeParam>(handle), (Contents{{30, 0x30}, {10, 0x10}, {20, 0x20}}));
    auto changed = record_of<TypeParam>(10, 0x99);
    EXPECT_EQ(TypeParam::update(handle, &changed, kMwUpdatePlain), kMwOk);
    EXPECT_EQ(contents<TypeParam>(handle), (Contents{{30, 0x30}, {10, 0x99}, {20, 0x20}}));
    changed = record_of<TypeParam>(30, 0x88);
    EXPECT_EQ(TypeParam::update(handle, &changed, kMwUpdateReplace), kMwOk);
    EXPECT_EQ(TypeParam::remove_record(handle, 10), kMwOk);
    EXPECT_EQ(contents<TypeParam>(handle), (Contents{{30, 0x88}, {20, 0x20}}));
    EXPECT_EQ(add<TypeParam>(handle, 10, 0x10), kMwOk);
    EXPECT_EQ(contents<TypeParam>(handle), (Contents{{30, 0x88}, {20, 0x20}, {10, 0x10}}));
    this->restart();
    EXPECT_EQ(contents<TypeParam>(opened<TypeParam>(1)), (Contents{{30, 0x88}, {20, 0x20}, {10, 0x10}}));
}

TYPED_TEST(Lists, ReadingByIdGivesTheRecordOrLeavesItAlone) {
    const MwdbHandle handle = created<TypeParam>(1);
    ASSERT_EQ(add<TypeParam>(handle, 5, 0x55), kMwOk);
    auto record = record_of<TypeParam>(1, 0xEE);
    std::int32_t version = -7;
    EXPECT_EQ(TypeParam::get(handle, 6, &record, &version), kHostNoSuchRecord);
    EXPECT_EQ(bytes_of(record), bytes_of(record_of<TypeParam>(1, 0xEE)));
    EXPECT_EQ(version, -7);
    EXPECT_EQ(TypeParam::get(handle, 5, &record, &version), kMwOk);
    EXPECT_EQ(bytes_of(record), bytes_of(record_of<TypeParam>(5, 0x55)));
    EXPECT_EQ(version, 1);
}

TYPED_TEST(Lists, ReadingByIndexEndsWithTheList) {
    const MwdbHandle handle = created<TypeParam>(1);
    auto record = record_of<TypeParam>(1, 0xEE);
    std::int32_t version = -7;
    EXPECT_EQ(TypeParam::get_at(handle, 0, &record, &version), kHostIndexOutOfRange);
    ASSERT_EQ(add<TypeParam>(handle, 5, 0x55), kMwOk);
    EXPECT_EQ(TypeParam::get_at(handle, 1, &record, &version), kHostIndexOutOfRange);
    EXPECT_EQ(TypeParam::get_at(handle, 65535, &record, &version), kHostIndexOutOfRange);
    EXPECT_EQ(bytes_of(record), bytes_of(record_of<TypeParam>(1, 0xEE)));
    EXPECT_EQ(version, -7);
    EXPECT_EQ(TypeParam::get_at(handle, 0, &record, &version), kMwOk);
    EXPECT_EQ(bytes_of(record), bytes_of(record_of<TypeParam>(5, 0x55)));
}

TYPED_TEST(Lists, TheVersionGrowsWithEveryChangeEvenPastADeletion) {
    MwdbHandle handle = created<TypeParam>(1);
    std::uint16_t number = 0;
    std::int32_t version = -1;
    ASSERT_EQ(TypeParam::count(handle, &number, &version), kMwOk);
    EXPECT_EQ(version, 0);
    ASSERT_EQ(add<TypeParam>(handle, 1, 0x11), kMwOk);
    EXPECT_EQ(add<TypeParam>(handle, 1, 0x11), kMwRecordExists);
    ASSERT_EQ(TypeParam::count(handle, &number, &version), kMwOk);
    EXPECT_EQ(version, 1);
    ASSERT_EQ(TypeParam::remove(handle), kMwOk);
    handle = created<TypeParam>(1);
    ASSERT_EQ(TypeParam::count(handle, &number, &version), kMwOk);
    EXPECT_EQ(version, 3);
    EXPECT_EQ(number, 0);
}

TYPED_TEST(Lists, ChangesOfMissingRecordsFail) {
    const MwdbHandle handle = created<TypeParam>(1);
    auto record = record_of<TypeParam>(3, 0x33);
    EXPECT_EQ(TypeParam::update(handle, &record, kMwUpdatePlain), kHostNoSuchRecord);
    EXPECT_EQ(TypeParam::remove_record(handle, 3), kHostNoSuchRecord);
    EXPECT_EQ(contents<TypeParam>(handle), Contents{});
}

TYPED_TEST(Lists, AnIdThatIsTakenIsRefusedAndTheRecordStays) {
    const MwdbHandle handle = created<TypeParam>(1);
    ASSERT_EQ(add<TypeParam>(handle, 3, 0x33), kMwOk);
    EXPECT_EQ(add<TypeParam>(handle, 3, 0x44), kMwRecordExists);
    EXPECT_EQ(contents<TypeParam>(handle), (Contents{{3, 0x33}}));
}

TYPED_TEST(Lists, RecordIdsGoFrom0To65534) {
    const MwdbHandle handle = created<TypeParam>(1);
    EXPECT_EQ(add<TypeParam>(handle, 0, 0x01), kMwOk);
    EXPECT_EQ(add<TypeParam>(handle, 65534, 0x02), kMwOk);
    EXPECT_EQ(add<TypeParam>(handle, 65535, 0x03), kHostNoRecordIdLeft);
    EXPECT_EQ(contents<TypeParam>(handle), (Contents{{0, 0x01}, {65534, 0x02}}));
}

TYPED_TEST(Lists, TheHighestRecordIdOfAnEmptyListIsEmpty) {
    const MwdbHandle handle = created<TypeParam>(1);
    ASSERT_EQ(add<TypeParam>(created<TypeParam>(2), 8, 0x11), kMwOk);
    std::uint16_t id = 77;
    EXPECT_EQ(TypeParam::query(handle, kMwQueryHighestRecordId, &id), kMwEmpty);
    EXPECT_EQ(id, 0);
    ASSERT_EQ(add<TypeParam>(handle, 9, 0x11), kMwOk);
    ASSERT_EQ(add<TypeParam>(handle, 4, 0x11), kMwOk);
    EXPECT_EQ(TypeParam::query(handle, kMwQueryHighestRecordId, &id), kMwOk);
    EXPECT_EQ(id, 9);
}

TYPED_TEST(Lists, TheNextRecordIdFollowsTheHighestOrFillsTheLowestGap) {
    const MwdbHandle handle = created<TypeParam>(1);
    std::uint16_t id = 77;
    EXPECT_EQ(TypeParam::query(handle, kMwQueryNextRecordId, &id), kMwOk);
    EXPECT_EQ(id, 1);
    ASSERT_EQ(add<TypeParam>(handle, 1, 0x11), kMwOk);
    ASSERT_EQ(add<TypeParam>(handle, 7, 0x11), kMwOk);
    EXPECT_EQ(TypeParam::query(handle, kMwQueryNextRecordId, &id), kMwOk);
    EXPECT_EQ(id, 8);
    ASSERT_EQ(add<TypeParam>(handle, 65534, 0x11), kMwOk);
    EXPECT_EQ(TypeParam::query(handle, kMwQueryNextRecordId, &id), kMwOk);
    EXPECT_EQ(id, 2);
    ASSERT_EQ(add<TypeParam>(handle, 2, 0x11), kMwOk);
    ASSERT_EQ(TypeParam::remove_record(handle, 1), kMwOk);
    EXPECT_EQ(TypeParam::query(handle, kMwQueryNextRecordId, &id), kMwOk);
    EXPECT_EQ(id, 1);
    id = 77;
    EXPECT_EQ(TypeParam::query(handle, 4, &id), kHostBadArgument);
    EXPECT_EQ(id, 77);
}

TYPED_TEST(Lists, NullPointersAreRefused) {
    const MwdbHandle handle = created<TypeParam>(1);
    auto record = record_of<TypeParam>(1, 0x11);
    std::int32_t version = 0;
    EXPECT_EQ(TypeParam::open(1, 0, 0, nullptr), kHostBadArgument);
    EXPECT_EQ(TypeParam::add(handle, nullptr), kHostBadArgument);
    EXPECT_EQ(TypeParam::update(handle, nullptr, 0), kHostBadArgument);
    EXPECT_EQ(TypeParam::get(handle, 1, nullptr, &version), kHostBadArgument);
    EXPECT_EQ(TypeParam::get(handle, 1, &record, nullptr), kHostBadArgument);
    EXPECT_EQ(TypeParam::get_at(handle, 0, nullptr, &version), kHostBadArgument);
    EXPECT_EQ(TypeParam::count(handle, nullptr, &version), kHostBadArgument);
    EXPECT_EQ(TypeParam::query(handle, kMwQueryNextRecordId, nullptr), kHostBadArgument);
    EXPECT_EQ(TypeParam::store(handle, nullptr, 1), kHostBadArgument);
    EXPECT_EQ(TypeParam::sync(handle, 0, nullptr, 1), kHostBadArgument);
    EXPECT_EQ(TypeParam::sync(handle, 1, "/cache/list", 1), kHostBadArgument);
}

class ListKinds : public Workspace {};

TEST_F(ListKinds, HaveListsAndHandlesOfTheirOwn) {
    const MwdbHandle services = created<Services>(1);
    const MwdbHandle streams = created<TransportStreams>(1);
    ASSERT_EQ(add<Services>(services, 1, 0x11), kMwOk);
    ASSERT_EQ(add<TransportStreams>(streams, 2, 0x22), kMwOk);
    EXPECT_EQ(x_svl_clean(streams), kHostBadHandle);
    EXPECT_EQ(x_tsl_close(services), kHostBadHandle);
    EXPECT_EQ(contents<Services>(services), (Contents{{1, 0x11}}));
    EXPECT_EQ(contents<TransportStreams>(streams), (Contents{{2, 0x22}}));
    MwdbHandle handle = 0;
    EXPECT_EQ(x_nwl_open(1, 0, 0, &handle), kHostNoSuchList);
}

TEST_F(ListKinds, SatelliteIndexesBelow0AreOutOfRange) {
    const MwdbHandle satellites = created<Satellites>(1);
    ASSERT_EQ(add<Satellites>(satellites, 1, 0x11), kMwOk);
    _SATL_REC_T record{};
    std::int32_t version = 0;
    EXPECT_EQ(x_satl_get_rec_by_rec_idx(satellites, -1, &record, &version), kHostIndexOutOfRange);
    EXPECT_EQ(x_satl_get_rec_by_rec_idx(satellites, 65536, &record, &version), kHostIndexOutOfRange);
}

TEST_F(ListKinds, AFullListOffersNoRecordIdUntilOneIsFree) {
    const MwdbHandle networks = created<Networks>(1);
    for (int id = 1; id <= 65534; ++id) {
        ASSERT_EQ(add<Networks>(networks, static_cast<std::uint16_t>(id), 0x11), kMwOk);
    }
    std::uint16_t id = 0;
    EXPECT_EQ(x_nwl_qry_rec_id(networks, kMwQueryNextRecordId, &id), kMwOk);
    EXPECT_EQ(id, kMwNoRecordId);
    EXPECT_EQ(x_nwl_qry_rec_id(networks, kMwQueryHighestRecordId, &id), kMwOk);
    EXPECT_EQ(id, 65534);
    ASSERT_EQ(x_nwl_del_rec(networks, 40000), kMwOk);
    EXPECT_EQ(x_nwl_qry_rec_id(networks, kMwQueryNextRecordId, &id), kMwOk);
    EXPECT_EQ(id, 40000);
    std::uint16_t number = 0;
    std::int32_t version = 0;
    EXPECT_EQ(x_nwl_get_num_rec(networks, &number, &version), kMwOk);
    EXPECT_EQ(number, 65533);
}
