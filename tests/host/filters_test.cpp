// Filtered counts and reads.
#include "kinds.h"
#include "services/status.h"
#include "workspace.h"

using namespace tavro;

namespace {

class Filters : public Workspace {
protected:
    struct Service {
        std::uint16_t id;
        std::uint8_t broadcast_type;
        std::uint32_t mask;
        std::uint16_t tsl_id;
        std::uint16_t tsl_rec_id;
    };

    static _SVL_REC_T record(const Service& service) {
        _SVL_REC_T record{};
        record.ui2_svl_rec_id = service.id;
        record.t_header.e_brdcst_type = service.broadcast_type;
        record.t_header.ui4_nw_mask = service.mask;
        record.t_header.ui2_tsl_id = service.tsl_id;
        record.t_header.ui2_tsl_rec_id = service.tsl_rec_id;
        return record;
    }

    static void add_service(MwdbHandle handle, const Service& service) {
        _SVL_REC_T added = record(service);
        ASSERT_EQ(x_svl_add_rec(handle, &added), kMwOk);
    }

    static void update_service(MwdbHandle handle, const Service& service) {
        _SVL_REC_T updated = record(service);
        ASSERT_EQ(x_svl_update_rec(handle, &updated, kMwUpdatePlain), kMwOk);
    }

    static MwdbHandle five_services() {
        const MwdbHandle handle = created<Services>(1);
        add_service(handle, {50, 2, 0x1, 1, 5});
        add_service(handle, {40, 7, 0x2, 1, 5});
        add_service(handle, {30, 2, 0x2, 1, 6});
        add_service(handle, {20, 2, 0x3, 2, 5});
        add_service(handle, {10, 3, 0x0, 1, 5});
        return handle;
    }

    // Returns all ids in order. Checks that the index after the last record is out of range.
    template <class Count, class Read>
    static std::vector<int> walk(Count count, Read read) {
        std::uint16_t number = 0;
        std::int32_t version = 0;
        EXPECT_EQ(count(&number, &version), kMwOk);
        std::vector<int> ids;
        for (std::uint16_t index = 0; index < number; ++index) {
            ids.push_back(read(index, &version));
        }
        EXPECT_EQ(read(number, &version), kHostIndexOutOfRange);
        return ids;
    }

    static std::vector<int> by_type(MwdbHandle handle, std::uint32_t type, std::uint32_t mask) {
        return walk(
            [&](std::uint16_t* number, std::int32_t* version) {
                return x_svl_get_num_rec_by_brdcst_type(handle, type, mask, number, version);
            },
            [&](std::uint16_t index, std::int32_t* version) {
                _SVL_REC_T found{};
                const MwStatus status = x_svl_get_rec_by_brdcst_type(handle, type, mask, index, &found, version);
                return status == kMwOk ? found.ui2_svl_rec_id : status;
            });
    }

    static std::vector<int> by_stream(MwdbHandle handle, std::uint16_t tsl_id, std::uint16_t rec_id,
                                      std::uint32_t mask) {
        return walk(
            [&](std::uint16_t* number, std::int32_t* version) {
                return x_svl_get_num_rec_by_ts(handle, tsl_id, rec_id, mask, number, version);
            },
            [&](std::uint16_t index, std::int32_t* version) {
                _SVL_REC_T found{};
                const MwStatus status = x_svl_get_rec_by_ts(handle, tsl_id, rec_id, mask, index, &found, version);
                return status == kMwOk ? found.ui2_svl_rec_id : status;
            });
    }

    static std::vector<int> by_satellite(MwdbHandle handle, std::uint16_t network, std::uint16_t satl_id,
                                         std::uint16_t rec_id) {
        return walk(
            [&](std::uint16_t* number, std::int32_t* version) {
                return x_tsl_get_num_rec_by_sat(handle, network, satl_id, rec_id, number, version);
            },
            [&](std::uint16_t index, std::int32_t* version) {
                _TSL_REC_T found{};
                const MwStatus status = x_tsl_get_rec_by_sat(handle, network, satl_id, rec_id, index, &found, version);
                return status == kMwOk ? found.ui2_tsl_rec_id : status;
            });
    }
};

using Ids = std::vector<int>;

} // namespace

TEST_F(Filters, ServicesByBroadcastTypeAndNetworkMask) {
    const MwdbHandle handle = five_services();
    EXPECT_EQ(by_type(handle, 0, 0xFFFFFFFF), (Ids{50, 40, 30, 20, 10}));
    EXPECT_EQ(by_type(handle, 2, 0xFFFFFFFF), (Ids{50, 30, 20}));
    EXPECT_EQ(by_type(handle, 0, 0x2), (Ids{40, 30, 20}));
    EXPECT_EQ(by_type(handle, 2, 0x1), (Ids{50, 20}));
    EXPECT_EQ(by_type(handle, 3, 0x1), Ids{});
    EXPECT_EQ(by_type(handle, 3, 0xFFFFFFFF), Ids{10});
}

TEST_F(Filters, ServicesOfOneTransportStream) {
    const MwdbHandle handle = five_services();
    EXPECT_EQ(by_stream(handle, 1, 5, 0xFFFFFFFF), (Ids{50, 40, 10}));
    EXPECT_EQ(by_stream(handle, 2, 5, 0xFFFFFFFF), Ids{20});
    EXPECT_EQ(by_stream(handle, 1, 6, 0xFFFFFFFF), Ids{30});
    EXPECT_EQ(by_stream(handle, 1, 5, 0x2), Ids{40});
    EXPECT_EQ(by_stream(handle, 5, 1, 0xFFFFFFFF), Ids{});
}

TEST_F(Filters, FollowEveryChangeOfTheList) {
    const MwdbHandle handle = five_services();
    ASSERT_EQ(by_stream(handle, 1, 5, 0xFFFFFFFF), (Ids{50, 40, 10}));
    add_service(handle, {60, 2, 0, 1, 5});
    add_service(handle, {70, 2, 0, 1, 6});
    EXPECT_EQ(by_stream(handle, 1, 5, 0xFFFFFFFF), (Ids{50, 40, 10, 60}));
    ASSERT_EQ(x_svl_del_rec(handle, 40), kMwOk);
    ASSERT_EQ(x_svl_del_rec(handle, 70), kMwOk);
    EXPECT_EQ(by_stream(handle, 1, 5, 0xFFFFFFFF), (Ids{50, 10, 60}));
    update_service(handle, {30, 2, 0, 1, 5}); // matches now, in its old position
    EXPECT_EQ(by_stream(handle, 1, 5, 0xFFFFFFFF), (Ids{50, 30, 10, 60}));
    update_service(handle, {50, 2, 0, 9, 9}); // no longer matches
    update_service(handle, {60, 7, 0, 1, 5}); // still matches
    EXPECT_EQ(by_stream(handle, 1, 5, 0xFFFFFFFF), (Ids{30, 10, 60}));
    ASSERT_EQ(x_svl_clean(handle), kMwOk);
    EXPECT_EQ(by_stream(handle, 1, 5, 0xFFFFFFFF), Ids{});
}

TEST_F(Filters, TransportStreamsOfOneSatellite) {
    const MwdbHandle handle = created<TransportStreams>(1);
    const std::uint16_t rows[][4] = {{4, 100, 1, 7}, {3, 200, 1, 7}, {2, 100, 2, 7}, {1, 100, 1, 8}, {5, 65535, 1, 7}};
    for (const auto& [id, network, satl_id, satl_rec_id] : rows) {
        _TSL_REC_T stream{};
        stream.ui2_tsl_rec_id = id;
        stream.ui2_nw_id = network;
        stream.ui2_satl_id = satl_id;
        stream.ui2_satl_rec_id = satl_rec_id;
        ASSERT_EQ(x_tsl_add_rec(handle, &stream), kMwOk);
    }
    EXPECT_EQ(by_satellite(handle, 65535, 1, 7), (Ids{4, 3, 5}));
    EXPECT_EQ(by_satellite(handle, 100, 1, 7), Ids{4});
    EXPECT_EQ(by_satellite(handle, 65535, 1, 8), Ids{1});
    EXPECT_EQ(by_satellite(handle, 65535, 7, 1), Ids{});
}
