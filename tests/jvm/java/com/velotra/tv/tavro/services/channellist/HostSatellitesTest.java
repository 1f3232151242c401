package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertNotEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import java.lang.reflect.Method;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Optional;
import java.util.OptionalInt;
import java.util.TreeMap;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** Satellite lists over the workstation's platform: every key through every way in and out. */
class HostSatellitesTest {
    private static final String ANTENNA = "AntennaType";
    private static final String POLARIZATION = "DiseqcPolar";

    // A value for every key, different where the width allows; flags and switch modes match the antenna type.
    private static final Map<String, Object> VALUES = new LinkedHashMap<>();
    // Others, as far as a key has any.
    private static final Map<String, Object> OTHERS = new LinkedHashMap<>();

    private static void row(String key, Object value, Object other) {
        VALUES.put(key, value);
        OTHERS.put(key, other);
    }

    static {
        row("Name", "Züri € 1", "Due");
        row("OrbitPosition", -3000, 192);
        row("MaskStatusOn", 1, 0);
        row("LnbSignalDetected", 1, 0);
        row("MaskLnbUniver", 1, 0);
        row("MaskLnbSingcab", 0, 1);
        row("MaskLnbSingcabJess", 0, 1);
        row(ANTENNA, 3, 1);
        row("LnbType", 0x12345601, 11);
        row("LnbLowFreq", 65502, 12);
        row("LnbHighFreq", 65503, 13);
        row("LnbSwitchFreq", 65504, 14);
        row("LnbPower", 0x12345605, 15);
        row("DiseqcType", 2, 0);
        row("DiseqcPosition", 3, 6);
        row("ToneBurst", 255, 1);
        row("Tone22k", 206, 16);
        row(POLARIZATION, 0x12345607, 17);
        row("DiseqcTypeEx", 0, 18);
        row("DiseqcPositionEx", 209, 19);
        row("MduType", 0x12345610, 20);
        row("UnicablePosition", 0x12345611, 21);
        row("SingleCableUserBandMain", 0x12345612, 22);
        row("SingleCableBandFreqMain", 65513, 23);
        row("SingleCableUserBandSub", 0x12345614, 24);
        row("SingleCableBandFreqSub", 65515, 25);
    }

    private final VltTvSatelliteList satellites = VltTvSatelliteList.getInstance();

    @AfterEach
    void removeLists() {
        for (int id = 1; id <= 3; id++) {
            if (satellites.exists(id)) {
                satellites.delete(id);
            }
        }
    }

    private static <T extends VltTvSatelliteInfoBase> T set(T info, Map<String, Object> values) {
        values.forEach((key, value) -> set(info, key, value));
        return info;
    }

    private static void set(VltTvSatelliteInfoBase info, String key, Object value) {
        try {
            Class<?> type = value instanceof String ? String.class : int.class;
            VltTvSatelliteInfoBase.class.getMethod("set" + key, type).invoke(info, value);
        } catch (ReflectiveOperationException e) {
            throw new AssertionError(key, e);
        }
    }

    /** The values of the keys that a satellite has, but for the record's identifier. */
    private static Map<String, Object> valuesOf(VltTvSatelliteInfoBase info) {
        Map<String, Object> values = new TreeMap<>();
        for (String key : info.keys()) {
            try {
                Method getter = VltTvSatelliteInfoBase.class.getMethod("get" + key);
                values.put(key, getter.invoke(info));
            } catch (ReflectiveOperationException e) {
                throw new AssertionError(key, e);
            }
        }
        assertNotEquals(null, values.remove("RecId"));
        return values;
    }

    private static VltTvSatelliteInfoBase satellite(Map<String, Object> values) {
        return set(new VltTvSatelliteInfoBase(), values);
    }

    private static VltTvSatelliteInfoBase named(RecordId id, Map<String, Object> values) {
        VltTvSatelliteInfoBase info = satellite(values);
        info.setRecId(id.toString());
        return info;
    }

    private static void assertSame(Map<String, Object> expected, VltTvSatelliteInfo found) {
        assertEquals(new TreeMap<>(expected), valuesOf(found));
    }

    private Map<String, Object> all(RecordId id) {
        return valuesOf(satellites.get(id).orElseThrow());
    }

    @Test
    void everyValueThatIsAddedIsReadBackWholeAndKeyByKeyAndInTheList() {
        assertEquals(26, VALUES.size());
        satellites.open(1);
        satellites.add(1, new VltTvSatelliteInfoBase());
        RecordId id = satellites.add(1, satellite(VALUES));
        assertEquals(new RecordId(1, 2), id);
        assertSame(VALUES, satellites.get(id).orElseThrow());
        assertEquals(id, satellites.get(id).orElseThrow().id());
        assertSame(VALUES, satellites.get(id, List.copyOf(VALUES.keySet())).orElseThrow());
        assertSame(VALUES, satellites.getAll(1).get(1));
        assertEquals(id, satellites.getAll(1).get(1).id());
        VALUES.forEach((key, value) -> {
            assertSame(Map.of(key, value), satellites.get(id, List.of(key)).orElseThrow());
            assertEquals(value, valuesOf(satellites.getAll(1, List.of(key)).get(1)).get(key), key);
        });
    }

    @Test
    void anEmptySatelliteHasNoToneBurstAndNoAntennaType() {
        satellites.open(1);
        RecordId id = satellites.add(1, new VltTvSatelliteInfoBase());
        Map<String, Object> empty = new TreeMap<>();
        VALUES.forEach((key, value) -> empty.put(key, value instanceof String ? "" : 0));
        empty.put("ToneBurst", 255);
        empty.put("DiseqcPosition", 255);
        empty.remove(ANTENNA);
        assertEquals(empty, all(id));
    }

    @Test
    void everyValueIsUpdatedOnItsOwnAndTheOthersStay() {
        satellites.open(1);
        RecordId id = satellites.add(1, satellite(VALUES));
        Map<String, Object> expected = new TreeMap<>(all(id));
        List<String> coupled = List.of(ANTENNA, POLARIZATION, "MaskLnbUniver", "MaskLnbSingcab", "MaskLnbSingcabJess",
                "DiseqcType", "DiseqcTypeEx", "DiseqcPosition", "ToneBurst");
        for (Map.Entry<String, Object> other : OTHERS.entrySet()) {
            if (!coupled.contains(other.getKey())) {
                satellites.update(named(id, Map.of(other.getKey(), other.getValue())));
                expected.put(other.getKey(), other.getValue());
                assertEquals(expected, all(id), other.getKey());
            }
        }
    }

    @Test
    void anUpdateOfAntennaOrSwitchShowsInEveryCoupledKey() {
        satellites.open(1);
        RecordId id = satellites.add(1, satellite(VALUES));
        Map<String, Object> expected = new TreeMap<>(all(id));

        satellites.update(named(id, Map.of(ANTENNA, 1)));
        expected.putAll(Map.of(ANTENNA, 1, "MaskLnbUniver", 0, "MaskLnbSingcab", 1));
        assertEquals(expected, all(id));

        satellites.update(named(id, Map.of("MaskLnbSingcab", 0, "MaskLnbSingcabJess", 1)));
        expected.putAll(Map.of(ANTENNA, 2, "MaskLnbSingcab", 0, "MaskLnbSingcabJess", 1));
        assertEquals(expected, all(id));

        satellites.update(named(id, Map.of("DiseqcType", 0, "DiseqcPosition", 6)));
        expected.putAll(Map.of("DiseqcType", 0, "DiseqcPosition", 6, "ToneBurst", 1));
        assertEquals(expected, all(id));

        satellites.update(named(id, Map.of("ToneBurst", 0, "DiseqcTypeEx", 18)));
        expected.putAll(Map.of("DiseqcPosition", 5, "ToneBurst", 0, "DiseqcTypeEx", 18));
        assertEquals(expected, all(id));

        satellites.update(named(id, Map.of(ANTENNA, 5)));
        expected.putAll(Map.of(ANTENNA, 5, "MaskLnbUniver", 1, "MaskLnbSingcabJess", 0, "DiseqcTypeEx", 0));
        assertEquals(expected, all(id));
    }

    @Test
    void thePolarizationIsTakenIntoNewSatellitesAloneAndNotByUpdates() {
        satellites.open(1);
        RecordId id = satellites.add(1, satellite(Map.of(POLARIZATION, 3)));
        satellites.update(named(id, Map.of(POLARIZATION, 1)));
        satellites.updateAll(List.of(named(id, Map.of(POLARIZATION, 1))));
        assertEquals(3, all(id).get(POLARIZATION));
    }

    @Test
    void manySatellitesOfSeveralListsAreUpdatedTogether() {
        satellites.open(1);
        satellites.open(2);
        RecordId one = satellites.add(1, satellite(VALUES));
        RecordId two = satellites.add(2, new VltTvSatelliteInfoBase());
        Map<String, Object> before = all(two);
        satellites.updateAll(List.of(named(one, OTHERS), named(two, Map.of("Name", "Tre"))));

        Map<String, Object> expected = new TreeMap<>(OTHERS);
        expected.put(POLARIZATION, VALUES.get(POLARIZATION));
        // The antenna type has the last word about the LNB.
        expected.put("MaskLnbSingcabJess", 0);
        assertEquals(expected, all(one));
        before.put("Name", "Tre");
        assertEquals(before, all(two));
    }

    @Test
    void aSatelliteThatWasReadIsARecordObjectThatAnUpdateTakes() {
        satellites.open(1);
        RecordId id = satellites.add(1, satellite(VALUES));
        VltTvSatelliteInfo read = satellites.get(id).orElseThrow();
        read.setName("Due");
        satellites.update(read);
        Map<String, Object> expected = new TreeMap<>(VALUES);
        expected.put("Name", "Due");
        assertEquals(expected, all(id));
    }

    @Test
    void aSatelliteIsCopiedUnderItsRecordIdAndSoIsAWholeList() {
        satellites.open(1);
        satellites.open(2);
        satellites.add(1, new VltTvSatelliteInfoBase());
        RecordId id = satellites.add(1, satellite(VALUES));
        assertEquals(new RecordId(2, 2), satellites.add(2, id));
        assertSame(VALUES, satellites.get(new RecordId(2, 2)).orElseThrow());
        satellites.update(named(id, Map.of("Name", "Due")));
        satellites.add(2, id);
        assertEquals(List.of("Due"), names(2), "a copy of a record id that is there replaces it");
        satellites.copy(1, 2);
        assertEquals(contents(1), contents(2));
        satellites.update(2, new RecordId(2, 1));
        assertEquals(contents(1), contents(2), "a record that is written back is as it was");
    }

    @Test
    void aListIsStoredAndLoaded(@TempDir Path folder) {
        satellites.open(1);
        satellites.add(1, satellite(VALUES));
        satellites.add(1, satellite(OTHERS));
        String file = folder.resolve("satl").toString();
        satellites.store(1, file);
        satellites.open(3, file);
        assertEquals(contents(1), contents(3));
        assertEquals(List.of("Züri € 1", "Due"), names(3));
    }

    @Test
    void satellitesAreRemovedByTheirIdentifiersAndByRecordId() {
        satellites.open(1);
        RecordId one = satellites.add(1, satellite(Map.of("Name", "Uno")));
        RecordId two = satellites.add(1, satellite(Map.of("Name", "Due")));
        satellites.add(1, satellite(Map.of("Name", "Tre")));
        satellites.remove(one);
        assertEquals(Optional.empty(), satellites.get(one));
        assertEquals(List.of("Due", "Tre"), names(1));
        satellites.remove(1, new RecordId(7, two.recordId()));
        assertEquals(List.of("Tre"), names(1));
        assertThrows(ChannelListException.class, () -> satellites.remove(one));
        satellites.clean(1);
        assertEquals(List.of(), names(1));
        satellites.delete(1);
        assertFalse(satellites.exists(1));
    }

    @Test
    void updatesRefuseMalformedIdentifiersBeforeAnyChange() {
        satellites.open(1);
        RecordId id = satellites.add(1, satellite(VALUES));
        VltTvSatelliteInfoBase good = satellite(Map.of("Name", "Changed"));
        good.setRecId(id.toString());
        VltTvSatelliteInfoBase bad = satellite(Map.of("Name", "Changed too"));
        bad.setRecId("x");
        IllegalArgumentException refused =
                assertThrows(IllegalArgumentException.class, () -> satellites.updateAll(List.of(good, bad)));
        assertEquals("'x' is not a record identifier; write list and record as in 3,17", refused.getMessage());
        assertThrows(IllegalArgumentException.class, () -> satellites.update(bad));
        assertEquals(VALUES.get("Name"), satellites.get(id).orElseThrow().getName());
    }

    @Test
    void aListThatDoesNotExistIsAnEmptyListAndIsNotCreated() {
        assertEquals(List.of(), satellites.getAll(3));
        assertFalse(satellites.exists(3));
    }

    @Test
    void failuresAreExceptionsThatNameTheSatelliteAndTheStatus() {
        satellites.open(1);
        ChannelListException failure = assertThrows(
                ChannelListException.class, () -> satellites.update(named(new RecordId(1, 9), Map.of("Name", "Uno"))));
        assertEquals("cannot update satellite 1,9 (status -22); is there such a record? If so, see the log",
                failure.getMessage());
        failure = assertThrows(ChannelListException.class,
                () -> satellites.updateAll(List.of(named(new RecordId(1, 9), Map.of()))));
        assertEquals(OptionalInt.empty(), failure.listId());
        assertEquals("cannot update 1 satellite (status -22)", failure.problem());
        failure = assertThrows(ChannelListException.class, () -> satellites.add(77, new VltTvSatelliteInfoBase()));
        assertEquals("cannot add a satellite to list 77", failure.problem());
        failure = assertThrows(ChannelListException.class, () -> satellites.delete(77));
        assertEquals("cannot delete satellite list 77 (status -22); is there such a list? If so, see the log",
                failure.getMessage());
    }

    private List<Object> names(int listId) {
        return new ArrayList<>(satellites.getAll(listId).stream().map(VltTvSatelliteInfo::getName).toList());
    }

    private List<Map<String, Object>> contents(int listId) {
        return satellites.getAll(listId).stream().map(HostSatellitesTest::valuesOf).toList();
    }
}
