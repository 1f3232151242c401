// Counts and reads by index of some records: services of a transport stream, transport streams of a satellite.

#include "conform/guarded.h"
#include "conform/lists.h"

namespace tavro::conform {
namespace {

_SVL_REC_T service(std::uint16_t id, std::uint8_t broadcast_type, std::uint32_t network_mask) {
    _SVL_REC_T record = make_record<Svl>(id);
    record.t_header.e_brdcst_type = broadcast_type;
    record.t_header.ui4_nw_mask = network_mask;
    return record;
}

// The services of a transport stream, and the transport streams of a satellite, as the library reads them. Both name
// their owner by a list id and a record id.

struct ByStream {
    using Kind = Svl;
    static constexpr char kCount[] = "get_num_rec_by_ts";
    static constexpr char kRead[] = "get_rec_by_ts";
    static MwStatus count(MwdbHandle handle, std::uint16_t owner, std::uint16_t* number, std::int32_t* version) {
        return Svl::get_num_rec_by_ts(handle, 3, owner, kMwEveryNetworkMask, number, version);
    }
    static MwStatus read(MwdbHandle handle, std::uint16_t owner, std::uint16_t index, _SVL_REC_T* record,
                         std::int32_t* version) {
        return Svl::get_rec_by_ts(handle, 3, owner, kMwEveryNetworkMask, index, record, version);
    }
    static void set_owner(_SVL_REC_T& record, std::uint16_t list, std::uint16_t owner) {
        record.t_header.ui2_tsl_id = list;
        record.t_header.ui2_tsl_rec_id = owner;
    }
};

struct BySatellite {
    using Kind = Tsl;
    static constexpr char kCount[] = "get_num_rec_by_sat";
    static constexpr char kRead[] = "get_rec_by_sat";
    static constexpr std::uint16_t kEveryNetwork = 0xFFFF;
    static MwStatus count(MwdbHandle handle, std::uint16_t owner, std::uint16_t* number, std::int32_t* version) {
        return Tsl::get_num_rec_by_sat(handle, kEveryNetwork, 3, owner, number, version);
    }
    static MwStatus read(MwdbHandle handle, std::uint16_t owner, std::uint16_t index, _TSL_REC_T* record,
                         std::int32_t* version) {
        return Tsl::get_rec_by_sat(handle, kEveryNetwork, 3, owner, index, record, version);
    }
    static void set_owner(_TSL_REC_T& record, std::uint16_t list, std::uint16_t owner) {
        record.ui2_satl_id = list;
        record.ui2_satl_rec_id = owner;
    }
};

template <class Kind>
void add_all(Run& run, MwdbHandle handle, const std::vector<typename Kind::Record>& records) {
    for (auto record : records) {
        run.done(Kind::add_rec(handle, &record));
    }
}

void every_broadcast_type(Run& run) {
    const MwdbHandle handle = create<Svl>(run);
    std::vector<_SVL_REC_T> records;
    for (const std::uint8_t type : {0, 1, 2, 3, 5, 7, 255}) {
        records.push_back(service(static_cast<std::uint16_t>(type + 1), type, 1));
    }
    add_all<Svl>(run, handle, records);
    expect_contents<Svl>(run, handle, records);
}

void every_network_mask(Run& run) {
    const MwdbHandle handle = create<Svl>(run);
    const std::vector<_SVL_REC_T> records = {service(1, kBroadcastDvb, 1), service(2, kBroadcastDvb, 0),
                                             service(3, kBroadcastDvb, 0x80000000), service(4, kBroadcastDvb, 0x106)};
    add_all<Svl>(run, handle, records);
    expect_contents<Svl>(run, handle, records);
}

// Records 1 and 3 have the owner 3,7; record 2 has 3,8; record 4 has 4,7. Their other bytes are random, so they are of
// different networks.
template <class Filter>
struct Owned {
    using Kind = typename Filter::Kind;
    explicit Owned(Run& run) : handle(create<Kind>(run)) {
        constexpr std::uint16_t kOwners[][2] = {{3, 7}, {3, 8}, {3, 7}, {4, 7}};
        for (const auto& owner : kOwners) {
            records.push_back(make_record<Kind>(static_cast<std::uint16_t>(records.size() + 1)));
            Filter::set_owner(records.back(), owner[0], owner[1]);
        }
        add_all<Kind>(run, handle, records);
    }
    MwdbHandle handle;
    std::vector<typename Kind::Record> records;
};

// Ends the check as failed unless the records of owner 3,`owner` are exactly these. The order is the middleware's.
template <class Filter>
void expect_selected(Run& run, MwdbHandle handle, std::uint16_t owner,
                     const std::vector<typename Filter::Kind::Record>& expected) {
    std::uint16_t number = 0;
    std::int32_t version = 0;
    run.done(Filter::count(handle, owner, &number, &version));
    run.equal("records selected", expected.size(), number);
    std::vector<bool> seen(expected.size());
    for (std::size_t index = 0; index < expected.size(); ++index) {
        typename Filter::Kind::Record record = {};
        run.done(Filter::read(handle, owner, static_cast<std::uint16_t>(index), &record, &version));
        std::size_t match = 0;
        while (match < expected.size() && (seen[match] || std::memcmp(&expected[match], &record, sizeof record) != 0)) {
            ++match;
        }
        run.expect(match < expected.size(), last_call() + " gives one of the records that match, each once",
                   "record " + std::to_string(Filter::Kind::id(record)));
        seen[match] = true;
    }
}

template <class Filter>
void select_each(Run& run) {
    const Owned<Filter> list(run);
    expect_selected<Filter>(run, list.handle, 7, {list.records[0], list.records[2]});
}

template <class Filter>
void select_none(Run& run) {
    const Owned<Filter> list(run);
    std::uint16_t number = 0;
    std::int32_t version = 0;
    if (Filter::count(list.handle, 9, &number, &version) == kMwOk) {
        run.equal("records selected", 0, number);
    }
}

template <class Filter>
void select_updated(Run& run) {
    const Owned<Filter> list(run);
    auto moved = list.records[0];
    Filter::set_owner(moved, 3, 8);
    auto passed = moved;
    run.done(Filter::Kind::update_rec(list.handle, &passed, kMwUpdatePlain));
    expect_selected<Filter>(run, list.handle, 8, {moved, list.records[1]});
}

template <class Filter>
void read_within(Run& run) {
    const Owned<Filter> list(run);
    Guarded<typename Filter::Kind::Record> record(run);
    Guarded<std::int32_t> version(run);
    run.done(Filter::read(list.handle, 8, 0, record.get(), version.get()));
    record.expect_nothing_before(run, last_call());
    version.expect_nothing_before(run, last_call() + ", of the version,");
    run.equal_bytes("record read", &list.records[1], record.get(), sizeof list.records[1]);
}

template <class Filter>
void count_within(Run& run) {
    const Owned<Filter> list(run);
    Guarded<std::uint16_t> number(run);
    Guarded<std::int32_t> version(run);
    run.done(Filter::count(list.handle, 7, number.get(), version.get()));
    number.expect_nothing_before(run, last_call());
    version.expect_nothing_before(run, last_call() + ", of the version,");
    run.equal("records counted", 2, *number.get());
}

constexpr auto kLoss = Severity::kDataLoss;
constexpr auto kWrong = Severity::kWrongResult;

// Rows of a filter: `area` starts the checks' names, `owner` and `owned` are words for the texts.
template <class Filter>
void add_rows(std::vector<Check>& checks, const std::string& area, const std::string& owner, const std::string& owned,
              const std::string& native) {
    const auto row = [&](Check check) { add_of_kind<typename Filter::Kind>(checks, std::move(check)); };
    const std::string reason = "needed by " + native + " of {lists}";
    row({area + ".each",
         {Filter::kCount, Filter::kRead},
         "The count and the reads by " + owner + " agree: each of its " + owned +
             " once, of every network, and no other.",
         reason,
         kWrong,
         select_each<Filter>,
         1});
    row({area + ".none",
         {Filter::kCount},
         "The count of a " + owner + " without " + owned + " is 0, or fails.",
         reason,
         kWrong,
         select_none<Filter>,
         1});
    row({area + ".updated",
         {Filter::kCount, Filter::kRead, "update_rec"},
         "After an update that moves a record to another " + owner + ", it is found there.",
         reason,
         kWrong,
         select_updated<Filter>,
         1});
    row({area + ".writes-within",
         {Filter::kRead},
         "A read by " + owner + " writes the whole record and the version, and no byte outside.",
         reason,
         kLoss,
         read_within<Filter>,
         1});
    row({area + ".count-writes-within",
         {Filter::kCount},
         "A count by " + owner + " writes 2 bytes and the version, and no byte outside.",
         reason,
         kLoss,
         count_within<Filter>,
         1});
}

} // namespace

void add_filter_checks(std::vector<Check>& checks) {
    add_of_kind<Svl>(checks, {"all.broadcast-types",
                              {"count", "get_at"},
                              "Broadcast type 0 selects services of every broadcast type.",
                              "needed by the natives that read all services",
                              kWrong,
                              every_broadcast_type,
                              1});
    add_of_kind<Svl>(checks, {"all.network-masks",
                              {"count", "get_at"},
                              "Network mask 0xFFFFFFFF selects services with every network mask, 0 too.",
                              "needed by the natives that read all services",
                              kWrong,
                              every_network_mask,
                              1});
    add_rows<ByStream>(checks, "stream", "transport stream", "services", "native_getInfoListByTransportStreamRecord");
    add_rows<BySatellite>(checks, "satellite", "satellite", "transport streams", "native_getInfoListBySatellite");
}

} // namespace tavro::conform
