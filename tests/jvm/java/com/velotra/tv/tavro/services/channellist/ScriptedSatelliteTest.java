package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNotEquals;

import java.util.List;
import java.util.function.IntSupplier;
import org.junit.jupiter.api.Test;

/** The natives of VltTvSatelliteList that pass a call on, and those that add records. */
class ScriptedSatelliteTest extends SatellitePlatform {
    private static final String INVALID = "log 6 -: Invalid String.\n";
    private static final String UNKNOWN = "log 6 [SATELITE] NativeVltTvSatelliteList_Cpp: Unknown recId info.\n";

    /** Runs a native that makes these calls, one by one with a failure of the call that decides. */
    private void assertForwarded(String entry, IntSupplier run, String decides, String... calls) {
        open(1, 2);
        Script.logLevel("D");
        assertEquals(0, run.getAsInt());
        assertEquals(List.of(entry), bridgeLines());
        assertEquals(entry, Script.lines()[0]);
        assertEquals(List.of(calls), calls());
        open(1, 2);
        Script.answer(decides, -3);
        assertEquals(-22, run.getAsInt());
        assertJournal(calls);
    }

    @Test
    void setupAnswersAnAddressTellsItselfAndKeepsOpenListsOpen() {
        open(1);
        Script.logLevel("D");
        int first = satellites.nativeSetup();
        assertNotEquals(0, first);
        assertEquals(first, satellites.nativeSetup());
        assertJournal(entry("native_setup", 3694), entry("native_setup", 3694));
        Script.reset();
        assertEquals(0, satellites.nativeClean(1));
        assertJournal("x_satl_lock(0x40001)", "x_satl_clean(0x40001)", "x_satl_unlock(0x40001)");
    }

    @Test
    void openOpensOrCreatesAListAndSucceedsEvenWhenItCannot() {
        Script.logLevel("D");
        Script.answer("x_satl_open", -5);
        assertEquals(0, satellites.nativeOpen(3));
        assertJournal(
                entry("open", 3733),
                store("[open]: satId = 3 \n"),
                "x_satl_open(3, 0, 0)",
                "x_satl_create(\"fs_satl_2\", 3, 1, 16, 0, 0)",
                store("[NativeVltTvSatelliteList][setSatHandle]: satId = 3 satHandle:0x40003\n"));
        Script.reset();
        Script.answer("x_satl_open", -5);
        Script.answer("x_satl_create", -5);
        assertEquals(0, satellites.nativeOpen(4));
        Script.answer("x_satl_open", 0, 0);
        assertEquals(-22, satellites.nativeOpen(4));
    }

    @Test
    void openWithAPathLoadsTheListAndAnOpenListNeedsNoPath() {
        Script.logLevel("D");
        assertEquals(0, satellites.nativeOpen(3, "/data/satl"));
        assertJournal(
                entry("open_path", 3741),
                store("[open]: satId = 3 path = /data/satl \n"),
                "x_satl_open(3, 0, 0)",
                "x_satl_fs_sync(0x40003, 0, \"/data/satl\", 3)",
                store("[NativeVltTvSatelliteList][setSatHandle]: satId = 3 satHandle:0x40003\n"));
        Script.reset();
        Script.logLevel("D");
        assertEquals(0, satellites.nativeOpen(3, ""));
        assertJournal(entry("open_path", 3741), INVALID, store("[open]: satId = 3 path =  \n"), found(3));
        Script.reset();
        Script.logLevel("E");
        assertEquals(0, satellites.nativeOpen(3, null));
        assertEquals(-22, satellites.nativeOpen(4, ""));
        assertEquals(-22, satellites.nativeOpen(4, null));
        assertJournal(INVALID, INVALID, INVALID);
    }

    @Test
    void cleanPassesOnTheStoresStatus() {
        assertForwarded(
                entry("clean", 3700), () -> satellites.nativeClean(1), "x_satl_clean",
                "x_satl_lock(0x40001)", "x_satl_clean(0x40001)", "x_satl_unlock(0x40001)");
    }

    @Test
    void closePassesOnTheStoresStatus() {
        assertForwarded(entry("close", 3707), () -> satellites.nativeClose(1), "x_satl_close", "x_satl_close(0x40001)");
    }

    @Test
    void deletePassesOnTheStoresStatus() {
        assertForwarded(entry("delete", 3715), () -> satellites.nativeDelete(1), "x_satl_delete",
                "x_satl_delete(0x40001)");
    }

    @Test
    void copyLocksTheDestinationAlone() {
        assertForwarded(
                entry("copy", 3723), () -> satellites.nativeCopy(1, 2), "x_satl_copy_date",
                "x_satl_lock(0x40002)", "x_satl_copy_date(0x40001, 0x40002)", "x_satl_unlock(0x40002)");
    }

    @Test
    void copyCountsItsLocksForNothing() {
        open(1, 2);
        Script.always("x_satl_lock", -1, 0);
        Script.always("x_satl_unlock", -1, 0);
        assertEquals(0, satellites.nativeCopy(1, 2));
    }

    @Test
    void storePassesOnTheStoresStatus() {
        assertForwarded(
                entry("store", 3749), () -> satellites.nativeStore(1, "/data/satl"), "x_satl_fs_store",
                "x_satl_lock(0x40001)", "x_satl_fs_store(0x40001, \"/data/satl\", 1)", "x_satl_unlock(0x40001)");
        Script.reset();
        assertEquals(-22, satellites.nativeStore(1, ""));
        assertEquals(-22, satellites.nativeStore(1, null));
        assertJournal();
    }

    @Test
    void removeDeletesTheRecordThatTheIdentifierNames() {
        assertForwarded(
                entry("remove_info", 4492), () -> satellites.nativeRemove("1,1207"), "x_satl_del_rec",
                "x_satl_lock(0x40001)", "x_satl_del_rec(0x40001, 1207)", "x_satl_unlock(0x40001)");
    }

    @Test
    void removeByRecordIdIgnoresTheListInTheIdentifier() {
        assertForwarded(
                entry("remove_info_by_recId", 4502), () -> satellites.nativeRemoveByRecId(2, "1,1207"),
                "x_satl_del_rec",
                "x_satl_lock(0x40002)", "x_satl_del_rec(0x40002, 1207)", "x_satl_unlock(0x40002)");
    }

    @Test
    void removeOfAnIdentifierWithoutACommaAnswersMinusOneWithALine() {
        Script.logLevel("E");
        assertEquals(-1, satellites.nativeRemove("17"));
        assertEquals(-1, satellites.nativeRemove(null));
        assertEquals(-1, satellites.nativeRemoveByRecId(4, "17"));
        assertEquals(-1, satellites.nativeRemoveByRecId(4, ""));
        assertJournal(UNKNOWN, INVALID, UNKNOWN, UNKNOWN, INVALID, UNKNOWN);
    }

    @Test
    void addWithoutAnyKeyStoresAZeroedRecordWithoutToneBurst() {
        open(1);
        Script.logLevel("D");
        Script.answer("x_satl_qry_rec_id", -6, 0);
        assertEquals("1,1", satellites.nativeAdd(1, new VltTvSatelliteInfoBase()));
        assertArrayEquals(added(1), Script.lastRecord());
        assertJournal(
                entry("add_Info", 4373),
                store("[addInfo]: satId = 1 \n"),
                found(1),
                "x_satl_qry_rec_id(0x40001, 2)",
                "x_satl_lock(0x40001)",
                "x_satl_add_rec(0x40001, record)",
                "x_satl_unlock(0x40001)",
                store("[addInfo]: x_satl_add_rec OK , satl_rec_id=1  \n"),
                PREFIX + "[satList->addInfo][0] ",
                PREFIX + "[combineMId] mwdbId = 1, recId = 1");
    }

    @Test
    void addAsksEveryKeyOnceInItsOrderButNoIdentifier() {
        open(1);
        Asked info = new Asked();
        info.setRecId("cannot be parsed");
        assertEquals("1,2", satellites.nativeAdd(1, info));
        assertEquals(ADD_KEYS, info.keys);
        assertArrayEquals(added(2), Script.lastRecord());
    }

    @Test
    void addThatFailsAnswersAnEmptyStringWithTheStatus() {
        open(1);
        Script.logLevel("D");
        Script.answer("x_satl_add_rec", -9);
        assertEquals("", satellites.nativeAdd(1, named("1,17")));
        assertEquals(List.of(entry("add_Info", 4373), PREFIX + "[satList->addInfo][-22] "), bridgeLines());
        Script.answer("x_satl_qry_rec_id", 0, 65535);
        assertEquals("", satellites.nativeAdd(1, named("1,17")));
        assertEquals("", satellites.nativeAdd(1, (VltTvSatelliteInfoBase) null));
        assertEquals(1, Script.linesWith("add_rec(").size());
    }

    @Test
    void addByRecordIdCopiesTheRecordAsItIsUnderItsOwnId() {
        open(1, 2);
        Script.logLevel("D");
        Script.answer("x_satl_get_rec", stored);
        assertEquals("2,17", satellites.nativeAdd(2, "1,12"));
        assertArrayEquals(stored, Script.lastRecord());
        assertEquals(
                List.of(
                        entry("add_Info_by_recId", 4464),
                        PREFIX + "[satList->copyInfo][0] ",
                        PREFIX + "[combineMId] mwdbId = 2, recId = 17"),
                bridgeLines());
        assertEquals(
                List.of(
                        "x_satl_get_rec(0x40001, 12)",
                        "x_satl_lock(0x40002)",
                        "x_satl_add_rec(0x40002, record)",
                        "x_satl_unlock(0x40002)"),
                calls());
    }

    @Test
    void addByRecordIdPresetsTheToneBurstBeforeItReads() {
        open(1, 2);
        assertEquals("2,0", satellites.nativeAdd(2, "1,12")); // a read that leaves the record alone
        assertArrayEquals(added(0), Script.lastRecord());
    }

    @Test
    void addByRecordIdThatFailsAnswersAnEmptyString() {
        open(1, 2);
        Script.logLevel("D");
        Script.answer("x_satl_get_rec", -7);
        assertEquals("", satellites.nativeAdd(2, "1,12"));
        assertEquals("", satellites.nativeAdd(2, "12"));
        assertEquals("", satellites.nativeAdd(2, (String) null));
        String entry = entry("add_Info_by_recId", 4464);
        assertEquals(List.of(entry, entry, entry), bridgeLines());
        assertEquals(List.of("x_satl_get_rec(0x40001, 12)"), calls());
        Script.reset();
        Script.logLevel("D");
        Script.answer("x_satl_add_rec", -9);
        assertEquals("", satellites.nativeAdd(2, "1,12"));
        assertEquals(List.of(entry, PREFIX + "[satList->copyInfo][-22] "), bridgeLines());
    }

    @Test
    void recordIdsAreUnsignedAndTheListIsToldAsItWasGiven() {
        open(1, 2);
        Script.answer("x_satl_qry_rec_id", 0, 65534);
        assertEquals("65537,65535", satellites.nativeAdd(65537, new VltTvSatelliteInfoBase()));
        Script.answer("x_satl_get_rec", Records.with16(stored, 0, 0xABCD));
        assertEquals("65538,43981", satellites.nativeAdd(65538, "1,12"));
        assertEquals(List.of("x_satl_add_rec(0x40001, record)", "x_satl_add_rec(0x40002, record)"),
                Script.linesWith("add_rec("));
    }
}
