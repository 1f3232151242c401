// Names that the middleware left without their NUL, in records all of whose bytes are 0xFF: traces tell them to
// the end of their field and no further.
#include "store_test_support.h"

namespace {

using namespace tavro::test;

class UnterminatedName : public EachKind {
protected:
    UnterminatedName() { given_open(5); }

    Steps told(const std::string& operation, const std::string& record_id = "65535") const {
        const std::size_t width = kind.is_services() ? 65 : 32;
        const char* fields = kind.is_services()            ? " ui2_prog_id:65535 ac_name:"
                             : kind.is_transport_streams() ? " ts_id:65535 s_nw_name:"
                                                           : " nw_id:65535 nit_ver:255 s_nw_name:";
        return debug("#[" + operation + "]:rec_id:" + record_id + fields + std::string(width, '\xFF') + "\n");
    }

    const Bytes full = Bytes(kind.record_bytes, std::byte{0xFF});
    Bytes record = full;
};

TEST_P(UnterminatedName, IsToldBoundedByAnUpdate) {
    EXPECT_EQ(store->update(5, record), 0);
    expect_journal(debug("#[updateInfo]: mwdbId = 5 \n") + found(5) + told("updateInfo") +
                   call("update_rec(@5, record, 0)", full));
}

TEST_P(UnterminatedName, IsToldBoundedByARead) {
    Bytes read(kind.record_bytes);
    answer("get_rec", with_record(0, full));
    EXPECT_EQ(store->get(5, 17, read), 0);
    EXPECT_EQ(read, full);
    expect_journal(kind.is_transport_streams() // whose reads by record id are not told
                       ? call("get_rec(@5, 17)")
                       : debug("#[getInfo]: mwdbId = 5 recId = 17\n") + found(5) + call("get_rec(@5, 17)") +
                             told("getInfo"));
}

TEST_P(UnterminatedName, IsToldBoundedByAReadByPosition) {
    if (kind.is_services()) {
        return; // whose reads by position are not told
    }
    Bytes read(kind.record_bytes);
    int version = 0;
    answer("get_rec_by_rec_idx", with_record(0, full));
    EXPECT_EQ(store->get_by_index(5, 4, version, read), 0);
    EXPECT_EQ(read, full);
    expect_journal(debug("#[getInfoByIdx]: mwdbId = 5 idx = 4\n") + found(5) + call("get_rec_by_rec_idx(@5, 4)") +
                   told("getInfoByIdx"));
}

TEST_P(UnterminatedName, IsToldBoundedByAnAddOfAServiceAndNotAtAllByOtherAdds) {
    EXPECT_EQ(store->add(5, &record), 0);
    Bytes added = full;
    put16(added, kind.record_id_at, kind.is_services() ? 1 : 2);
    if (kind.is_services()) {
        expect_journal(debug("#[addInfo]: mwdbId = 5 \n") + found(5) + call("qry_rec_id(@5, 3)") +
                       told("addInfo", "1") + call("add_rec(@5, record)", added));
        return;
    }
    const std::string word = kind.is_transport_streams() ? "tsl" : "nwl";
    expect_journal(debug("[addInfo]: mwdbId = 5 \n") + found(5) + call("qry_rec_id(@5, 2)") + call("lock(@5)") +
                   call("add_rec(@5, record)", added) + call("unlock(@5)") +
                   debug("[addInfo]: x_" + word + "_add_rec OK , " + word + "_rec_id=2  \n"));
}

INSTANTIATE_TEST_SUITE_P(Stores, UnterminatedName, kAllKinds, kind_name);

class UnterminatedNameBySatellite : public StoreTest {
protected:
    UnterminatedNameBySatellite() : StoreTest(kTransportStreams) { given_open(5); }

    NativeVltTvTransportStreamList manager;
};

TEST_F(UnterminatedNameBySatellite, IsToldBoundedByAReadBySatellite) {
    const auto read = std::make_unique<_TSL_REC_T>(); // on its own, so that a read past its end is seen
    int version = 0;
    answer("get_rec_by_sat", with_record(0, Bytes(sizeof(*read), std::byte{0xFF})));
    EXPECT_EQ(manager.getInfoByIdxBySatellite(5, 7, 2, 3, &version, read.get()), 0);
    expect_journal(
        debug("#[getInfoByIdxBySatellite]: mwdbId = 5 idx = 3\n") + call("get_rec_by_sat(@5, 65535, 7, 2, 3)") +
        debug("#[getInfoByIdxBySatellite]:rec_id:65535 ts_id:65535 s_nw_name:" + std::string(32, '\xFF') + "\n"));
}

} // namespace
