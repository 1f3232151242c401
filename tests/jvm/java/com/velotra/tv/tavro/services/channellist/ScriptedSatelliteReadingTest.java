package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertSame;

import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import org.junit.jupiter.api.Test;

/** The natives of VltTvSatelliteList that hand satellites out. What becomes of each value is tested with the record. */
class ScriptedSatelliteReadingTest extends SatellitePlatform {
    private static final List<String> ALL_IN_ORDER = joined(
            List.of(
                    "RecId", "MaskStatusOn", "MaskLnbUniver", "MaskLnbSingcab", "LnbSignalDetected",
                    "MaskLnbSingcabJess", "OrbitPosition",
                    "Name", "SingleCableUserBandSub", "SingleCableBandFreqSub", "LnbType", "LnbLowFreq", "LnbHighFreq",
                    "LnbSwitchFreq",
                    "AntennaType"),
            DISEQC_KEYS,
            List.of("DiseqcPolar"));

    private static String maskLine(String function, String kind, int mask) {
        return LOG + "[" + BRIDGE + function + "]:" + kind + " pt_satl_rec.ui4_mask = " + mask + " \n";
    }

    private static List<String> keys(VltTvSatelliteInfo info) {
        return List.copyOf(info.keys());
    }

    @Test
    void oneSatelliteHasAllValuesAndTheIdentifierOfTheRecordRead() {
        open(5);
        Script.logLevel("D");
        Script.answer("x_satl_get_rec", Records.with32(stored, 4, 0x80002000 | 0x8000));
        VltTvSatelliteInfo info = satellites.nativeGetInfo("5,12", null);
        assertEquals("5,17", info.getRecId());
        assertEquals(ALL_IN_ORDER, keys(info));
        assertEquals("Uno", info.getName());
        assertEquals(1, info.getMaskStatusOn());
        assertEquals(1, info.getAntennaType());
        assertJournal(
                store("[getInfo]: string recId = 5,12 \n"),
                store("[getInfo]: satId = 5, satRecId = 12 \n"),
                found(5),
                "x_satl_get_rec(0x40005, 12)",
                maskLine("getInfo", "", 0x80002000 | 0x8000),
                PREFIX + "[combineMId] mwdbId = 5, recId = 17");
    }

    @Test
    void oneSatelliteTakesTheListFromTheTextAsTheStoreDoes() {
        open(5);
        Script.answer("x_satl_get_rec", stored);
        assertEquals("5,17", satellites.nativeGetInfo(" 5x, 12,9", null).getRecId());
        assertJournal("x_satl_get_rec(0x40005, 12)");
    }

    @Test
    void oneSatelliteWithAKeyListHasTheValuesOfThoseKeysAlone() {
        open(5);
        Script.logLevel("D");
        Script.always("x_satl_get_rec", Records.with32(stored, 4, 0));
        assertEquals(List.of("RecId", "Name"), keys(satellites.nativeGetInfo("5,12", List.of("Name"))));
        assertEquals(
                List.of(
                        maskLine("getInfo", "", 0),
                        PREFIX + "[combineMId] mwdbId = 5, recId = 17",
                        PREFIX + "Key List size = 1\n"),
                bridgeLines()); // and no word of the antenna type
        Script.reset();
        Script.logLevel("D");
        Script.always("x_satl_get_rec", stored);
        VltTvSatelliteInfo info = satellites.nativeGetInfo(
                "5,12", Arrays.asList("DiseqcPolar", "name", "Unknown", null, "", "LnbPower", "RecId", "Name "));
        assertEquals(List.of("RecId", "DiseqcPolar", "LnbPower"), keys(info));
        assertEquals(List.of(PREFIX + "Key List size = 8\n"), Script.linesWith("Key List"));
        assertEquals(List.of("RecId"), keys(satellites.nativeGetInfo("5,12", List.of())));
    }

    @Test
    void oneSatelliteThatCannotBeReadIsNullWithTheStatus() {
        open(5);
        Script.logLevel("D");
        Script.answer("x_satl_get_rec", -7);
        assertNull(satellites.nativeGetInfo("5,12", null));
        assertEquals(
                List.of(maskLine("getInfo", "", 0), PREFIX + BRIDGE + "getInfo getInfo fail ret=-22 "), bridgeLines());
    }

    @Test
    void oneSatelliteWhoseIdentifierHasNoCommaIsNull() {
        for (String identifier : Arrays.asList("17", "", null)) {
            Script.reset();
            Script.logLevel("D");
            assertNull(satellites.nativeGetInfo(identifier, null));
            assertEquals(
                    List.of(maskLine("getInfo", "", 0), PREFIX + BRIDGE + "getInfo getInfo fail ret=-1 "),
                    bridgeLines());
            assertEquals(List.of(), calls());
        }
        Script.reset();
        Script.logLevel("E");
        assertNull(satellites.nativeGetInfo(null, null));
        assertJournal("log 6 -: Invalid String.\n",
                "log 6 [SATELITE] NativeVltTvSatelliteList_Cpp: Unknown recId info.\n");
    }

    @Test
    void aListIsReadUnderTheReadLockIntoAnArrayList() {
        open(5);
        Script.logLevel("D");
        Script.always("x_satl_get_num_recs", 0, 2);
        Script.answer("x_satl_get_rec_by_rec_idx", Records.with32(stored, 4, 0x4000));
        Script.answer(
                "x_satl_get_rec_by_rec_idx",
                Records.withText(Records.with32(Records.with16(stored, 0, 18), 4, 0x8000), 282, "Due"));
        List<VltTvSatelliteInfo> list = satellites.nativeGetInfoList(5, null);
        assertSame(ArrayList.class, list.getClass());
        assertEquals(List.of("5,17", "5,18"), list.stream().map(info -> info.getRecId()).toList());
        assertEquals(List.of("Uno", "Due"), list.stream().map(info -> info.getName()).toList());
        assertEquals(ALL_IN_ORDER, keys(list.get(1)));
        assertJournal(
                entry("getInfoList", 4601),
                found(5),
                "x_satl_read_lock(0x40005)",
                store("[getInfoListNum]: satId = 5 \n"),
                found(5),
                "x_satl_get_num_recs(0x40005)",
                store("[getInfoListNum]:i2_num_rec:2 \n"),
                store("[NativeVltTvSatelliteList][getInfoByIdx]: satId = 5 idx = 0\n"),
                found(5),
                "x_satl_get_rec_by_rec_idx(0x40005, 0)",
                maskLine("getInfoList", "List", 0x4000),
                PREFIX + "[combineMId] mwdbId = 5, recId = 17",
                store("[NativeVltTvSatelliteList][getInfoByIdx]: satId = 5 idx = 1\n"),
                found(5),
                "x_satl_get_rec_by_rec_idx(0x40005, 1)",
                maskLine("getInfoList", "List", 0x8000),
                PREFIX + "[combineMId] mwdbId = 5, recId = 18",
                found(5),
                "x_satl_read_unlock(0x40005)");
    }

    @Test
    void aListByKeysLogsTheNumberOfKeysForEachRecord() {
        open(5);
        Script.logLevel("D");
        Script.always("x_satl_get_num_recs", 0, 2);
        Script.always("x_satl_get_rec_by_rec_idx", stored);
        List<VltTvSatelliteInfo> list = satellites.nativeGetInfoList(5,
                Arrays.asList("LnbType", "Nothing", null, "Tone22k"));
        assertEquals(List.of("RecId", "LnbType", "Tone22k"), keys(list.get(0)));
        String line = LOG + "[jni_VltTvList_Init]getInfoList, Key List size = 4\n";
        assertEquals(List.of(line, line), Script.linesWith("Key List"));
    }

    @Test
    void aValueThatASatelliteDoesNotHaveIsNotTheOneBefore() {
        open(5);
        Script.always("x_satl_get_num_recs", 0, 3);
        Script.answer("x_satl_get_rec_by_rec_idx", Records.with32(stored, 4, 0));
        Script.answer("x_satl_get_rec_by_rec_idx", Records.with32(stored, 4, 0x8000));
        Script.answer("x_satl_get_rec_by_rec_idx", Records.with32(stored, 4, 0));
        List<VltTvSatelliteInfo> list = satellites.nativeGetInfoList(5, List.of("AntennaType"));
        assertEquals(List.of("RecId"), keys(list.get(0)));
        assertEquals(List.of("RecId", "AntennaType"), keys(list.get(1)));
        assertEquals(1, list.get(1).getAntennaType());
        assertEquals(List.of("RecId"), keys(list.get(2)));
        assertEquals(0, list.get(2).getAntennaType());
    }

    @Test
    void everyRecordOfAListBeginsZeroed() {
        open(5);
        Script.always("x_satl_get_num_recs", 0, 2);
        Script.answer("x_satl_get_rec_by_rec_idx", stored);
        Script.answer("x_satl_get_rec_by_rec_idx", 0); // a read that leaves the record alone
        List<VltTvSatelliteInfo> list = satellites.nativeGetInfoList(5, List.of("Name"));
        assertEquals(List.of("5,17", "5,0"), list.stream().map(info -> info.getRecId()).toList());
        assertEquals(List.of("Uno", ""), list.stream().map(info -> info.getName()).toList());
    }

    @Test
    void aListWithoutRecordsIsAnEmptyArrayListAndItsLockIsReleased() {
        open(5);
        assertEquals(List.of(), satellites.nativeGetInfoList(5, null));
        Script.answer("x_satl_get_num_recs", -7, 3);
        assertSame(ArrayList.class, satellites.nativeGetInfoList(5, null).getClass());
        String[] calls = {"x_satl_read_lock(0x40005)", "x_satl_get_num_recs(0x40005)", "x_satl_read_unlock(0x40005)"};
        assertEquals(joined(List.of(calls), List.of(calls)), calls());
    }

    @Test
    void aListThatCannotBeOpenedIsAnEmptyArrayList() {
        Script.always("x_satl_open", -5, 0);
        assertEquals(List.of(), satellites.nativeGetInfoList(5, null));
        assertEquals(List.of(), satellites.nativeGetInfoList(0, null));
    }

    @Test
    void aRecordThatCannotBeReadDropsTheListAndReleasesItsLock() {
        open(5);
        Script.logLevel("D");
        Script.always("x_satl_get_num_recs", 0, 3);
        Script.answer("x_satl_get_rec_by_rec_idx", stored);
        Script.answer("x_satl_get_rec_by_rec_idx", -7);
        assertNull(satellites.nativeGetInfoList(5, List.of("LnbType")));
        assertEquals(
                List.of(
                        entry("getInfoList", 4601),
                        maskLine("getInfoList", "List", Records.int32(stored, 4)),
                        PREFIX + "[combineMId] mwdbId = 5, recId = 17",
                        LOG + "[jni_VltTvList_Init]getInfoList, Key List size = 1\n",
                        PREFIX + BRIDGE + "getInfoList : getInfoByIdx failed!"),
                bridgeLines());
        List<String> lines = List.of(Script.lines());
        assertEquals(
                List.of(PREFIX + BRIDGE + "getInfoList : getInfoByIdx failed!", found(5),
                        "x_satl_read_unlock(0x40005)"),
                lines.subList(lines.size() - 3, lines.size()));
        assertEquals(2, Script.linesWith("get_rec_by_rec_idx(").size());
    }

    @Test
    void theLocksStatusesCountForNothing() {
        open(5);
        Script.always("x_satl_read_lock", -1, 0);
        Script.always("x_satl_read_unlock", -1, 0);
        Script.always("x_satl_get_num_recs", 0, 1);
        Script.always("x_satl_get_rec_by_rec_idx", stored);
        assertEquals(1, satellites.nativeGetInfoList(5, null).size());
    }

    @Test
    void recordIdsAreUnsignedAndTheListIsToldAsItWasGiven() {
        open(5);
        Script.always("x_satl_get_rec", Records.with16(stored, 0, 0xABCD));
        assertEquals("65541,43981", satellites.nativeGetInfo("65541,12", null).getRecId());
        Script.always("x_satl_get_num_recs", 0, 1);
        Script.always("x_satl_get_rec_by_rec_idx", Records.with16(stored, 0, 65535));
        assertEquals("65541,65535", satellites.nativeGetInfoList(65541, null).get(0).getRecId());
    }
}
