// Adding records.

#include "conform/guarded.h"
#include "conform/lists.h"

namespace tavro::conform {
namespace {

constexpr std::uint16_t kHighestId = kMwNoRecordId - 1;

template <class Kind>
void add_comes_back(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    for (std::uint16_t id = 1; id <= 4; ++id) {
        const auto record = add<Kind>(run, handle, id);
        const auto found = get<Kind>(run, handle, id);
        run.equal_bytes("record read by its id", &record, &found, sizeof record);
    }
}

template <class Kind>
void add_plain_bytes(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    std::uint16_t id = 0;
    for (const unsigned char byte : {0x00, 0xFF, 0x80}) {
        typename Kind::Record record;
        std::memset(&record, byte, sizeof record);
        Kind::id(record) = ++id;
        typename Kind::Record passed = record;
        run.done(Kind::add_rec(handle, &passed));
        const auto found = get<Kind>(run, handle, id);
        run.equal_bytes("record read by its id", &record, &found, sizeof record);
    }
}

template <class Kind>
void add_keeps_argument(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    const auto record = make_record<Kind>(7);
    auto passed = record;
    run.done(Kind::add_rec(handle, &passed));
    run.equal_bytes("record that was passed", &record, &passed, sizeof record);
}

template <class Kind>
void add_reads_within(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    Guarded<typename Kind::Record> record(run);
    *record.get() = make_record<Kind>(7);
    run.done(Kind::add_rec(handle, record.get()));
    record.expect_nothing_before(run, last_call());
}

template <class Kind>
void add_copies(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    const auto record = make_record<Kind>(7);
    auto passed = record;
    run.done(Kind::add_rec(handle, &passed));
    std::memset(&passed, 0, sizeof passed);
    const auto found = get<Kind>(run, handle, 7);
    run.equal_bytes("record whose memory was used again after the add", &record, &found, sizeof record);
}

template <class Kind>
void add_taken_id(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    add<Kind>(run, handle, 7, 1);
    auto other = make_record<Kind>(7, 2);
    const MwStatus status = Kind::add_rec(handle, &other);
    if (Kind::kIsCompanion) {
        run.returns(kMwRecordExists, status);
    } else {
        run.fails(status);
    }
}

template <class Kind>
void add_taken_keeps(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    const auto record = add<Kind>(run, handle, 7, 1);
    auto other = make_record<Kind>(7, 2);
    Kind::add_rec(handle, &other);
    expect_contents<Kind>(run, handle, {record});
}

template <class Kind>
void add_limits(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    const auto first = add<Kind>(run, handle, 1);
    const auto last = add<Kind>(run, handle, kHighestId);
    const auto found_first = get<Kind>(run, handle, 1);
    run.equal_bytes("record 1", &first, &found_first, sizeof first);
    const auto found_last = get<Kind>(run, handle, kHighestId);
    run.equal_bytes("record 65534", &last, &found_last, sizeof last);
}

template <class Kind>
void add_no_id(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    auto record = make_record<Kind>(kMwNoRecordId);
    run.fails(Kind::add_rec(handle, &record));
}

constexpr auto kLoss = Severity::kDataLoss;
constexpr auto kWrong = Severity::kWrongResult;

template <class Kind>
void add_rows(std::vector<Check>& checks) {
    const auto row = [&](Check check) { add_of_kind<Kind>(checks, std::move(check)); };
    row({"add.bytes",
         {"add_rec", "get_rec"},
         "A record comes back byte for byte.",
         "needed by the natives that add and read records of {lists}: reserved bytes belong to the middleware",
         kLoss,
         add_comes_back<Kind>,
         1});
    row({"add.names",
         {"add_rec", "get_rec"},
         "Names without a NUL, and records in which all bytes are alike, come back unchanged.",
         "needed by the natives that add and read records of {lists}: a name may fill its field",
         kLoss,
         add_plain_bytes<Kind>,
         1});
    row({"add.argument",
         {"add_rec"},
         "An add leaves the caller's record alone.",
         "needed by nativeAdd of {lists}: it returns the id in the record",
         kWrong,
         add_keeps_argument<Kind>,
         1});
    row({"add.reads-within",
         {"add_rec"},
         "An add uses no byte outside the caller's record.",
         "needed by nativeAdd of {lists}: the record is on the stack",
         kLoss,
         add_reads_within<Kind>,
         1});
    row({"add.copies",
         {"add_rec"},
         "An add copies the record.",
         "needed by nativeAdd of {lists}: the record ends with the native",
         kLoss,
         add_copies<Kind>,
         1});
    if (Kind::kIsCompanion) {
        row({"add.taken-id",
             {"add_rec"},
             "Adding a record whose id is taken returns -11.",
             "needed by nativeAdd with an identifier of {lists}: it then updates the record",
             kWrong,
             add_taken_id<Kind>,
             1});
    } else {
        row({"add.taken-id",
             {"add_rec"},
             "Adding a record whose id is taken fails.",
             "needed by nativeAdd with an identifier of {lists}",
             kWrong,
             add_taken_id<Kind>,
             1});
    }
    row({"add.taken-keeps",
         {"add_rec"},
         "An add whose id is taken leaves the list alone.",
         "needed by nativeAdd of {lists}: two of them may draw the same id",
         kLoss,
         add_taken_keeps<Kind>,
         1});
    row({"add.limits",
         {"add_rec", "get_rec"},
         "Records can have the ids 1 and 65534.",
         "needed by nativeAdd of {lists}",
         kWrong,
         add_limits<Kind>,
         1});
    if (Kind::kIsCompanion) { // of services, the library adds none with this id
        row({"add.id-65535",
             {"add_rec"},
             "Adding a record with the id 65535 fails.",
             "needed by nativeAdd of {lists}: it is what follows when 65534 is the highest id",
             kWrong,
             add_no_id<Kind>,
             1});
    }
}

} // namespace

void add_adding_checks(std::vector<Check>& checks) {
    add_rows<Svl>(checks);
    add_rows<Tsl>(checks);
    add_rows<Nwl>(checks);
    add_rows<Satl>(checks);
}

} // namespace tavro::conform
