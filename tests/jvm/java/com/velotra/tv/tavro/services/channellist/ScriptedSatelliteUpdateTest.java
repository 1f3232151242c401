package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;

import java.util.Arrays;
import java.util.List;
import org.junit.jupiter.api.Test;

/** The natives of VltTvSatelliteList that update records. */
class ScriptedSatelliteUpdateTest extends SatellitePlatform {
    private static final String[] UPDATE_OF_17 = {
        "x_satl_get_rec(0x40001, 17)",
        "x_satl_lock(0x40001)",
        "x_satl_update_rec(0x40001, record, 0)",
        "x_satl_unlock(0x40001)"
    };

    private static String identifierLine(String function, int number, String identifier) {
        return PREFIX + "[" + BRIDGE + function + "][" + number + "], sRecID: " + identifier + " ";
    }

    private static VltTvSatelliteInfoBase lnb(String identifier, int type) {
        VltTvSatelliteInfoBase info = named(identifier);
        info.setLnbType(type);
        return info;
    }

    @Test
    void updateOverlaysTheRecordThatItsIdentifierNames() {
        open(1);
        Script.logLevel("D");
        Script.answer("x_satl_get_rec", stored);
        assertEquals(0, satellites.nativeUpdateInfo(lnb("1,17", 0x01020304)));
        assertArrayEquals(Records.with32(stored, 8, 0x01020304), Script.lastRecord());
        assertJournal(
                entry("updateInfo", 4690),
                identifierLine("updateInfo", 4714, "1,17"),
                store("[getInfo]: string recId = 1,17 \n"),
                store("[getInfo]: satId = 1, satRecId = 17 \n"),
                found(1),
                "x_satl_get_rec(0x40001, 17)",
                PREFIX + "e_lnb_type = 16909060 \n",
                found(1),
                "x_satl_lock(0x40001)",
                store("[updateInfo]: satId = 1 \n"),
                found(1),
                "x_satl_update_rec(0x40001, record, 0)",
                found(1),
                "x_satl_unlock(0x40001)");
    }

    @Test
    void updateAsksForTheIdentifierFirstAndNotForPolarization() {
        open(1);
        Script.answer("x_satl_get_rec", stored);
        Asked info = new Asked();
        info.setRecId("1,17");
        info.setDiseqcPolar(1);
        assertEquals(0, satellites.nativeUpdateInfo(info));
        assertEquals(joined(List.of("RecId"), UPDATE_KEYS), info.keys);
        assertArrayEquals(stored, Script.lastRecord());
    }

    @Test
    void updateBuildsItsIdentifierFromTheNumbersInTheText() {
        open(1);
        Script.logLevel("D");
        assertEquals(0, satellites.nativeUpdateInfo(named("001,0017,9")));
        assertEquals(List.of(UPDATE_OF_17), calls());
        assertEquals(List.of(identifierLine("updateInfo", 4714, "1,17")), Script.linesWith("sRecID"));
    }

    @Test
    void updateWithoutAnIdentifierAsksForRecordZeroOfListZeroAndFails() {
        Script.logLevel("D");
        Script.answer("x_satl_open", -5);
        assertEquals(-22, satellites.nativeUpdateInfo(new VltTvSatelliteInfoBase()));
        Script.answer("x_satl_open", -5);
        assertEquals(-22, satellites.nativeUpdateInfo(named(null)));
        String[] once = {entry("updateInfo", 4690), identifierLine("updateInfo", 4714, "0,0")};
        assertEquals(joined(List.of(once), List.of(once)), bridgeLines());
        assertEquals(List.of("x_satl_open(0, 0, 0)", "x_satl_open(0, 0, 0)"), calls());
    }

    @Test
    void updateFailsForABadIdentifierBeforeAnyRead() {
        open(1);
        Script.logLevel("D");
        for (String identifier : List.of("x", "17", "a,1", "1,b", "-1,17", "1, 17", "")) {
            Script.reset();
            Script.logLevel("D");
            assertEquals(-22, satellites.nativeUpdateInfo(lnb(identifier, 1)), identifier);
            assertEquals(List.of(entry("updateInfo", 4690)), bridgeLines());
            assertEquals(List.of(), calls());
        }
        assertEquals(-22, satellites.nativeUpdateInfo((VltTvSatelliteInfoBase) null));
        assertEquals(List.of(), calls());
    }

    @Test
    void updateOfARecordThatCannotBeReadFailsWithoutALock() {
        open(1);
        Script.answer("x_satl_get_rec", -7);
        assertEquals(-22, satellites.nativeUpdateInfo(lnb("1,17", 1)));
        assertJournal("x_satl_get_rec(0x40001, 17)");
    }

    @Test
    void updatePassesOnTheStoresStatusAndUnlocks() {
        open(1);
        Script.answer("x_satl_update_rec", -7);
        Script.always("x_satl_lock", -1, 0);
        Script.always("x_satl_unlock", -1, 0);
        assertEquals(-22, satellites.nativeUpdateInfo(named("1,17")));
        assertEquals(0, satellites.nativeUpdateInfo(named("1,17")));
        assertEquals(joined(List.of(UPDATE_OF_17), List.of(UPDATE_OF_17)), calls());
    }

    @Test
    void updateByRecordIdWritesTheRecordIntoTheListGivenAsItIs() {
        open(1, 2);
        Script.logLevel("D");
        Script.answer("x_satl_get_rec", stored);
        assertEquals(0, satellites.nativeUpdateInfo(2, "1,12"));
        assertArrayEquals(stored, Script.lastRecord());
        assertEquals(List.of(entry("updateInfo_by_recId", 4797)), bridgeLines());
        assertEquals(
                List.of(
                        "x_satl_get_rec(0x40001, 12)",
                        "x_satl_lock(0x40002)",
                        "x_satl_update_rec(0x40002, record, 0)",
                        "x_satl_unlock(0x40002)"),
                calls());
    }

    @Test
    void updateByRecordIdFailsWithTheReadOrTheWrite() {
        open(1, 2);
        Script.answer("x_satl_get_rec", -7);
        assertEquals(-22, satellites.nativeUpdateInfo(2, "1,12"));
        assertEquals(-22, satellites.nativeUpdateInfo(2, "12"));
        assertEquals(-22, satellites.nativeUpdateInfo(2, (String) null));
        assertJournal("x_satl_get_rec(0x40001, 12)");
        Script.reset();
        Script.answer("x_satl_update_rec", -7);
        assertEquals(-22, satellites.nativeUpdateInfo(2, "1,12"));
        assertEquals(1, Script.linesWith("x_satl_unlock(0x40002)").size());
    }

    @Test
    void aRecordThatAReadLeavesAloneIsZeroInUpdates() {
        open(1, 2);
        assertEquals(0, satellites.nativeUpdateInfo(named("1,12")));
        assertArrayEquals(new byte[SIZE], Script.lastRecord());
        assertEquals(0, satellites.nativeUpdateInfo(2, "1,12"));
        assertArrayEquals(new byte[SIZE], Script.lastRecord());
    }

    @Test
    void listUpdateReadsLocksAndWritesElementByElement() {
        open(1, 2);
        Script.logLevel("D");
        Script.answer("x_satl_get_rec", stored);
        Script.answer("x_satl_get_rec", Records.with16(stored, 0, 18));
        Asked second = new Asked();
        second.setRecId("2,18");
        second.setDiseqcPolar(1);
        assertEquals(0, satellites.nativeUpdateInfoList(List.of(lnb("1,17", 5), second)));
        assertEquals(joined(List.of("RecId"), UPDATE_KEYS), second.keys);
        assertArrayEquals(Records.with16(stored, 0, 18), Script.lastRecord());
        assertArrayEquals(Records.with32(stored, 8, 5), recordOf("x_satl_update_rec(0x40001, record, 0)"));
        assertEquals(
                List.of(
                        PREFIX + BRIDGE + "updateInfoList",
                        identifierLine("updateInfoList", 4847, "1,17"),
                        PREFIX + "e_lnb_type = 5 \n",
                        identifierLine("updateInfoList", 4847, "2,18")),
                bridgeLines());
        assertEquals(
                joined(
                        List.of(UPDATE_OF_17),
                        List.of(
                                "x_satl_get_rec(0x40002, 18)",
                                "x_satl_lock(0x40002)",
                                "x_satl_update_rec(0x40002, record, 0)",
                                "x_satl_unlock(0x40002)")),
                calls());
    }

    @Test
    void listUpdateOfNothingSucceedsAndOfANullListFails() {
        Script.logLevel("D");
        assertEquals(0, satellites.nativeUpdateInfoList(List.of()));
        assertEquals(-22, satellites.nativeUpdateInfoList(null));
        assertJournal(PREFIX + BRIDGE + "updateInfoList", PREFIX + BRIDGE + "updateInfoList");
    }

    @Test
    void listUpdateFailsAtABadIdentifierOnlyWhenItIsTheFirst() {
        open(1);
        assertEquals(-22, satellites.nativeUpdateInfoList(List.of(named("x"), named("1,17"))));
        assertJournal();
        for (List<VltTvSatelliteInfoBase> list : List.of(
                List.of(lnb("1,17", 3), named("x"), named("1,18")),
                List.of(lnb("1,17", 3), named(""), named("1,18")))) {
            Script.reset();
            Script.answer("x_satl_get_rec", stored);
            assertEquals(0, satellites.nativeUpdateInfoList(list));
            assertJournal(UPDATE_OF_17);
            assertArrayEquals(Records.with32(stored, 8, 3), Script.lastRecord());
        }
    }

    @Test
    void listUpdateStopsAtAFailureAndKeepsTheUpdatesBefore() {
        open(1);
        Script.answer("x_satl_get_rec", 0);
        Script.answer("x_satl_get_rec", -7);
        assertEquals(-22, satellites.nativeUpdateInfoList(List.of(named("1,17"), named("1,18"), named("1,19"))));
        assertEquals(joined(List.of(UPDATE_OF_17), List.of("x_satl_get_rec(0x40001, 18)")), calls());
        Script.reset();
        Script.answer("x_satl_update_rec", -7);
        assertEquals(-22, satellites.nativeUpdateInfoList(List.of(named("1,17"), named("1,18"))));
        assertJournal(UPDATE_OF_17);
        Script.reset();
        assertEquals(-22, satellites.nativeUpdateInfoList(Arrays.asList(named("1,17"), null, named("1,18"))));
        assertJournal(UPDATE_OF_17);
    }

    @Test
    void listUpdateWithoutAnIdentifierReadsRecord0OfList0AndFails() {
        open(1);
        Script.logLevel("D");
        assertEquals(-22,
                satellites.nativeUpdateInfoList(List.of(named("1,17"), new VltTvSatelliteInfoBase(), named("1,18"))));
        assertEquals(joined(List.of(UPDATE_OF_17), List.of("x_satl_open(0, 0, 0)")), calls());
        assertEquals(
                List.of(identifierLine("updateInfoList", 4847, "1,17"), identifierLine("updateInfoList", 4847, "0,0")),
                Script.linesWith("sRecID"));
    }

    @Test
    void everyElementBeginsWithARecordOfItsOwn() {
        open(1);
        Script.answer("x_satl_get_rec", stored);
        assertEquals(0, satellites.nativeUpdateInfoList(List.of(named("1,17"), named("1,18"))));
        assertArrayEquals(new byte[SIZE], Script.lastRecord()); // its read left the record alone
    }

    @Test
    void aSatelliteThatWasReadCanBeChangedAndHandedToAnUpdate() {
        open(1);
        Script.always("x_satl_get_rec", Records.with32(stored, 4, 0x2000));
        VltTvSatelliteInfo info = satellites.nativeGetInfo("1,17", List.of("LnbType"));
        info.setLnbType(7);
        assertEquals(0, satellites.nativeUpdateInfo(info));
        assertArrayEquals(Records.with32(Records.with32(stored, 4, 0x2000), 8, 7), Script.lastRecord());
    }

    private static byte[] recordOf(String call) {
        return Script.record(List.of(Script.lines()).indexOf(call));
    }
}
