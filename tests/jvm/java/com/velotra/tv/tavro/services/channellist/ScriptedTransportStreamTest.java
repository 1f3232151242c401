package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNull;

import java.util.Arrays;
import java.util.List;
import org.junit.jupiter.api.Test;

/** The natives of VltTvTransportStreamList. */
class ScriptedTransportStreamTest extends ScriptedPlatform {
    private static final String PREFIX = "log 3 -: [jni_VltTvList_Init] ";
    private static final String BRIDGE = "com_velotra_tv_tavro_transportstreamlist_";

    private final byte[] stored = Records.with8(Records.with16(Records.patterned(724), 0, 17), 5, 1);

    private static VltTvTransportStreamInfoBase info() {
        return new VltTvTransportStreamInfoBase();
    }

    private static VltTvTransportStreamInfoBase named(String identifier) {
        VltTvTransportStreamInfoBase info = info().setTslIdTslRecId(new RecordId(0, 0));
        info.tslIdTslRecId = identifier;
        return info;
    }

    private static List<String> bridgeLines() {
        return Script.linesWith(PREFIX);
    }

    private static List<String> calls() {
        return Arrays.stream(Script.lines()).filter(line -> line.startsWith("x_")).toList();
    }

    @Test
    void forwardingNativesPassOnTheStoresStatus() {
        open(streams, 1, 2);
        assertEquals(0, streams.native_clean(1));
        assertEquals(0, streams.native_store(1, "/data/tsl"));
        assertEquals(-22, streams.native_store(1, null));
        assertEquals(0, streams.native_open(1));
        assertEquals(0, streams.native_close(1));
        assertEquals(0, streams.native_delete(2));
        assertEquals(0, streams.native_open(3, "/data/tsl"));
        assertEquals(-22, streams.native_open(4, ""));
        assertJournal(
                "x_tsl_lock(0x20001)",
                "x_tsl_clean(0x20001)",
                "x_tsl_unlock(0x20001)",
                "x_tsl_lock(0x20001)",
                "x_tsl_fs_store(0x20001, \"/data/tsl\", 1)",
                "x_tsl_unlock(0x20001)",
                "x_tsl_close(0x20001)",
                "x_tsl_delete(0x20002)",
                "x_tsl_open(3, 0, 0)",
                "x_tsl_fs_sync(0x20003, 0, \"/data/tsl\", 3)");
    }

    @Test
    void copyLocksTheTarget() {
        open(streams, 1, 2);
        Script.answer("x_tsl_copy_date", -3);
        assertEquals(-22, streams.native_copy(1, 2));
        assertJournal("x_tsl_lock(0x20002)", "x_tsl_copy_date(0x20001, 0x20002)", "x_tsl_unlock(0x20002)");
    }

    @Test
    void removesBeginWithTheirLineAndTouchOpenListsOnly() {
        open(streams, 3);
        Script.logLevel("D");
        assertEquals(0, streams.nativeRemove("3,12"));
        assertEquals(-22, streams.nativeRemove("5,12"));
        assertEquals(0, streams.nativeRemoveByRecId(3, "9,13"));
        assertEquals(
                List.of(
                        PREFIX + "[" + BRIDGE + "remove_info][2867] ",
                        PREFIX + "[" + BRIDGE + "remove_info][2867] ",
                        PREFIX + "[" + BRIDGE + "remove_info_by_recId][2876] "),
                bridgeLines());
        assertEquals(List.of("x_tsl_del_rec(0x20003, 12)", "x_tsl_del_rec(0x20003, 13)"), Script.linesWith("del_rec"));
        assertEquals(List.of(), Script.linesWith("x_tsl_open"));
    }

    @Test
    void oneStreamIsItsRecordUnchangedOrNull() {
        open(streams, 3);
        Script.answer("x_tsl_get_rec", stored);
        assertArrayEquals(stored, streams.native_getInfo("3,17"));
        Script.logLevel("D");
        Script.answer("x_tsl_get_rec", -7);
        assertNull(streams.native_getInfo("3,17"));
        assertNull(streams.native_getInfo("17"));
        assertEquals(List.of(PREFIX + BRIDGE + "getInfo getSVLInfo fail ret=-22 "), bridgeLines());
    }

    @Test
    void aListIsReadUnderTheReadLock() {
        open(streams, 1);
        byte[] other = Records.with16(stored, 0, 18);
        Script.always("x_tsl_get_num_recs", 0, 2);
        Script.answer("x_tsl_get_rec_by_rec_idx", stored);
        Script.answer("x_tsl_get_rec_by_rec_idx", other);
        assertArrayEquals(Records.join(stored, other), streams.native_getInfoList(1));
        assertJournal(
                "x_tsl_read_lock(0x20001)",
                "x_tsl_get_num_recs(0x20001)",
                "x_tsl_get_rec_by_rec_idx(0x20001, 0)",
                "x_tsl_get_rec_by_rec_idx(0x20001, 1)",
                "x_tsl_read_unlock(0x20001)");
    }

    @Test
    void aListThatIsEmptyOrNotThereIsNull() {
        open(streams, 1);
        assertNull(streams.native_getInfoList(1));
        assertJournal("x_tsl_read_lock(0x20001)", "x_tsl_get_num_recs(0x20001)", "x_tsl_read_unlock(0x20001)");
        Script.reset();
        Script.always("x_tsl_open", -5, 0);
        assertNull(streams.native_getInfoList(2));
    }

    @Test
    void aFailureAtTheThirdOfTenRecordsGivesNullAndUnlocks() {
        open(streams, 1);
        Script.logLevel("D");
        Script.always("x_tsl_get_num_recs", 0, 10);
        Script.answer("x_tsl_get_rec_by_rec_idx", 0);
        Script.answer("x_tsl_get_rec_by_rec_idx", 0);
        Script.answer("x_tsl_get_rec_by_rec_idx", -7);
        assertNull(streams.native_getInfoList(1));
        assertEquals(
                List.of(PREFIX + BRIDGE + "getInfoList", PREFIX + BRIDGE + "getInfoList getInfoByIdx fail ret=-22 "),
                bridgeLines());
        assertEquals(3, Script.linesWith("get_rec_by_rec_idx(").size());
        assertEquals(1, Script.linesWith("x_tsl_read_unlock").size());
    }

    @Test
    void aListBySatellitePassesTheListIdAsTheSatelliteListToo() {
        open(streams, 6);
        Script.logLevel("D");
        Script.always("x_tsl_get_num_rec_by_sat", 0, 1);
        Script.always("x_tsl_get_rec_by_sat", stored);
        assertArrayEquals(stored, streams.native_getInfoListBySatellite(6, 9));
        assertEquals(List.of(PREFIX + BRIDGE + "getInfoListBySatellite"), bridgeLines());
        assertEquals(
                List.of(
                        "x_tsl_read_lock(0x20006)",
                        "x_tsl_get_num_rec_by_sat(0x20006, 65535, 6, 9)",
                        "x_tsl_get_rec_by_sat(0x20006, 65535, 6, 9, 0)",
                        "x_tsl_read_unlock(0x20006)"),
                calls());
    }

    @Test
    void aListBySatelliteWithoutRecordsIsNullAndUnlocked() {
        open(streams, 6);
        assertNull(streams.native_getInfoListBySatellite(6, 9));
        assertJournal(
                "x_tsl_read_lock(0x20006)", "x_tsl_get_num_rec_by_sat(0x20006, 65535, 6, 9)",
                "x_tsl_read_unlock(0x20006)");
    }

    @Test
    void aListBySatelliteThatFailsSaysSoUnderItsOwnNameAndUnlocks() {
        open(streams, 6);
        Script.logLevel("D");
        Script.always("x_tsl_get_num_rec_by_sat", 0, 3);
        Script.answer("x_tsl_get_rec_by_sat", stored);
        Script.answer("x_tsl_get_rec_by_sat", -7);
        assertNull(streams.native_getInfoListBySatellite(6, 9));
        String name = PREFIX + BRIDGE + "getInfoListBySatellite";
        assertEquals(List.of(name, name + " getInfoByIdx fail ret=-22 "), bridgeLines());
        assertEquals(
                List.of(
                        "x_tsl_read_lock(0x20006)",
                        "x_tsl_get_num_rec_by_sat(0x20006, 65535, 6, 9)",
                        "x_tsl_get_rec_by_sat(0x20006, 65535, 6, 9, 0)",
                        "x_tsl_get_rec_by_sat(0x20006, 65535, 6, 9, 1)",
                        "x_tsl_read_unlock(0x20006)"),
                calls());
    }

    @Test
    void updateOverlaysTheRecordInTheListGivenAndStoresItUnderTheLock() {
        open(streams, 1);
        Script.answer("x_tsl_get_rec", stored);
        assertEquals(0, streams.native_updateInfo(1, named("9,17").setTransportStreamId(0x1234).setBandwidth(8000)));
        assertArrayEquals(Records.with32(Records.with16(stored, 16, 0x1234), 48, 3), Script.lastRecord());
        assertJournal(
                "x_tsl_get_rec(0x20001, 17)",
                "x_tsl_lock(0x20001)",
                "x_tsl_update_rec(0x20001, record, 0)",
                "x_tsl_unlock(0x20001)");
    }

    @Test
    void updateWithoutAnIdentifierUpdatesRecordZero() {
        open(streams, 1);
        assertEquals(0, streams.native_updateInfo(1, info()));
        assertEquals(0, streams.native_updateInfo(1, named(null)));
        assertEquals(List.of("x_tsl_get_rec(0x20001, 0)", "x_tsl_get_rec(0x20001, 0)"), Script.linesWith("get_rec"));
    }

    @Test
    void updateFailsForABadIdentifierAnUnreadableRecordAndANullObject() {
        open(streams, 1);
        assertEquals(-22, streams.native_updateInfo(1, named("x,1")));
        assertEquals(-22, streams.native_updateInfo(1, (VltTvTransportStreamInfoBase) null));
        assertJournal();
        Script.answer("x_tsl_get_rec", -7);
        assertEquals(-22, streams.native_updateInfo(1, named("1,17")));
        assertJournal("x_tsl_get_rec(0x20001, 17)");
    }

    @Test
    void updateByRecordIdStampsTheTargetListAndTellsWhatItWasAsked() {
        open(streams, 1, 300);
        Script.logLevel("D");
        Script.answer("x_tsl_get_rec", stored);
        assertEquals(0, streams.native_updateInfo(300, "1,17"));
        byte[] expected = Records.with16(Records.with16(Records.with8(stored, 20, 44), 708, 300), 712, 300);
        assertArrayEquals(expected, Script.lastRecord());
        List<String> stored = List.of(
                "x_tsl_get_rec(0x20001, 17)",
                "x_tsl_lock(0x2012c)",
                "x_tsl_update_rec(0x2012c, record, 0)",
                "x_tsl_unlock(0x2012c)");
        assertEquals(stored, calls());
        assertEquals(-22, streams.native_updateInfo(300, "bad"));
        assertEquals(-22, streams.native_updateInfo(300, (String) null));
        String name = PREFIX + BRIDGE + "updateInfo_by_recId";
        assertEquals(
                List.of(
                        name, name + " recId=1,17",
                        name, name + " recId=bad", name + " tmpRecId=0 ",
                        name, name + " recId=", name + " tmpRecId=0 "),
                bridgeLines());
        assertEquals(stored, calls());
        streams.native_close(300);
    }

    @Test
    void updateByRecordIdOfASourceThatCannotBeReadFailsWithoutTheLock() {
        open(streams, 1, 2);
        Script.answer("x_tsl_get_rec", -7);
        assertEquals(-22, streams.native_updateInfo(2, "1,17"));
        assertJournal("x_tsl_get_rec(0x20001, 17)");
    }

    @Test
    void readsOfOneStreamTakeNoLockAndAddsAndRemovesTheStoresAlone() {
        open(streams, 1, 2);
        streams.native_getInfo("1,17");
        streams.nativeAdd(1, info());
        streams.nativeAdd(2, "1,17");
        streams.nativeRemove("1,17");
        streams.nativeRemoveByRecId(2, "1,18");
        assertJournal(
                "x_tsl_get_rec(0x20001, 17)",
                "x_tsl_qry_rec_id(0x20001, 2)",
                "x_tsl_lock(0x20001)",
                "x_tsl_add_rec(0x20001, record)",
                "x_tsl_unlock(0x20001)",
                "x_tsl_get_rec(0x20001, 17)",
                "x_tsl_lock(0x20002)",
                "x_tsl_add_rec(0x20002, record)",
                "x_tsl_unlock(0x20002)",
                "x_tsl_lock(0x20001)",
                "x_tsl_del_rec(0x20001, 17)",
                "x_tsl_unlock(0x20001)",
                "x_tsl_lock(0x20002)",
                "x_tsl_del_rec(0x20002, 18)",
                "x_tsl_unlock(0x20002)");
    }

    @Test
    void listUpdateSkipsElementsWhoseIdentifierCannotBeParsed() {
        open(streams, 1);
        Script.always("x_tsl_get_rec", stored);
        assertEquals(0, streams.native_updateInfoList(
                1, List.of(named("1,17"), named("a,b"), named(null), named(""), info(), named("1,18"))));
        assertJournal(
                "x_tsl_lock(0x20001)",
                "x_tsl_get_rec(0x20001, 17)",
                "x_tsl_update_rec(0x20001, record, 0)",
                "x_tsl_get_rec(0x20001, 0)",
                "x_tsl_update_rec(0x20001, record, 0)",
                "x_tsl_get_rec(0x20001, 18)",
                "x_tsl_update_rec(0x20001, record, 0)",
                "x_tsl_unlock(0x20001)");
    }

    @Test
    void listUpdateOfNothingLocksAndOfANullListFailsBefore() {
        open(streams, 1);
        assertEquals(0, streams.native_updateInfoList(1, List.of()));
        assertEquals(-22, streams.native_updateInfoList(1, null));
        assertJournal("x_tsl_lock(0x20001)", "x_tsl_unlock(0x20001)");
    }

    @Test
    void listUpdateStopsAtARecordThatCannotBeReadOrStored() {
        open(streams, 1);
        Script.answer("x_tsl_get_rec", 0);
        Script.answer("x_tsl_get_rec", -7);
        assertEquals(-22, streams.native_updateInfoList(1, List.of(named("1,17"), named("1,18"), named("1,19"))));
        assertJournal(
                "x_tsl_lock(0x20001)",
                "x_tsl_get_rec(0x20001, 17)",
                "x_tsl_update_rec(0x20001, record, 0)",
                "x_tsl_get_rec(0x20001, 18)",
                "x_tsl_unlock(0x20001)");
        Script.reset();
        Script.answer("x_tsl_update_rec", -7);
        assertEquals(-22, streams.native_updateInfoList(1, List.of(named("1,17"), named("1,18"))));
        assertEquals(-22, streams.native_updateInfoList(1, Arrays.asList((VltTvTransportStreamInfoBase) null)));
        assertEquals(2, Script.linesWith("unlock").size());
    }

    @Test
    void addStoresAZeroedRecordWithTheKeysOfTheObject() {
        open(streams, 1);
        Script.logLevel("D");
        Script.answer("x_tsl_qry_rec_id", -6, 0);
        assertEquals("1,1", streams.nativeAdd(1, info().setBroadcastMedium(3).setFrequency(11493000)));
        assertArrayEquals(
                Records.with32(Records.with8(Records.with16(new byte[724], 0, 1), 5, 3), 44, 11493000),
                Script.lastRecord());
        assertEquals(
                List.of(
                        PREFIX + "[" + BRIDGE + "add_Info][2811] ",
                        PREFIX + "[_set_ts_info][2544] ",
                        PREFIX + "[_set_freq_by_medium][2537] ui4_freq:11493000 iFrequency:11493000 ",
                        PREFIX + "[tsList->addInfo][0] ",
                        PREFIX + "[combineMId] mwdbId = 1, recId = 1"),
                bridgeLines());
    }

    @Test
    void addThatFailsAnswersAnEmptyString() {
        open(streams, 1);
        Script.logLevel("D");
        Script.answer("x_tsl_add_rec", -9);
        assertEquals("", streams.nativeAdd(1, info()));
        assertEquals(List.of(PREFIX + "[tsList->addInfo][-22] "), Script.linesWith("[tsList->"));
        assertEquals("", streams.nativeAdd(1, (VltTvTransportStreamInfoBase) null));
    }

    @Test
    void addByRecordIdCopiesARecordAndStampsTheTargetList() {
        open(streams, 1, 4);
        Script.logLevel("D");
        Script.answer("x_tsl_get_rec", stored);
        assertEquals("4,17", streams.nativeAdd(4, "1,17"));
        assertArrayEquals(
                Records.with16(Records.with16(Records.with8(stored, 20, 4), 708, 4), 712, 4), Script.lastRecord());
        assertEquals(PREFIX + "[" + BRIDGE + "add_Info_by_recId][2836] ", bridgeLines().get(0));
        assertEquals(PREFIX + "[tsList->copyInfo][0] ", bridgeLines().get(1));
        assertEquals("", streams.nativeAdd(4, "17"));
        Script.answer("x_tsl_get_rec", -7);
        assertEquals("", streams.nativeAdd(4, "1,17"));
        Script.answer("x_tsl_add_rec", -9);
        assertEquals("", streams.nativeAdd(4, "1,17"));
        assertEquals(
                List.of(PREFIX + "[tsList->copyInfo][0] ", PREFIX + "[tsList->copyInfo][-22] "),
                Script.linesWith("[tsList->"));
    }
}
