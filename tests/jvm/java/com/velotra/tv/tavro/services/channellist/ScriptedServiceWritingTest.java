package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import org.junit.jupiter.api.Test;

/** The natives of VltTvChannelList that update and add services. */
class ScriptedServiceWritingTest extends ScriptedPlatform {
    private final byte[] stored = Records.with8(Records.with16(Records.patterned(), 0, 17), 38, 4);

    /** A stored record of a broadcast type, with a channel id. */
    private byte[] stored(int broadcastType, int channelId) {
        return Records.with32(Records.with8(stored, 38, broadcastType), 4, channelId);
    }

    private static VltTvChannelInfoBase info() {
        return new VltTvChannelInfoBase();
    }

    private static VltTvChannelInfoBase named(String identifier) {
        VltTvChannelInfoBase info = info().setSvlIdSvlRecId(new RecordId(0, 0));
        info.svlIdSvlRecId = identifier;
        return info;
    }

    /** Updates a stored record and returns what was stored. */
    private byte[] update(byte[] record, VltTvChannelInfoBase info) {
        Script.answer("x_svl_get_rec", record);
        assertEquals(0, lists.native_updateInfo(1, info));
        return Script.lastRecord();
    }

    private byte[] add(VltTvChannelInfoBase info) {
        Script.answer("x_svl_qry_rec_id", 0, 0);
        assertEquals("1,0", lists.nativeAdd(1, info));
        return Script.lastRecord();
    }

    @Test
    void updateReadsOverlaysAndStoresUnderTheWriteLock() {
        open(1);
        byte[] result = update(stored, named("1,17").setServiceId(0x1234).setVnetVisible(true));
        byte[] expected = Records.with16(stored, 24, 0x1234);
        expected[8] |= 0x8;
        assertArrayEquals(expected, result);
        assertJournal(
                "x_svl_get_rec(0x10001, 17)",
                "x_svl_lock(0x10001)",
                "x_svl_update_rec(0x10001, record, 0)",
                "x_svl_unlock(0x10001)");
    }

    @Test
    void updateIgnoresTheListInTheIdentifier() {
        open(1);
        update(stored, named("9,17"));
        assertEquals(List.of("x_svl_get_rec(0x10001, 17)"), Script.linesWith("get_rec"));
    }

    @Test
    void updateWithoutAnIdentifierOrWithANullOneUpdatesRecordZero() {
        open(1);
        update(stored, info());
        update(stored, named(null));
        assertEquals(List.of("x_svl_get_rec(0x10001, 0)", "x_svl_get_rec(0x10001, 0)"), Script.linesWith("get_rec"));
    }

    @Test
    void updateWithABadIdentifierFailsBeforeAnythingIsRead() {
        open(1);
        for (String bad : List.of("17", "x,1", "", "-1,3")) {
            assertEquals(-22, lists.native_updateInfo(1, named(bad)), bad);
        }
        assertJournal();
    }

    @Test
    void updateOfARecordThatCannotBeReadFailsWithoutTheLock() {
        open(1);
        Script.answer("x_svl_get_rec", -7);
        assertEquals(-22, lists.native_updateInfo(1, named("1,17")));
        assertJournal("x_svl_get_rec(0x10001, 17)");
    }

    @Test
    void updateThatTheMiddlewareRefusesFailsAndUnlocks() {
        open(1);
        Script.answer("x_svl_update_rec", -7);
        assertEquals(-22, lists.native_updateInfo(1, named("1,17")));
        assertEquals(List.of("x_svl_unlock(0x10001)"), Script.linesWith("unlock"));
    }

    @Test
    void updateOfANullObjectFails() {
        open(1);
        Script.logLevel("D");
        assertEquals(-22, lists.native_updateInfo(1, (VltTvChannelInfoBase) null));
        assertJournal("log 3 -: [jni_VltTvList_Init] " + BRIDGE + "updateInfo");
    }

    @Test
    void updateWithoutAChannelNumberKeepsTheChannelId() {
        open(1);
        for (int type : new int[] {2, 3, 5, 7, 4}) {
            byte[] record = stored(type, 0x12345678);
            assertArrayEquals(record, update(record, info()));
            assertArrayEquals(record, update(record, info().setMajorChannelNumber(0).setMinorChannelNumber(0)));
        }
    }

    @Test
    void updateRebuildsTheChannelIdByBroadcastType() {
        open(1);
        int old = 0xFEDCBA9F;
        VltTvChannelInfoBase number = info().setMajorChannelNumber(0x5A5A).setMinorChannelNumber(0x123);
        int major = 0x5A5A << 18;
        assertEquals((0xF | major) + 0x80, Records.int32(update(stored(2, old), number), 4));
        assertEquals((0x1F | major) + 0x80, Records.int32(update(stored(7, old), number), 4));
        assertEquals(0x2300 + (old & 0x3FC0000) + 0x9F, Records.int32(update(stored(5, old), number), 4));
        assertEquals(old, Records.int32(update(stored(4, old), number), 4));
        assertEquals(old, Records.int32(update(stored(0, old), number), 4));
        // Either number alone counts as a channel number.
        assertEquals(0xF + 0x80, Records.int32(update(stored(2, old), info().setMinorChannelNumber(1)), 4));
        assertEquals((old & 0x3FC0000) + 0x9F,
                Records.int32(update(stored(5, old), info().setMajorChannelNumber(1)), 4));
    }

    @Test
    void updateAsksTheMiddlewareForTheChannelIdOfBroadcastTypeThree() {
        open(1);
        Script.answer("x_sb_get_channel_index", 0, 6);
        Script.answer("x_sb_gen_channel_id", 0, 0x7654321);
        byte[] result = update(stored(3, 99), info().setMajorChannelNumber(12).setMinorChannelNumber(-3));
        assertEquals(0x7654321, Records.int32(result, 4));
        assertEquals(List.of("x_sb_get_channel_index(99)", "x_sb_gen_channel_id(12, -3, 6)"), Script.linesWith("x_sb"));
    }

    @Test
    void updateOfABroadcastTypeWithoutARuleWritesALine() {
        open(1);
        Script.logLevel("D");
        update(Records.with8(stored(4, 1), 39, 200), info().setMajorChannelNumber(1));
        assertEquals(
                List.of("log 3 -: [jni_VltTvList_Init] e_brdcst_type = 4, unsupport type stheader.e_serv_type=200 \n"),
                Script.linesWith("unsupport"));
    }

    @Test
    void updateCopiesTheSpecificPartOfTheNewBroadcastType() {
        open(1);
        VltTvChannelInfoBase values = info().setFreeCaMode(0x31).setSdtServiceType(0x32);
        byte[] dvb = stored(2, 1);
        assertArrayEquals(Records.with8(Records.with8(dvb, 152 + 64, 0x31), 152 + 132, 0x32), update(dvb, values));
        byte[] dtmb = stored(7, 1);
        assertArrayEquals(Records.with8(Records.with8(dtmb, 152 + 62, 0x31), 152 + 65, 0x32), update(dtmb, values));
        byte[] five = stored(5, 1);
        assertArrayEquals(Records.with8(five, 152, 0x32), update(five, values));
        byte[] three = stored(3, 1);
        assertArrayEquals(three, update(three, values));

        byte[] becomesDtmb = Records.with8(Records.with8(Records.with8(dvb, 38, 7), 152 + 62, 0x31), 152 + 65, 0x32);
        assertArrayEquals(becomesDtmb, update(dvb, values.setBroadcastType(7)));
    }

    @Test
    void updateByRecordIdPointsTheServiceAtTheTargetListsCompanions() {
        open(1, 2);
        Script.answer("x_svl_get_rec", stored);
        assertEquals(0, lists.native_updateInfo(2, "1,17"));
        byte[] expected = Records.with16(Records.with16(Records.with16(stored, 26, 2), 30, 2), 34, 2);
        assertArrayEquals(expected, Script.lastRecord());
        assertJournal(
                "x_svl_get_rec(0x10001, 17)",
                "x_svl_lock(0x10002)",
                "x_svl_update_rec(0x10002, record, 0)",
                "x_svl_unlock(0x10002)");
    }

    @Test
    void updateByRecordIdFailsForABadIdentifierOrNoRecord() {
        open(1);
        assertEquals(-22, lists.native_updateInfo(1, "17"));
        assertEquals(-22, lists.native_updateInfo(1, (String) null));
        assertJournal();
        Script.answer("x_svl_get_rec", -7);
        assertEquals(-22, lists.native_updateInfo(1, "1,17"));
        assertJournal("x_svl_get_rec(0x10001, 17)");
    }

    @Test
    void listUpdateHoldsOneLockForAllElements() {
        open(1);
        Script.always("x_svl_get_rec", stored);
        assertEquals(0, lists.native_updateInfoList(1, List.of(named("1,17"), named("8,18"))));
        assertJournal(
                "x_svl_lock(0x10001)",
                "x_svl_get_rec(0x10001, 17)",
                "x_svl_update_rec(0x10001, record, 0)",
                "x_svl_get_rec(0x10001, 18)",
                "x_svl_update_rec(0x10001, record, 0)",
                "x_svl_unlock(0x10001)");
    }

    @Test
    void listUpdateOfNothingLocksAndUnlocks() {
        open(1);
        assertEquals(0, lists.native_updateInfoList(1, List.of()));
        assertJournal("x_svl_lock(0x10001)", "x_svl_unlock(0x10001)");
    }

    @Test
    void listUpdateOfANullListFailsBeforeTheLock() {
        open(1);
        assertEquals(-22, lists.native_updateInfoList(1, null));
        assertJournal();
    }

    @Test
    void listUpdateReadsTheIdentifierWhetherOrNotItsKeyIsSet() {
        open(1);
        VltTvChannelInfoBase unmarked = info();
        unmarked.svlIdSvlRecId = "1,21";
        assertEquals(0, lists.native_updateInfoList(1, List.of(unmarked, info())));
        assertEquals(List.of("x_svl_get_rec(0x10001, 21)", "x_svl_get_rec(0x10001, 0)"), Script.linesWith("get_rec"));
    }

    @Test
    void listUpdateEndsAtABadIdentifierAndLeavesTheListLocked() {
        open(1);
        assertEquals(-22, lists.native_updateInfoList(1, List.of(named("x"), named("1,17"))));
        assertJournal("x_svl_lock(0x10001)");
        Script.reset();
        assertEquals(0, lists.native_updateInfoList(1, List.of(named("1,17"), named("x"), named("1,18"))));
        assertJournal("x_svl_lock(0x10001)", "x_svl_get_rec(0x10001, 17)", "x_svl_update_rec(0x10001, record, 0)");
    }

    @Test
    void listUpdateEndsAtARecordThatCannotBeReadOrStoredAndUnlocks() {
        open(1);
        Script.answer("x_svl_get_rec", 0);
        Script.answer("x_svl_get_rec", -7);
        assertEquals(-22, lists.native_updateInfoList(1, List.of(named("1,17"), named("1,18"), named("1,19"))));
        assertJournal(
                "x_svl_lock(0x10001)",
                "x_svl_get_rec(0x10001, 17)",
                "x_svl_update_rec(0x10001, record, 0)",
                "x_svl_get_rec(0x10001, 18)",
                "x_svl_unlock(0x10001)");
        Script.reset();
        Script.answer("x_svl_update_rec", -7);
        assertEquals(-22, lists.native_updateInfoList(1, List.of(named("1,17"), named("1,18"))));
        assertJournal(
                "x_svl_lock(0x10001)",
                "x_svl_get_rec(0x10001, 17)",
                "x_svl_update_rec(0x10001, record, 0)",
                "x_svl_unlock(0x10001)");
    }

    @Test
    void listUpdateCountsANullElementAsARecordThatCannotBeRead() {
        open(1);
        assertEquals(-22, lists.native_updateInfoList(1, Arrays.asList(null, named("1,17"))));
        assertJournal("x_svl_lock(0x10001)", "x_svl_unlock(0x10001)");
    }

    @Test
    void listUpdateCopiesAllButTheSdtServiceTypeOfType5() {
        open(1);
        byte[] five = stored(5, 0x100);
        Script.answer("x_svl_get_rec", five);
        VltTvChannelInfoBase values =
                named("1,17").setSdtServiceType(0x32).setMinorChannelNumber(7).setFreeCaMode(1);
        assertEquals(0, lists.native_updateInfoList(1, List.of(values)));
        assertArrayEquals(Records.with32(five, 4, 0x700), Script.lastRecord());

        byte[] dvb = stored(2, 0x100);
        Script.answer("x_svl_get_rec", dvb);
        assertEquals(0, lists.native_updateInfoList(1, List.of(values)));
        byte[] expected = Records.with8(Records.with8(dvb, 152 + 64, 1), 152 + 132, 0x32);
        assertArrayEquals(Records.with32(expected, 4, 0x80), Script.lastRecord());

        byte[] dtmb = stored(7, 0x100);
        Script.answer("x_svl_get_rec", dtmb);
        assertEquals(0, lists.native_updateInfoList(1, List.of(values)));
        expected = Records.with8(Records.with8(dtmb, 152 + 62, 1), 152 + 65, 0x32);
        assertArrayEquals(Records.with32(expected, 4, 0x80), Script.lastRecord());
    }

    @Test
    void addStoresAZeroedRecordWithTheKeysOfTheObjectUnderTheLock() {
        open(1);
        Script.answer("x_svl_qry_rec_id", 0, 42);
        assertEquals("1,42", lists.nativeAdd(1, info().setServiceId(0x1234)));
        byte[] expected = Records.with16(Records.with32(new byte[552], 8, 1), 24, 0x1234);
        assertArrayEquals(Records.with16(expected, 0, 42), Script.lastRecord());
        assertJournal(
                "x_svl_lock(0x10001)",
                "x_svl_qry_rec_id(0x10001, 3)",
                "x_svl_add_rec(0x10001, record)",
                "x_svl_unlock(0x10001)");
    }

    @Test
    void addBuildsTheChannelIdFromTheServiceType() {
        open(1);
        VltTvChannelInfoBase number =
                info().setServiceType(0xAB).setMajorChannelNumber(0x5A5A).setMinorChannelNumber(0x123);
        int major = 0x5A5A << 18;
        assertEquals((0xB | major) + 0x80, Records.int32(add(number.setBroadcastType(2)), 4));
        assertEquals((0x2B | major) + 0x80, Records.int32(add(number.setBroadcastType(7)), 4));
        assertEquals(((major & 0x3FC0000) | 0x2300) + 0xAB, Records.int32(add(number.setBroadcastType(5)), 4));
        assertEquals(0, Records.int32(add(number.setBroadcastType(4)), 4));
        Script.answer("x_sb_gen_channel_id", 0, 0x7654321);
        assertEquals(0x7654321, Records.int32(add(number.setBroadcastType(3)), 4));
        assertEquals(List.of("x_sb_gen_channel_id(23130, 291, 171)"), Script.linesWith("x_sb"));
        assertEquals(0, Records.int32(add(info().setServiceType(3).setBroadcastType(2)), 4));
    }

    @Test
    void addCopiesTheSpecificPartOfDvbAndDtmbAlone() {
        open(1);
        VltTvChannelInfoBase values = info().setSdtServiceType(0x32);
        byte[] zero = Records.with32(new byte[552], 8, 1);
        assertArrayEquals(Records.with8(Records.with8(zero, 38, 2), 152 + 132, 0x32), add(values.setBroadcastType(2)));
        assertArrayEquals(Records.with8(Records.with8(zero, 38, 7), 152 + 65, 0x32), add(values.setBroadcastType(7)));
        assertArrayEquals(Records.with8(zero, 38, 5), add(values.setBroadcastType(5)));
    }

    @Test
    void addThatFailsAnswersAnEmptyString() {
        open(1);
        Script.answer("x_svl_add_rec", -9);
        assertEquals("", lists.nativeAdd(1, info()));
        Script.answer("x_svl_qry_rec_id", 0, 65535);
        assertEquals("", lists.nativeAdd(1, info()));
        assertEquals("", lists.nativeAdd(1, (VltTvChannelInfoBase) null));
        assertEquals(2, Script.linesWith("unlock").size());
    }

    @Test
    void addWritesItsLines() {
        open(1);
        Script.logLevel("D");
        Script.answer("x_svl_qry_rec_id", 0, 42);
        Script.answer("x_svl_add_rec", -9);
        lists.nativeAdd(1, info());
        List<String> lines = Script.linesWith("log 3 -:");
        assertEquals(3, lines.size());
        String entry = "log 3 -: \\[jni_VltTvList_Init\\] \\[" + BRIDGE + "add_Info\\]\\[\\d+\\] ";
        assertTrue(lines.get(0).matches(entry), lines.get(0));
        assertTrue(lines.get(1).matches(entry), lines.get(1));
        assertEquals("log 3 -: [jni_VltTvList_Init] [chList->addInfo][-22] mwdbId = 1, rec_id = 42", lines.get(2));
        Script.reset();
        Script.logLevel("D");
        lists.nativeAdd(1, info());
        lines = new ArrayList<>(Script.linesWith("log 3 -:"));
        assertEquals("log 3 -: [jni_VltTvList_Init] [combineMId] mwdbId = 1, recId = 1", lines.get(3));
    }

    @Test
    void addByRecordIdCopiesARecordWithItsId() {
        open(1, 2);
        Script.answer("x_svl_get_rec", stored);
        assertEquals("2,17", lists.nativeAdd(2, "1,17"));
        assertArrayEquals(stored, Script.lastRecord());
        assertJournal(
                "x_svl_get_rec(0x10001, 17)",
                "x_svl_lock(0x10002)",
                "x_svl_add_rec(0x10002, record)",
                "x_svl_unlock(0x10002)");
    }

    @Test
    void addByRecordIdThatFailsAnswersAnEmptyString() {
        open(1, 2);
        assertEquals("", lists.nativeAdd(2, "17"));
        assertEquals("", lists.nativeAdd(2, (String) null));
        Script.answer("x_svl_get_rec", -7);
        assertEquals("", lists.nativeAdd(2, "1,17"));
        assertEquals(List.of(), Script.linesWith("lock"));
        Script.answer("x_svl_add_rec", -11);
        Script.logLevel("D");
        assertEquals("", lists.nativeAdd(2, "1,17"));
        assertEquals(List.of("x_svl_unlock(0x10002)"), Script.linesWith("unlock"));
        assertEquals(1, Script.linesWith("[chList->copyInfo][-22] mwdbId = 2, rec_id = 0").size());
    }

    private static final String PREFIX = "log 3 -: [jni_VltTvList_Init] ";

    @Test
    void updatesBeginWithALineThatNamesThem() {
        open(1);
        Script.always("x_svl_get_rec", stored);
        Script.logLevel("D");
        lists.native_updateInfo(1, named("1,17"));
        lists.native_updateInfo(1, "");
        lists.native_updateInfoList(1, List.of(named("1,17")));
        lists.native_updateInfoList(1, null);
        assertEquals(
                List.of(
                        PREFIX + BRIDGE + "updateInfo",
                        PREFIX + BRIDGE + "updateInfo_by_recId",
                        "log 6 -: Invalid String.\n",
                        "log 6 -: Invalid param.\n",
                        PREFIX + BRIDGE + "updateInfoList",
                        PREFIX + BRIDGE + "updateInfoList"),
                Arrays.stream(Script.lines()).filter(line -> line.startsWith("log ") && line.contains(" -: "))
                .toList());
    }

    @Test
    void addByRecordIdBeginsAndEndsWithItsLines() {
        open(1, 2);
        Script.answer("x_svl_get_rec", stored);
        Script.logLevel("D");
        assertEquals("2,17", lists.nativeAdd(2, "1,17"));
        List<String> lines = Script.linesWith(PREFIX);
        assertEquals(3, lines.size());
        String entry = "log 3 -: \\[jni_VltTvList_Init\\] \\[" + BRIDGE + "add_Info_by_recId\\]\\[\\d+\\] ";
        assertTrue(lines.get(0).matches(entry), lines.get(0));
        assertEquals(PREFIX + "[chList->copyInfo][0] mwdbId = 2, rec_id = 17", lines.get(1));
        assertEquals(PREFIX + "[combineMId] mwdbId = 2, recId = 17", lines.get(2));

        Script.reset();
        Script.logLevel("D");
        assertEquals("", lists.nativeAdd(2, ""));
        lines = List.of(Script.lines());
        assertTrue(lines.get(0).matches(entry), lines.get(0));
        assertEquals(List.of("log 6 -: Invalid String.\n", "log 6 -: Invalid param.\n"), lines.subList(1, 3));
    }

    @Test
    void addsAndListUpdatesOfABroadcastTypeWithoutARuleWriteALineToo() {
        open(1);
        Script.logLevel("D");
        lists.nativeAdd(1, info().setBroadcastType(4).setServiceType(200).setMajorChannelNumber(1));
        Script.answer("x_svl_get_rec", Records.with8(stored(9, 1), 39, 201));
        lists.native_updateInfoList(1, List.of(named("1,17").setMajorChannelNumber(1)));
        assertEquals(
                List.of(
                        PREFIX + "e_brdcst_type = 4, unsupport type stheader.e_serv_type=200 \n",
                        PREFIX + "e_brdcst_type = 9, unsupport type stheader.e_serv_type=201 \n"),
                Script.linesWith("unsupport"));
    }
}
