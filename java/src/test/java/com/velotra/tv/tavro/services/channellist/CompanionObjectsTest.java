package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamInfoBase.AlternateFrequencyInfoBase;
import java.lang.reflect.Field;
import java.lang.reflect.Method;
import java.util.Arrays;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.TreeSet;
import java.util.function.Function;
import org.junit.jupiter.api.Test;

/** The record objects of transport streams, networks and satellites. */
class CompanionObjectsTest {
    private static Object sample(Class<?> type) {
        if (type == int.class) {
            return 42;
        }
        if (type == boolean.class) {
            return true;
        }
        if (type == RecordId.class) {
            return new RecordId(5, 9);
        }
        return type == String.class ? "5,9" : new AlternateFrequencyInfoBase[] {new AlternateFrequencyInfoBase(1, 2)};
    }

    /** Calls every setter on an object of its own: each marks the key of its name, and every field has one. */
    private static <T extends KeyedValues> void checkSetters(Class<T> type, Function<String, String> fieldOf)
            throws Exception {
        Set<String> fields = new TreeSet<>();
        for (Method setter : type.getMethods()) {
            if (!setter.getName().startsWith("set")) {
                continue;
            }
            T info = type.getDeclaredConstructor().newInstance();
            Object value = sample(setter.getParameterTypes()[0]);
            setter.invoke(info, value);
            assertEquals(1, info.keys().size(), setter.getName());
            String key = info.keys().iterator().next();
            assertEquals("set" + key, setter.getName());
            Field field = type.getDeclaredField(fieldOf.apply(key));
            assertEquals(value instanceof RecordId ? "5,9" : value.equals(true) ? 1 : value, field.get(info), key);
            assertTrue(fields.add(field.getName()), key);
        }
        Set<String> declared = new TreeSet<>();
        Arrays.stream(type.getDeclaredFields()).forEach(field -> declared.add(field.getName()));
        assertEquals(declared, fields);
    }

    @Test
    void everyTransportStreamKeyHasOneSetterAndField() throws Exception {
        checkSetters(
                VltTvTransportStreamInfoBase.class,
                key -> Character.toLowerCase(key.charAt(0)) + key.substring(1));
    }

    @Test
    void everyNetworkKeyHasOneSetterAndField() throws Exception {
        checkSetters(VltTvNetworkInfoBase.class, key -> key);
    }

    @Test
    void everySatelliteKeyHasOneSetterAndField() throws Exception {
        checkSetters(
                VltTvSatelliteInfoBase.class, key -> key.equals("LnbSignalDetected") ? "lnbSignalDetected" : key);
    }

    @Test
    void keysAreTheObjectsOwn() {
        VltTvTransportStreamInfoBase stream = new VltTvTransportStreamInfoBase().setFrequency(1);
        assertTrue(new VltTvTransportStreamInfoBase().isContainsKey(stream, "Frequency"));
        assertFalse(stream.isContainsKey(new VltTvTransportStreamInfoBase(), "Frequency"));
        VltTvNetworkInfoBase network = new VltTvNetworkInfoBase();
        network.setNetworkName(null);
        assertTrue(network.isContainsKey(network, "NetworkName"));
        assertFalse(network.isContainsKey(new VltTvNetworkInfoBase(), "NetworkName"));
        VltTvSatelliteInfoBase satellite = new VltTvSatelliteInfo();
        satellite.setName(null);
        assertTrue(new VltTvSatelliteInfoBase().isContainsKey(satellite, "Name"));
        assertFalse(satellite.isContainsKey(new VltTvSatelliteInfoBase(), "Name"));
    }

    @Test
    void aSatelliteTakesOverEveryValueAndLeavesNoneBehind() throws Exception {
        VltTvSatelliteInfo satellite = new VltTvSatelliteInfo();
        assertNull(satellite.id());
        Map<Field, Object> given = new LinkedHashMap<>();
        VltTvSatelliteInfoBase carrier = new VltTvSatelliteInfoBase();
        int value = 0;
        for (Field field : VltTvSatelliteInfoBase.class.getDeclaredFields()) {
            value++;
            field.set(carrier, field.getType() == int.class ? (Object) value : "3," + value);
            carrier.mark(field.getName());
            given.put(field, field.get(carrier));
        }
        assertEquals(27, value);
        satellite.satlToSatelliteInfo(carrier);
        for (Map.Entry<Field, Object> field : given.entrySet()) {
            String name = field.getKey().getName();
            assertEquals(field.getValue(), field.getKey().get(satellite), name);
            assertEquals(field.getKey().getType() == int.class ? (Object) 0 : null, field.getKey().get(carrier), name);
            assertTrue(satellite.keys().contains(name), name);
        }
        assertEquals(Set.of(), carrier.keys());
        assertEquals(RecordId.parse(satellite.getRecId()), satellite.id());
    }

    /** Calls every getter of a satellite whose fields all differ. */
    @Test
    void everyGetterOfASatelliteReturnsItsField() throws Exception {
        VltTvSatelliteInfoBase satellite = new VltTvSatelliteInfoBase();
        int value = 0;
        for (Field field : VltTvSatelliteInfoBase.class.getDeclaredFields()) {
            value++;
            Object given = field.getType() == int.class ? (Object) value : field.getName();
            field.set(satellite, given);
            String name = Character.toUpperCase(field.getName().charAt(0)) + field.getName().substring(1);
            assertEquals(given, VltTvSatelliteInfoBase.class.getMethod("get" + name).invoke(satellite), name);
        }
    }

    @Test
    void aNetworkTakesOverTheValuesOfTheNatives() {
        VltTvNetworkInfo network = new VltTvNetworkInfo();
        assertNull(network.id());
        VltTvNetworkInfoBase values = new VltTvNetworkInfoBase();
        values.setNwlIdNwlRecId("3,17");
        values.setNwlNetworkId(8468);
        values.setNetworkVersion(5);
        values.setNetworkName("Uno");
        values.setNwlFavNetworkCandidate(1);
        values.setNwlFavNetwork(2);
        network.nwlToNetworkInfo(values);
        assertEquals(
                Set.of("NwlIdNwlRecId", "NwlNetworkId", "NetworkVersion", "NetworkName", "NwlFavNetworkCandidate",
                        "NwlFavNetwork"),
                network.keys());
        assertEquals(new RecordId(3, 17), network.id());
        assertEquals(List.of(8468, 5, "Uno", 1, 2), List.of(network.getNwlNetworkId(), network.getNetworkVersion(),
                network.getNetworkName(), network.getNwlFavNetworkCandidate(), network.getNwlFavNetwork()));
    }

    @Test
    void aTransportStreamRecordIsDescribedByItsMedium() {
        byte[] bytes = new byte[724];
        for (int i = 0; i < bytes.length; i++) {
            bytes[i] = (byte) (i % 7 + 1);
        }
        bytes[212] = 'U';
        bytes[213] = 0;
        bytes[544] = 'N';
        bytes[545] = 0;
        for (int medium : new int[] {1, 2, 3, 4}) {
            bytes[5] = (byte) medium;
            TransportStreamRecord record = new TransportStreamRecord(bytes);
            List<String> lines = record.describe(false).lines().toList();
            assertEquals(new int[] {0, 41, 34, 38, 27}[medium], lines.size(), "medium " + medium);
            assertEquals("medium                         " + medium, lines.get(2));
            assertTrue(lines.contains("name                           \"U\""));
            assertTrue(lines.contains("network name                   \"N\""));
            assertEquals(medium == 1, lines.stream().anyMatch(line -> line.startsWith("bandwidth code")));
            assertEquals(medium == 3, lines.stream().anyMatch(line -> line.startsWith("polarization")));
            assertEquals(medium == 2 || medium == 3, lines.stream().anyMatch(line -> line.startsWith("symbol rate")));
        }
    }

    @Test
    void theFieldsOfATransportStreamRecordAreAtTheirOffsets() {
        byte[] bytes = new byte[724];
        TransportStreamRecord record = new TransportStreamRecord(bytes);
        for (TransportStreamField field : TransportStreamField.values()) {
            if (field.style() != RecordField.Style.TEXT) {
                bytes[field.offset()] = 1;
                assertEquals(1, record.value(field), field.label());
                bytes[field.offset()] = 0;
            }
        }
        assertEquals(List.of(120, 80, 92, 44, 708, 712, 714), List.of(
                TransportStreamField.TER_MODE.offset(), TransportStreamField.CAB_MODE.offset(),
                TransportStreamField.SAT_MODE.offset(),
                TransportStreamField.FREQUENCY.offset(), TransportStreamField.TSL_ID.offset(),
                TransportStreamField.SATL_ID.offset(),
                TransportStreamField.SATL_RECORD_ID.offset()));
    }
}
