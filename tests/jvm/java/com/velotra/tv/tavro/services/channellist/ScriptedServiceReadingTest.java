package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNull;

import org.junit.jupiter.api.Test;

/** The natives of VltTvChannelList that return record bytes. */
class ScriptedServiceReadingTest extends ScriptedPlatform {
    private static final String COUNT_ALL = "x_svl_get_num_rec_by_brdcst_type";
    private static final String READ_ALL = "x_svl_get_rec_by_brdcst_type";

    private final byte[] one = Records.with16(Records.patterned(), 0, 1);
    private final byte[] two = Records.with16(Records.patterned(), 0, 2);
    private final byte[] three = Records.with16(Records.patterned(), 0, 3);

    @Test
    void oneServiceIsItsRecordUnchanged() {
        open(3);
        Script.answer("x_svl_get_rec", one);
        assertArrayEquals(one, lists.native_getSvlInfo("3,17"));
        assertJournal("x_svl_get_rec(0x10003, 17)");
    }

    @Test
    void oneServiceThatCannotBeReadIsNullWithALine() {
        open(3);
        Script.logLevel("D");
        Script.answer("x_svl_get_rec", -7);
        assertNull(lists.native_getSvlInfo("3,17"));
        assertEquals("log 3 -: [jni_VltTvList_Init] " + BRIDGE + "getSVLInfo getSVLInfo fail ret=-22 ", last());
    }

    @Test
    void oneServiceUnderABadIdentifierIsNullWithoutAnyCall() {
        Script.logLevel("E");
        assertNull(lists.native_getSvlInfo("17"));
        assertNull(lists.native_getSvlInfo("a,1"));
        assertNull(lists.native_getSvlInfo(""));
        assertNull(lists.native_getSvlInfo(null));
        assertJournal(
                "log 6 -: Unknown data s_Id.\n",
                "log 6 -: Invalid String.\n",
                "log 6 -: Invalid param.\n",
                "log 6 -: Invalid String.\n",
                "log 6 -: Invalid param.\n");
    }

    @Test
    void aListIsItsRecordsBackToBackReadUnderTheReadLock() {
        Script.always(COUNT_ALL, 0, 2);
        Script.answer(READ_ALL, one);
        Script.answer(READ_ALL, two);
        assertArrayEquals(Records.join(one, two), lists.native_getSvlInfoList(1));
        assertJournal(
                "x_svl_open(1, 0, 0)",
                "x_svl_read_lock(0x10001)",
                COUNT_ALL + "(0x10001, 0, 0xffffffff)",
                READ_ALL + "(0x10001, 0, 0xffffffff, 0)",
                READ_ALL + "(0x10001, 0, 0xffffffff, 1)",
                "x_svl_read_unlock(0x10001)",
                "x_svl_close(0x10001)");
    }

    @Test
    void anEmptyListIsNull() {
        assertNull(lists.native_getSvlInfoList(1));
        assertJournal(
                "x_svl_open(1, 0, 0)",
                "x_svl_read_lock(0x10001)",
                COUNT_ALL + "(0x10001, 0, 0xffffffff)",
                "x_svl_read_unlock(0x10001)",
                "x_svl_close(0x10001)");
    }

    @Test
    void aListThatCannotBeOpenedIsNull() {
        Script.answer("x_svl_open", -5);
        assertNull(lists.native_getSvlInfoList(1));
        assertJournal("x_svl_open(1, 0, 0)", "x_svl_read_lock(0x0)", "x_svl_read_unlock(0x0)", "x_svl_close(0x0)");
    }

    @Test
    void aListWithARecordThatCannotBeReadIsNullWithALineAndIsUnlocked() {
        Script.always(COUNT_ALL, 0, 3);
        Script.answer(READ_ALL, one);
        Script.answer(READ_ALL, -7);
        Script.logLevel("D");
        assertNull(lists.native_getSvlInfoList(1));
        String[] lines = Script.lines();
        assertEquals("log 3 -: [jni_VltTvList_Init] get_svl_list_info getInfoByIdx fail ret=-22 ",
                lines[lines.length - 5]);
        assertEquals("x_svl_read_unlock(0x10001)", lines[lines.length - 4]);
        assertEquals("x_svl_close(0x10001)", lines[lines.length - 2]);
    }

    @Test
    void aFilterByTransportStreamKeepsListOrder() {
        Script.always(COUNT_ALL, 0, 3);
        for (byte[] record : new byte[][] {one, two, three}) {
            Script.answer(READ_ALL, record);
        }
        Script.answer("x_tsl_get_rec", Records.with16(new byte[18], 16, 1101));
        Script.answer("x_tsl_get_rec", Records.with16(new byte[18], 16, 1102));
        Script.answer("x_tsl_get_rec", Records.with16(new byte[18], 16, 1101));
        assertArrayEquals(Records.join(one, three), lists.native_getInfoListByTransportStream(1, 1101));
    }

    @Test
    void aFilterByNetworkThatMatchesNothingIsAnEmptyArray() {
        Script.always(COUNT_ALL, 0, 2);
        Script.always(READ_ALL, one);
        Script.always("x_nwl_get_rec", Records.with16(new byte[12], 10, 8468));
        assertArrayEquals(new byte[0], lists.native_getInfoListByNetwork(1, 1));
        assertArrayEquals(Records.join(one, one), lists.native_getInfoListByNetwork(1, 8468));
    }

    @Test
    void aFilterOfAnEmptyListIsNull() {
        assertNull(lists.native_getInfoListByNetwork(1, 1));
        assertNull(lists.native_getInfoListByTransportStream(1, 1));
        assertNull(lists.native_getInfoListByTransportStreamRecord(1, 1));
    }

    @Test
    void servicesOfATransportStreamRecordAreChosenByTheMiddleware() {
        Script.always("x_svl_get_num_rec_by_ts", 0, 2);
        Script.answer("x_svl_get_rec_by_ts", one);
        Script.answer("x_svl_get_rec_by_ts", two);
        assertArrayEquals(Records.join(one, two), lists.native_getInfoListByTransportStreamRecord(4, 70000));
        assertJournal(
                "x_svl_open(4, 0, 0)",
                "x_svl_read_lock(0x10004)",
                "x_svl_get_num_rec_by_ts(0x10004, 4, 4464, 0xffffffff)",
                "x_svl_get_rec_by_ts(0x10004, 4, 4464, 0xffffffff, 0)",
                "x_svl_get_rec_by_ts(0x10004, 4, 4464, 0xffffffff, 1)",
                "x_svl_read_unlock(0x10004)",
                "x_svl_close(0x10004)");
    }

    @Test
    void unreadableServicesOfAStreamRecordAreNullWithALine() {
        Script.always("x_svl_get_num_rec_by_ts", 0, 2);
        Script.answer("x_svl_get_rec_by_ts", -7);
        Script.logLevel("D");
        assertNull(lists.native_getInfoListByTransportStreamRecord(4, 9));
        assertEquals(
                1,
                Script.linesWith("log 3 -: [jni_VltTvList_Init] get_svl_list_info_by_transportRecord getInfoByIdx fail"
                                + " ret=-22 ")
                        .size());
        assertEquals(1, Script.linesWith("x_svl_read_unlock(0x10004)").size());
    }

    private static String last() {
        String[] lines = Script.lines();
        return lines[lines.length - 1];
    }
}
