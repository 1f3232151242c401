// What the natives that add and update records have in common. Services take part where their rules are the same.

#include "bridge_test_support.h"

#include <utility>

namespace script = tavro::script;

namespace {

using namespace tavro::test;

class RecordWrites : public BridgeKindTest {
protected:
    RecordWrites() { log_level("D"); }

    jint update_by_record_id(const std::string& identifier) {
        jni.clear_journal();
        return kind.natives.update_by_record_id(jni.env(), nullptr, 300, text(identifier));
    }
    std::string add_by_record_id(const std::string& identifier) {
        jni.clear_journal();
        return text_of(kind.natives.add_by_record_id(jni.env(), nullptr, 2, text(identifier)));
    }
    // The line that reports the result of an add.
    std::string added_line(const std::string& manager_call, int status, const std::string& list,
                           const std::string& record_id) const {
        const std::string line =
            kJniLine + "[" + kind.manager_name + "->" + manager_call + "][" + std::to_string(status) + "] ";
        return kind.is_services() ? line + "mwdbId = " + list + ", rec_id = " + record_id : line;
    }
    Lines update_begun(const std::string& identifier) const {
        const Lines line = entry("updateInfo_by_recId");
        if (&kind != &transport_stream_kind()) {
            return joined(line, chars(identifier));
        }
        // Deliberate: these characters are not released.
        return joined(line, chars_kept(identifier), Lines{line[0] + " recId=" + identifier}, chars(identifier));
    }

    // Services get a free id, found under the lock. Other records get the highest id plus one.
    const std::string next_id = kind.is_services() ? "1" : "2";
    const Lines add_calls =
        kind.is_services()
            ? joined(call("lock(@1)"), call("qry_rec_id(@1, 3)"), call("add_rec(@1, record)"), call("unlock(@1)"))
            : joined(call("qry_rec_id(@1, 2)"), call_under_lock("add_rec(@1, record)", "@1"));
};

TEST_P(RecordWrites, ANullObjectOrListFailsAfterTheEntryLine) {
    EXPECT_EQ(kind.natives.update(jni.env(), nullptr, 1, nullptr), -22);
    EXPECT_EQ(kind.natives.update_list(jni.env(), nullptr, 1, nullptr), -22);
    EXPECT_EQ(text_of(kind.natives.add(jni.env(), nullptr, 1, nullptr)), "");
    EXPECT_EQ(journal(),
              joined(entry("updateInfo"), entry("updateInfoList"), entry("add_Info"), Lines{"NewStringUTF(\"\")"}));
}

TEST_P(RecordWrites, AnAddStoresUnderTheNextIdAndReturnsIt) {
    const std::string result = text_of(kind.natives.add(jni.env(), nullptr, 1, FakeJni::ref(object())));
    EXPECT_EQ(result, "1," + next_id);
    const Lines begin = joined(entry("add_Info"), Lines{"NewStringUTF(\"\")"});
    const Lines end = joined(add_calls, Lines{added_line("addInfo", 0, "1", next_id)}, identifier_made("1", next_id));
    const Lines before = journal_before(add_calls.front());
    ASSERT_GT(before.size(), begin.size());
    EXPECT_EQ(Lines(before.begin(), before.begin() + static_cast<std::ptrdiff_t>(begin.size())), begin);
    EXPECT_EQ(journal_from(add_calls.front()), end);
}

TEST_P(RecordWrites, AnAddThatFailsReturnsAnEmptyString) {
    script::answer(call_name("add_rec"), fails());
    EXPECT_EQ(text_of(kind.natives.add(jni.env(), nullptr, 1, FakeJni::ref(object()))), "");
    EXPECT_EQ(journal().back(), added_line("addInfo", -22, "1", next_id));
    EXPECT_EQ(jni.journal_with("unlock("), call("unlock(@1)"));
}

TEST_P(RecordWrites, AnAddByRecordIdCopiesTheRecordUnderItsOwnId) {
    const Lines begun = joined(entry("add_Info_by_recId"), Lines{"NewStringUTF(\"\")"});
    const Lines found = joined(begun, chars("1,17"), call("get_rec(@1, 17)"));
    const Lines copied = call_under_lock("add_rec(@2, record)", "@2");
    script::answer(call_name("get_rec"), reads(kind.sample));
    EXPECT_EQ(add_by_record_id("1,17"), "2,17");
    EXPECT_EQ(journal(),
              joined(found, copied, Lines{added_line("copyInfo", 0, "2", "17")}, identifier_made("2", "17")));

    script::answer(call_name("get_rec"), reads(kind.sample));
    script::answer(call_name("add_rec"), fails());
    EXPECT_EQ(add_by_record_id("1,17"), "");
    EXPECT_EQ(journal(), joined(found, copied, Lines{added_line("copyInfo", -22, "2", "17")}));

    script::answer(call_name("get_rec"), fails());
    EXPECT_EQ(add_by_record_id("1,17"), "");
    EXPECT_EQ(journal(), found);

    EXPECT_EQ(add_by_record_id(kind.bad_identifier), "");
    EXPECT_EQ(jni.journal_with(kind.calls), Lines{});
}

TEST_P(RecordWrites, AnUpdateByRecordIdStoresUnderTheTargetsLock) {
    script::answer(call_name("get_rec"), reads(kind.sample));
    EXPECT_EQ(update_by_record_id("1,17"), 0);
    const Lines found = joined(update_begun("1,17"), call("get_rec(@1, 17)"));
    EXPECT_EQ(journal(), joined(found, call_under_lock("update_rec(@300, record, 0)", "@300")));
    EXPECT_EQ(last_record(), kind.stamped);

    script::answer(call_name("update_rec"), fails());
    EXPECT_EQ(update_by_record_id("1,17"), -22);
    EXPECT_EQ(jni.journal_with("lock("), joined(call("lock(@300)"), call("unlock(@300)")));

    script::answer(call_name("get_rec"), fails());
    EXPECT_EQ(update_by_record_id("1,17"), -22);
    EXPECT_EQ(journal(), found);

    EXPECT_EQ(update_by_record_id(kind.bad_identifier), -22);
    EXPECT_EQ(jni.journal_with(kind.calls), Lines{});
}

INSTANTIATE_TEST_SUITE_P(Kinds, RecordWrites,
                         testing::Values(&service_kind(), &transport_stream_kind(), &network_kind(), &satellite_kind()),
                         kind_name);

// What differs between the updates of transport streams, networks and satellites.
struct Update {
    Lines begin;      // before the identifier is asked for
    Lines conversion; // of an object that has no values
    Lines end;
    Lines element_begin;
    Lines element_end;
    Lines list_classes; // looked up once for a list
    bool locks_list;    // once for all elements
    bool keeps_bad_key; // the key's string of an identifier that cannot be parsed is not released
    bool keeps_id_text; // of a single update: released when the native returns
};

const Update& update_of(const BridgeKind& kind) {
    static const std::string base = contains_key_of(kPackage + "VltTvNetworkInfoBase");
    static const Lines network = {"GetObjectClass(network)", base};
    static const Lines satellite = {"GetObjectClass(satellite)", kSatelliteContainsKeyCall};
    static const Lines satellite_end = {"DeleteLocalRef(class of satellite)"};
    static const Lines find_satellites = {"FindClass(" + kSatelliteBase + ")"};
    static const Update streams = {{"GetObjectClass(stream)", kStreamContainsKey},
                                   stream_conversion("stream"),
                                   {},
                                   {},
                                   {"DeleteLocalRef(stream)"},
                                   {kFindStreamClass, kStreamContainsKey},
                                   true,
                                   true,
                                   true};
    static const Update networks = {network,
                                    all_asked("network", kNetworkKeys),
                                    {},
                                    network,
                                    {"DeleteLocalRef(class of network)", "DeleteLocalRef(network)"},
                                    {},
                                    true,
                                    true,
                                    false};
    static const Update satellites = {joined(find_satellites, satellite),
                                      satellite_conversion(false),
                                      satellite_end,
                                      satellite,
                                      joined(satellite_end, given_back("satellite")),
                                      find_satellites,
                                      false,
                                      false,
                                      false};
    return &kind == &transport_stream_kind() ? streams : &kind == &network_kind() ? networks : satellites;
}

class CompanionUpdates : public BridgeKindTest {
protected:
    jint update(FakeObject& made) {
        jni.clear_journal();
        return kind.natives.update(jni.env(), nullptr, 1, FakeJni::ref(made));
    }
    jint update_list(std::vector<FakeObject*> elements) {
        jni.clear_journal();
        return kind.natives.update_list(jni.env(), nullptr, 1, FakeJni::ref(jni.list(std::move(elements))));
    }

    Lines stored_locked() const { return call_under_lock("update_rec(@1, record, 0)", "@1"); }
    Lines single_id_read(const std::string& text) const {
        return rules.keeps_id_text ? joined(id_read(), chars(text)) : id_read(text);
    }
    Lines read(const std::string& record_id) const { return call("get_rec(@1, " + record_id + ")"); }
    Lines bad_id_asked(const Lines& id_read) const {
        return rules.keeps_bad_key ? id_asked_and_kept(id_read) : id_asked(id_read);
    }

    // The parts of a list update.
    Lines list_locked() const { return rules.locks_list ? call("lock(@1)") : Lines{}; }
    Lines list_unlocked() const { return rules.locks_list ? call("unlock(@1)") : Lines{}; }
    Lines list_begun() const {
        return joined(Lines{"GetObjectClass(list)", "GetMethodID(get, (I)Ljava/lang/Object;)", "GetMethodID(size, ()I)",
                            "list.size()", "DeleteLocalRef(class of list)"},
                      list_locked());
    }
    Lines element_begun(int index) const {
        return joined(Lines{"list.get(" + std::to_string(index) + ")"}, rules.element_begin);
    }
    Lines element_read(int index, const std::string& record_id) const {
        return joined(element_begun(index), id_asked(id_read("1," + record_id)), read(record_id));
    }
    Lines element_stored() const { return rules.locks_list ? call("update_rec(@1, record, 0)") : stored_locked(); }
    Lines element_updated(int index, const std::string& record_id) const {
        return joined(element_read(index, record_id), rules.conversion, element_stored(), rules.element_end);
    }

    const Update& rules = update_of(kind);
};

TEST_P(CompanionUpdates, ReadTheRecordThenTheKeysAndLockToStore) {
    EXPECT_EQ(update(named("1,17")), 0);
    EXPECT_EQ(journal(), joined(rules.begin, id_asked(single_id_read("1,17")), read("17"), rules.conversion,
                                stored_locked(), rules.end));
}

TEST_P(CompanionUpdates, StoreZerosWhereNothingWasStored) {
    EXPECT_EQ(update(named("1,17")), 0);
    EXPECT_EQ(last_record(), Bytes(kind.sample.size()));
    script::answer(call_name("get_rec"), reads(kind.sample)); // for the first element
    EXPECT_EQ(update_list({&named("1,17"), &named("1,18")}), 0);
    EXPECT_EQ(last_record(), Bytes(kind.sample.size()));
}

TEST_P(CompanionUpdates, FailAtAnIdentifierThatCannotBeParsed) {
    for (const char* bad : {"x,1", "1,x", "17", ""}) {
        EXPECT_EQ(update(named(bad)), -22);
        EXPECT_EQ(journal(), joined(rules.begin, bad_id_asked(single_id_read(bad)), rules.end)) << bad;
    }
}

TEST_P(CompanionUpdates, TakeNoLockForARecordThatCannotBeRead) {
    script::answer(call_name("get_rec"), fails());
    EXPECT_EQ(update(named("1,17")), -22);
    EXPECT_EQ(journal(), joined(rules.begin, id_asked(single_id_read("1,17")), read("17"), rules.end));
}

TEST_P(CompanionUpdates, ReleaseTheLockOfARecordThatCannotBeStored) {
    script::answer(call_name("update_rec"), fails());
    EXPECT_EQ(update(named("1,17")), -22);
    EXPECT_EQ(journal(), joined(rules.begin, id_asked(single_id_read("1,17")), read("17"), rules.conversion,
                                stored_locked(), rules.end));
}

TEST_P(CompanionUpdates, ThatLackAMethodAFieldOrAStringStoreNothing) {
    log_level("D");
    const std::string no_chars = chars("1,17")[0];
    for (const std::string& missing :
         {rules.begin.back(), "NewStringUTF(" + quoted(kind.id_key) + ")", id_read()[0], no_chars}) {
        const Lines invalid = missing == no_chars ? Lines{"log 6 -: Invalid String.\n"} : Lines{};
        FakeJni one;
        one.fail(missing);
        EXPECT_EQ(kind.natives.update(one.env(), nullptr, 1, FakeJni::ref(named("1,17"))), -22);
        EXPECT_EQ(one.journal_with(kind.calls), Lines{}) << missing;
        EXPECT_EQ(one.journal_with("log "), joined(entry("updateInfo"), invalid)) << missing;
        EXPECT_TRUE(one.exception_pending());

        FakeJni many;
        many.fail(missing);
        FakeObject& list = jni.list({&named("1,17"), &named("1,18")});
        EXPECT_EQ(kind.natives.update_list(many.env(), nullptr, 1, FakeJni::ref(list)), -22);
        EXPECT_EQ(many.journal_with(kind.calls), joined(list_locked(), list_unlocked())) << missing;
        EXPECT_EQ(many.journal_with("log 3 -:"), entry("updateInfoList")) << missing;
        EXPECT_EQ(many.journal_with("log 6"), invalid) << missing;
        EXPECT_TRUE(many.exception_pending());
    }
}

TEST_P(CompanionUpdates, OfAListGoFromElementToElement) {
    EXPECT_EQ(update_list({&named("1,17"), &named("1,18")}), 0);
    EXPECT_EQ(journal(), joined(list_begun(), rules.list_classes, element_updated(0, "17"), element_updated(1, "18"),
                                list_unlocked()));
}

TEST_P(CompanionUpdates, OfAListEndAtARecordThatCannotBeRead) {
    script::answer(call_name("get_rec"), fails());
    EXPECT_EQ(update_list({&named("1,17"), &named("1,18")}), -22);
    EXPECT_EQ(journal(),
              joined(list_begun(), rules.list_classes, element_read(0, "17"), rules.element_end, list_unlocked()));
}

TEST_P(CompanionUpdates, OfAListEndAtARecordThatCannotBeStored) {
    script::answer(call_name("update_rec"), fails());
    EXPECT_EQ(update_list({&named("1,17"), &named("1,18")}), -22);
    EXPECT_EQ(journal(), joined(list_begun(), rules.list_classes, element_updated(0, "17"), list_unlocked()));
}

TEST_P(CompanionUpdates, OfAListEndAtANullElement) {
    EXPECT_EQ(update_list({&named("1,17"), nullptr, &named("1,18")}), -22);
    EXPECT_EQ(journal(), joined(list_begun(), rules.list_classes, element_updated(0, "17"), Lines{"list.get(1)"},
                                list_unlocked()));
}

INSTANTIATE_TEST_SUITE_P(Kinds, CompanionUpdates,
                         testing::Values(&transport_stream_kind(), &network_kind(), &satellite_kind()), kind_name);

// The identifier is asked for like any other value: without one, record 0 is updated. A satellite without one
// belongs to no list.
class UnnamedUpdates : public CompanionUpdates {};

TEST_P(UnnamedUpdates, ChangeRecordZero) {
    const Lines updated = joined(read("0"), rules.conversion, stored_locked());
    EXPECT_EQ(update(object()), 0);
    EXPECT_EQ(journal(), joined(rules.begin, id_asked({}), updated));
    EXPECT_EQ(update(named(nullptr)), 0);
    EXPECT_EQ(journal(), joined(rules.begin, id_asked(id_read()), updated));
    EXPECT_EQ(update_list({&object()}), 0);
    EXPECT_EQ(journal(), joined(list_begun(), rules.list_classes, element_begun(0), id_asked({}), read("0"),
                                rules.conversion, element_stored(), rules.element_end, list_unlocked()));
}

TEST_P(UnnamedUpdates, OfAnEmptyListLockIt) {
    EXPECT_EQ(update_list({}), 0);
    EXPECT_EQ(journal(), joined(list_begun(), rules.list_classes, list_unlocked()));
}

INSTANTIATE_TEST_SUITE_P(Kinds, UnnamedUpdates, testing::Values(&transport_stream_kind(), &network_kind()), kind_name);

} // namespace
