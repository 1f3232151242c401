package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertSame;

import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import org.junit.jupiter.api.Test;

/** The natives of VltTvNetworkList. */
class ScriptedNetworkTest extends ScriptedPlatform {
    private static final String PREFIX = "log 3 -: [jni_VltTvList_Init] ";
    private static final String BRIDGE = "com_velotra_tv_tavro_networklist_";

    private final byte[] stored = Records.with32(
            Records.withText(Records.with8(Records.with16(Records.with16(Records.patterned(304), 4, 17), 10, 8468), 12,
                    200), 13, "Uno"),
            0, 0x4);

    private static VltTvNetworkInfoBase named(String identifier) {
        VltTvNetworkInfoBase info = new VltTvNetworkInfoBase();
        info.setNwlIdNwlRecId(identifier);
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
        open(networks, 1, 2);
        assertEquals(0, networks.native_clean(1));
        assertEquals(0, networks.native_store(1, "/data/nwl"));
        assertEquals(0, networks.native_open(1));
        assertEquals(0, networks.native_copy(1, 2));
        assertEquals(0, networks.native_close(1));
        assertEquals(0, networks.native_delete(2));
        assertEquals(0, networks.native_open(3, "/data/nwl"));
        assertEquals(-22, networks.native_open(4, ""));
        assertJournal(
                "x_nwl_lock(0x30001)",
                "x_nwl_clean(0x30001)",
                "x_nwl_unlock(0x30001)",
                "x_nwl_lock(0x30001)",
                "x_nwl_fs_store(0x30001, \"/data/nwl\", 1)",
                "x_nwl_unlock(0x30001)",
                "x_nwl_lock(0x30002)",
                "x_nwl_copy_date(0x30001, 0x30002)",
                "x_nwl_unlock(0x30002)",
                "x_nwl_close(0x30001)",
                "x_nwl_delete(0x30002)",
                "x_nwl_open(3, 0, 0)",
                "x_nwl_fs_sync(0x30003, 0, \"/data/nwl\", 3)");
    }

    @Test
    void removesBeginWithTheirLine() {
        open(networks, 3);
        Script.logLevel("D");
        assertEquals(0, networks.nativeRemove("3,12"));
        assertEquals(0, networks.nativeRemoveByRecId(3, "9,13"));
        assertEquals(-1, networks.nativeRemove("12"));
        assertEquals(PREFIX + "[" + BRIDGE + "remove_info][3238] ", bridgeLines().get(0));
        assertEquals(PREFIX + "[" + BRIDGE + "remove_info_by_recId][3248] ", bridgeLines().get(1));
        assertEquals(List.of("x_nwl_del_rec(0x30003, 12)", "x_nwl_del_rec(0x30003, 13)"), Script.linesWith("del_rec"));
    }

    @Test
    void oneNetworkWithANullKeyListHasAllValuesAndItsIdentifier() {
        open(networks, 3);
        Script.logLevel("D");
        Script.answer("x_nwl_get_rec", stored);
        VltTvNetworkInfo info = networks.native_getInfo("3,99", null);
        assertEquals(new RecordId(3, 17), info.id());
        assertEquals(
                List.of("NwlIdNwlRecId", "NetworkVersion", "NetworkName", "NwlFavNetworkCandidate", "NwlFavNetwork",
                        "NwlNetworkId"),
                List.copyOf(info.keys()));
        assertEquals(200, info.getNetworkVersion());
        assertEquals("Uno", info.getNetworkName());
        assertEquals(0, info.getNwlFavNetworkCandidate());
        assertEquals(1, info.getNwlFavNetwork());
        assertEquals(8468, info.getNwlNetworkId());
        assertEquals(
                List.of(PREFIX + BRIDGE + "getInfo line:3258 ", PREFIX + "[combineMId] mwdbId = 3, recId = 17"),
                bridgeLines());
    }

    @Test
    void oneNetworkWithAKeyListHasTheValuesOfThoseKeysAlone() {
        open(networks, 3);
        Script.logLevel("D");
        Script.always("x_nwl_get_rec", stored);
        VltTvNetworkInfo info = networks.native_getInfo(
                "3,17", Arrays.asList("NetworkVersion", "networkversion", "Unknown", null, "NetworkName",
                        "NwlIdNwlRecId"));
        assertEquals(List.of("NetworkVersion", "NetworkName", "NwlIdNwlRecId"), List.copyOf(info.keys()));
        assertEquals(new RecordId(3, 17), info.id());
        assertEquals(List.of(PREFIX + "Key List size = 6\n"), Script.linesWith("Key List"));
        assertEquals(
                List.of(
                        "log 3 -: [KEY_NETWORK_VERSION] _get_nwl_info  pt_nwl_rec.ui2_nwl_rec_id:17 ",
                        "log 3 -: [KEY_NETWORK_NAME] _get_nwl_info  pt_nwl_rec.ui2_nwl_rec_id:17"),
                Script.linesWith("[KEY_"));
        for (String key : List.of("NetworkVersion", "NetworkName", "NwlFavNetworkCandidate", "NwlFavNetwork",
                "NwlNetworkId")) {
            info = networks.native_getInfo("3,17", List.of(key));
            assertEquals(List.of(key), List.copyOf(info.keys()));
        }
        assertEquals(List.of(), List.copyOf(networks.native_getInfo("3,17", List.of()).keys()));
    }

    @Test
    void oneNetworkThatCannotBeReadIsNull() {
        open(networks, 3);
        Script.logLevel("D");
        Script.answer("x_nwl_get_rec", -7);
        assertNull(networks.native_getInfo("3,17", null));
        assertNull(networks.native_getInfo("17", null));
        assertEquals(List.of(PREFIX + BRIDGE + "getInfo getInfo fail ret=-22 "), Script.linesWith("fail ret"));
    }

    @Test
    void aListIsReadUnderTheReadLockIntoAnArrayList() {
        open(networks, 1);
        Script.logLevel("D");
        Script.always("x_nwl_get_num_rec", 0, 2);
        Script.answer("x_nwl_get_rec_by_rec_idx", stored);
        Script.answer("x_nwl_get_rec_by_rec_idx", Records.with16(stored, 4, 18));
        List<VltTvNetworkInfo> list = networks.native_getInfoList(1, null);
        assertSame(ArrayList.class, list.getClass());
        assertEquals(List.of(new RecordId(1, 17), new RecordId(1, 18)), list.stream().map(VltTvNetworkInfo::id)
                .toList());
        assertEquals("Uno", list.get(1).getNetworkName());
        assertEquals(
                List.of(
                        PREFIX + BRIDGE + "getInfoList",
                        PREFIX + BRIDGE + "getInfoList  pt_nwl_rec.ui2_nwl_rec_id:17 ",
                        PREFIX + "[combineMId] mwdbId = 1, recId = 17",
                        PREFIX + BRIDGE + "getInfoList  pt_nwl_rec.ui2_nwl_rec_id:18 ",
                        PREFIX + "[combineMId] mwdbId = 1, recId = 18"),
                bridgeLines());
        assertEquals(
                List.of(
                        "x_nwl_read_lock(0x30001)",
                        "x_nwl_get_num_rec(0x30001)",
                        "x_nwl_get_rec_by_rec_idx(0x30001, 0)",
                        "x_nwl_get_rec_by_rec_idx(0x30001, 1)",
                        "x_nwl_read_unlock(0x30001)"),
                calls());
    }

    @Test
    void aListByKeysWritesTheKeysWithoutABlankBehindThePrefix() {
        open(networks, 1);
        Script.logLevel("D");
        Script.always("x_nwl_get_num_rec", 0, 1);
        Script.always("x_nwl_get_rec_by_rec_idx", stored);
        List<VltTvNetworkInfo> list = networks.native_getInfoList(1, List.of("NwlNetworkId", "Nothing"));
        assertEquals(List.of("NwlNetworkId"), List.copyOf(list.get(0).keys()));
        assertEquals(
                List.of(
                        "log 3 -: [jni_VltTvList_Init]getInfoList, Key List size = 2\n",
                        "log 3 -: [jni_VltTvList_Init]getInfoList, keyName = NwlNetworkId \n",
                        "log 3 -: [jni_VltTvList_Init]getInfoList, keyName = Nothing \n"),
                Script.linesWith("[jni_VltTvList_Init]getInfoList"));
    }

    @Test
    void aListWithoutRecordsIsEmptyAndAnUnreadableOneIsNull() {
        open(networks, 1);
        List<VltTvNetworkInfo> list = networks.native_getInfoList(1, null);
        assertSame(ArrayList.class, list.getClass());
        assertEquals(List.of(), list);
        Script.always("x_nwl_get_num_rec", 0, 2);
        Script.answer("x_nwl_get_rec_by_rec_idx", stored);
        Script.answer("x_nwl_get_rec_by_rec_idx", -7);
        assertNull(networks.native_getInfoList(1, null));
        assertEquals(2, Script.linesWith("read_unlock").size());
    }

    @Test
    void updateOverlaysTheFiveKeys() {
        open(networks, 1);
        VltTvNetworkInfoBase info = named("9,17");
        info.setNetworkVersion(0x155);
        info.setNetworkName("Due");
        info.setNwlFavNetworkCandidate(1);
        info.setNwlFavNetwork(2);
        info.setNwlNetworkId(0x12345);
        Script.answer("x_nwl_get_rec", stored);
        assertEquals(0, networks.native_updateInfo(1, info));
        byte[] expected =
                Records.withText(Records.with8(Records.with16(Records.with32(stored, 0, 0x2), 10, 0x2345), 12, 0x55),
                        13, "Due");
        assertArrayEquals(expected, Script.lastRecord());
        assertJournal(
                "x_nwl_get_rec(0x30001, 17)",
                "x_nwl_lock(0x30001)",
                "x_nwl_update_rec(0x30001, record, 0)",
                "x_nwl_unlock(0x30001)");
    }

    @Test
    void aNameOf31BytesIsStoredAndOneOf32IsNot() {
        open(networks, 1);
        Script.always("x_nwl_get_rec", stored);
        VltTvNetworkInfoBase info = new VltTvNetworkInfoBase();
        info.setNetworkName("n".repeat(31));
        networks.native_updateInfo(1, info);
        assertArrayEquals(Records.withText(stored, 13, "n".repeat(31)), Script.lastRecord());
        info.setNetworkName("n".repeat(32));
        networks.native_updateInfo(1, info);
        assertArrayEquals(stored, Script.lastRecord());
        info.setNetworkName(null);
        networks.native_updateInfo(1, info);
        assertArrayEquals(stored, Script.lastRecord());
    }

    @Test
    void updateFailsForABadIdentifierAnUnreadableRecordAndANullObject() {
        open(networks, 1);
        Script.logLevel("D");
        assertEquals(-22, networks.native_updateInfo(1, named("x")));
        assertEquals(-22, networks.native_updateInfo(1, (VltTvNetworkInfoBase) null));
        assertEquals(List.of(PREFIX + "[" + BRIDGE + "updateInfo][3462] ",
                PREFIX + "[" + BRIDGE + "updateInfo][3462] "), bridgeLines());
        Script.answer("x_nwl_get_rec", -7);
        assertEquals(-22, networks.native_updateInfo(1, named("1,17")));
        assertEquals(List.of(), Script.linesWith("lock"));
    }

    @Test
    void updateByRecordIdStampsTheTargetList() {
        open(networks, 1, 2);
        Script.logLevel("D");
        Script.answer("x_nwl_get_rec", stored);
        assertEquals(0, networks.native_updateInfo(2, "1,17"));
        assertArrayEquals(Records.with16(stored, 6, 2), Script.lastRecord());
        assertEquals(List.of(PREFIX + "[" + BRIDGE + "updateInfo_by_recId][3555] "), bridgeLines());
        assertEquals(-22, networks.native_updateInfo(2, "17"));
        assertEquals(
                List.of(
                        "x_nwl_get_rec(0x30001, 17)",
                        "x_nwl_lock(0x30002)",
                        "x_nwl_update_rec(0x30002, record, 0)",
                        "x_nwl_unlock(0x30002)"),
                calls());
    }

    @Test
    void updateByRecordIdOfASourceThatCannotBeReadFailsWithoutTheLock() {
        open(networks, 1, 2);
        Script.answer("x_nwl_get_rec", -7);
        assertEquals(-22, networks.native_updateInfo(2, "1,17"));
        assertJournal("x_nwl_get_rec(0x30001, 17)");
    }

    @Test
    void readsOfOneNetworkTakeNoLockAndAddsAndRemovesTheStoresAlone() {
        open(networks, 1, 2);
        networks.native_getInfo("1,17", null);
        networks.nativeAdd(1, new VltTvNetworkInfoBase());
        networks.nativeAdd(2, "1,17");
        networks.nativeRemove("1,17");
        networks.nativeRemoveByRecId(2, "1,18");
        assertJournal(
                "x_nwl_get_rec(0x30001, 17)",
                "x_nwl_qry_rec_id(0x30001, 2)",
                "x_nwl_lock(0x30001)",
                "x_nwl_add_rec(0x30001, record)",
                "x_nwl_unlock(0x30001)",
                "x_nwl_get_rec(0x30001, 17)",
                "x_nwl_lock(0x30002)",
                "x_nwl_add_rec(0x30002, record)",
                "x_nwl_unlock(0x30002)",
                "x_nwl_lock(0x30001)",
                "x_nwl_del_rec(0x30001, 17)",
                "x_nwl_unlock(0x30001)",
                "x_nwl_lock(0x30002)",
                "x_nwl_del_rec(0x30002, 18)",
                "x_nwl_unlock(0x30002)");
    }

    @Test
    void listUpdateHoldsOneLockAndReportsWhatFails() {
        open(networks, 1);
        assertEquals(0,
                networks.native_updateInfoList(1, List.of(named("1,17"), named(null), new VltTvNetworkInfoBase())));
        assertJournal(
                "x_nwl_lock(0x30001)",
                "x_nwl_get_rec(0x30001, 17)",
                "x_nwl_update_rec(0x30001, record, 0)",
                "x_nwl_get_rec(0x30001, 0)",
                "x_nwl_update_rec(0x30001, record, 0)",
                "x_nwl_get_rec(0x30001, 0)",
                "x_nwl_update_rec(0x30001, record, 0)",
                "x_nwl_unlock(0x30001)");
        Script.reset();
        assertEquals(0, networks.native_updateInfoList(1, List.of()));
        assertEquals(-22, networks.native_updateInfoList(1, null));
        assertEquals(-22, networks.native_updateInfoList(1, Arrays.asList((VltTvNetworkInfoBase) null)));
        assertJournal("x_nwl_lock(0x30001)", "x_nwl_unlock(0x30001)", "x_nwl_lock(0x30001)", "x_nwl_unlock(0x30001)");
        Script.reset();
        Script.answer("x_nwl_get_rec", -7);
        assertEquals(-22, networks.native_updateInfoList(1, List.of(named("1,17"))));
        Script.answer("x_nwl_update_rec", -7);
        assertEquals(-22, networks.native_updateInfoList(1, List.of(named("1,17"), named("1,18"))));
        assertEquals(2, Script.linesWith("unlock").size());
    }

    @Test
    void listUpdateEndsAtABadIdentifierAndLeavesTheListLocked() {
        open(networks, 1);
        assertEquals(-22, networks.native_updateInfoList(1, List.of(named("x"), named("1,17"))));
        assertJournal("x_nwl_lock(0x30001)");
        Script.reset();
        assertEquals(0, networks.native_updateInfoList(1, List.of(named("1,17"), named("1,18"), named("x"))));
        assertEquals(2, Script.linesWith("update_rec").size());
        assertEquals(List.of(), Script.linesWith("unlock"));
    }

    @Test
    void addTakesTheKeysAndTheStoreGivesTheRecordId() {
        open(networks, 1);
        Script.logLevel("D");
        VltTvNetworkInfoBase info = named("1,77");
        info.setNwlNetworkId(8468);
        Script.answer("x_nwl_qry_rec_id", 0, 4);
        assertEquals("1,5", networks.nativeAdd(1, info));
        assertArrayEquals(Records.with16(Records.with16(new byte[304], 4, 5), 10, 8468), Script.lastRecord());
        assertEquals(
                List.of(
                        PREFIX + "[" + BRIDGE + "add_Info][3109] ",
                        PREFIX + "[nwList->addInfo][0] ",
                        PREFIX + "[combineMId] mwdbId = 1, recId = 5"),
                bridgeLines());
        assertEquals("1,2", networks.nativeAdd(1, named("cannot be parsed")));
        Script.answer("x_nwl_add_rec", -9);
        assertEquals("", networks.nativeAdd(1, info));
        assertEquals(PREFIX + "[nwList->addInfo][-22] ", Script.linesWith("[nwList->").get(2));
        assertEquals("", networks.nativeAdd(1, (VltTvNetworkInfoBase) null));
    }

    @Test
    void addByRecordIdCopiesARecord() {
        open(networks, 1, 2);
        Script.logLevel("D");
        Script.answer("x_nwl_get_rec", stored);
        assertEquals("2,17", networks.nativeAdd(2, "1,17"));
        assertArrayEquals(Records.with16(stored, 6, 2), Script.lastRecord());
        assertEquals(PREFIX + "[" + BRIDGE + "add_Info_by_recId][3208] ", bridgeLines().get(0));
        assertEquals(PREFIX + "[nwList->copyInfo][0] ", bridgeLines().get(1));
        assertEquals("", networks.nativeAdd(2, "17"));
        Script.answer("x_nwl_get_rec", -7);
        assertEquals("", networks.nativeAdd(2, "1,17"));
        Script.answer("x_nwl_add_rec", -9);
        assertEquals("", networks.nativeAdd(2, "1,17"));
        assertEquals(
                List.of(PREFIX + "[nwList->copyInfo][0] ", PREFIX + "[nwList->copyInfo][-22] "),
                Script.linesWith("[nwList->"));
    }
}
