package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNotEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import org.junit.jupiter.api.Test;

/** The natives of VltTvChannelList that pass a call on. */
class ScriptedServiceForwardingTest extends ScriptedPlatform {
    @Test
    void setupAnswersAnAddressAndKeepsOpenListsOpen() {
        open(1);
        int first = lists.nativeSetup();
        assertNotEquals(0, first);
        assertEquals(first, lists.nativeSetup());
        assertEquals(0, lists.native_clean(1));
        assertJournal("x_svl_lock(0x10001)", "x_svl_clean(0x10001)", "x_svl_unlock(0x10001)");
    }

    @Test
    void openCreatesAListThatDoesNotExistUnderTheNumberBelowItsId() {
        Script.answer("x_svl_open", -5);
        assertEquals(0, lists.native_open(1));
        assertJournal("x_svl_open(1, 0, 0)", "x_svl_create(\"fs_Svl_0\", 1, 1, 16, 0, 0)");
        Script.reset();
        assertEquals(0, lists.native_open(1));
        assertJournal();
    }

    @Test
    void openThatCanNeitherOpenNorCreateFails() {
        Script.answer("x_svl_open", -5);
        Script.answer("x_svl_create", -6);
        assertEquals(-22, lists.native_open(1));
    }

    @Test
    void openWithAPathLoadsTheList() {
        assertEquals(0, lists.native_open(2, "/data/list"));
        assertJournal("x_svl_open(2, 0, 0)", "x_svl_fs_sync(0x10002, 0, \"/data/list\", 2)");
    }

    @Test
    void openWithAPathSeedsAScanListFromTheCableCache() {
        Script.answer("x_svl_fs_sync", -12);
        Script.logLevel("E");
        assertEquals(0, lists.native_open(2, "/data/scan_cable_list"));
        assertJournal(
                "x_svl_open(2, 0, 0)",
                "x_svl_fs_sync(0x10002, 0, \"/data/scan_cable_list\", 2)",
                "fs_raw_init(0, \"/data/scan_cable_list\")",
                "log 6 NativeVltTvChannelList_Cpp: [NativeVltTvChannelList][open]: init current path  ps_svl_path "
                        + "/data/scan_cable_list \n",
                "fs_raw_qry_fpath(0, \"/cache/scan_cable.bin\")",
                "log 6 NativeVltTvChannelList_Cpp: [NativeVltTvChannelList][open]: find cache path, i4_ret 0\n",
                "log 6 NativeVltTvChannelList_Cpp: [NativeVltTvChannelList][open]: Try to copy cache! \n",
                "fs_raw_init(0, \"/cache/scan_cable.bin\")",
                "fs_raw_copy(0, \"/cache/scan_cable.bin\", 0, \"/data/scan_cable_list\")",
                "x_svl_fs_sync(0x10002, 0, \"/cache/scan_cable.bin\", 2)",
                "log 6 NativeVltTvChannelList_Cpp: [NativeVltTvChannelList][open]:copy ps_svl_path2 "
                        + "/data/scan_cable_list\n",
                "x_fm_delete_file(0, \"/cache/scan_cable.bin\")",
                "log 6 NativeVltTvChannelList_Cpp: [NativeVltTvChannelList][open]: cache file deleted! i4_ret0 \n");
    }

    @Test
    void openWithAnEmptyOrNullPathFails() {
        Script.logLevel("E");
        assertEquals(-22, lists.native_open(2, ""));
        assertEquals(-22, lists.native_open(2, (String) null));
        assertJournal("log 6 -: Invalid String.\n", "log 6 -: Invalid String.\n");
    }

    @Test
    void closeOpensAListThatIsNotOpenAndClosesIt() {
        assertEquals(0, lists.native_close(5));
        assertJournal("x_svl_open(5, 0, 0)", "x_svl_close(0x10005)");
        Script.reset();
        assertEquals(0, lists.native_close(5));
        assertJournal("x_svl_open(5, 0, 0)", "x_svl_close(0x10005)");
    }

    @Test
    void closeAndDeleteThatFailKeepTheListOpen() {
        open(5);
        Script.answer("x_svl_close", -1);
        Script.answer("x_svl_delete", -1);
        assertEquals(-22, lists.native_close(5));
        assertEquals(-22, lists.native_delete(5));
        assertEquals(0, lists.native_delete(5));
        assertJournal("x_svl_close(0x10005)", "x_svl_delete(0x10005)", "x_svl_delete(0x10005)");
    }

    @Test
    void cleanRunsUnderTheWriteLock() {
        open(1);
        Script.answer("x_svl_clean", -3);
        assertEquals(-22, lists.native_clean(1));
        assertJournal("x_svl_lock(0x10001)", "x_svl_clean(0x10001)", "x_svl_unlock(0x10001)");
    }

    @Test
    void copyLocksTheSecondListAndCopiesTheFirstToIt() {
        open(1, 2);
        assertEquals(0, lists.native_copy(1, 2));
        assertJournal("x_svl_lock(0x10002)", "x_svl_copy_date(0x10001, 0x10002)", "x_svl_unlock(0x10002)");
        Script.reset();
        Script.answer("x_svl_copy_date", -3);
        assertEquals(-22, lists.native_copy(2, 1));
        assertJournal("x_svl_lock(0x10001)", "x_svl_copy_date(0x10002, 0x10001)", "x_svl_unlock(0x10001)");
    }

    @Test
    void storeWritesTheListUnderItsLock() {
        open(3);
        assertEquals(0, lists.native_store(3, "/data/list"));
        assertJournal("x_svl_lock(0x10003)", "x_svl_fs_store(0x10003, \"/data/list\", 3)", "x_svl_unlock(0x10003)");
        Script.reset();
        assertEquals(-22, lists.native_store(3, ""));
        assertEquals(-22, lists.native_store(3, null));
        assertJournal();
        Script.answer("x_svl_fs_store", -9);
        assertEquals(-22, lists.native_store(3, "/data/list"));
    }

    @Test
    void removeDeletesTheRecordThatTheIdentifierNames() {
        open(3);
        assertEquals(0, lists.nativeRemove("3,1207"));
        assertJournal("x_svl_lock(0x10003)", "x_svl_del_rec(0x10003, 1207)", "x_svl_unlock(0x10003)");
    }

    @Test
    void removeOfAnIdentifierWithoutACommaAnswersMinusOneWithALine() {
        Script.logLevel("E");
        assertEquals(-1, lists.nativeRemove("17"));
        assertEquals(-1, lists.nativeRemove(null));
        assertEquals(-1, lists.nativeRemoveByRecId(4, "17"));
        assertJournal(
                "log 6 NativeVltTvChannelList_Cpp: Unknown recId info.\n",
                "log 6 -: Invalid String.\n",
                "log 6 NativeVltTvChannelList_Cpp: Unknown recId info.\n",
                "log 6 NativeVltTvChannelList_Cpp: Unknown recId info.\n");
    }

    @Test
    void removeByRecordIdIgnoresTheListInTheIdentifier() {
        open(4);
        assertEquals(0, lists.nativeRemoveByRecId(4, "3,1207"));
        assertJournal("x_svl_lock(0x10004)", "x_svl_del_rec(0x10004, 1207)", "x_svl_unlock(0x10004)");
    }

    @Test
    void bothRemovesBeginWithALineThatNamesThem() {
        Script.logLevel("D");
        lists.nativeRemove("3,1");
        String first = Script.lines()[0];
        assertTrue(first.matches("log 3 -: \\[jni_VltTvList_Init\\] \\[" + BRIDGE + "remove_info\\]\\[\\d+\\] "),
                first);
        Script.reset();
        Script.logLevel("D");
        lists.nativeRemoveByRecId(3, "3,1");
        first = Script.lines()[0];
        assertTrue(first.matches("log 3 -: \\[jni_VltTvList_Init\\] \\[" + BRIDGE
                + "remove_Info_by_recId\\]\\[\\d+\\] "), first);
    }
}
