package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;

import java.lang.reflect.Field;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.nio.ByteBuffer;
import java.nio.ByteOrder;
import java.nio.charset.StandardCharsets;
import java.util.Arrays;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.TreeMap;
import java.util.TreeSet;
import java.util.function.Supplier;
import org.junit.jupiter.api.Test;

/** The table of keys, held against the Java objects and against the bytes that the natives write. */
class ScriptedLayoutTest extends ScriptedPlatform {
    private static final RecordKeys TABLE = new RecordKeys();

    /** Keys whose values are not stored as they are or by a code: tests of their own know their rules. */
    private static final Set<String> RULES = Set.of(
            "MajorChannelNumber", "MinorChannelNumber", "TargetRegionCode", "GuardInterval",
            "AlternateFrequencyInfoList", "AntennaType", "DiseqcPosition");

    /** The key that updates do not ask for. */
    private static final String ADDED_ONLY = "DiseqcPolar";

    private final VltTvSatelliteList satellites = VltTvSatelliteList.getInstance();

    private interface Native {
        void call(KeyedValues values);
    }

    /** A kind of records, with its natives for one record of list 1. */
    private record Kind(
            String name,
            Class<? extends KeyedValues> type,
            Supplier<KeyedValues> empty,
            int size,
            String read,
            Native update) {}

    private final List<Kind> kinds = List.of(
            new Kind("service", VltTvChannelInfoBase.class, VltTvChannelInfoBase::new, 552, "x_svl_get_rec",
                    values -> assertEquals(0, lists.native_updateInfo(1, (VltTvChannelInfoBase) values))),
            new Kind("transport stream", VltTvTransportStreamInfoBase.class, VltTvTransportStreamInfoBase::new, 724,
                    "x_tsl_get_rec",
                    values -> assertEquals(0, streams.native_updateInfo(1, (VltTvTransportStreamInfoBase) values))),
            new Kind("network", VltTvNetworkInfoBase.class, VltTvNetworkInfoBase::new, 304, "x_nwl_get_rec",
                    values -> assertEquals(0, networks.native_updateInfo(1, (VltTvNetworkInfoBase) values))),
            new Kind("satellite", VltTvSatelliteInfoBase.class, VltTvSatelliteInfoBase::new, 412, "x_satl_get_rec",
                    values -> assertEquals(0, satellites.nativeUpdateInfo((VltTvSatelliteInfoBase) values))));

    private static String setter(String key) {
        return "set" + Character.toUpperCase(key.charAt(0)) + key.substring(1);
    }

    private static Object sample(Class<?> type) {
        if (type == int.class) {
            return 1;
        }
        if (type == boolean.class) {
            return true;
        }
        if (type == RecordId.class) {
            return new RecordId(5, 9);
        }
        if (type == int[].class) {
            return new int[] {1};
        }
        return type == String.class ? "5,9" : new VltTvTransportStreamInfoBase.AlternateFrequencyInfoBase[0];
    }

    @Test
    void everyKeyHasTheJavaFieldAndTypeThatTheNativesRead() {
        for (Kind kind : kinds) {
            Map<String, String> found = new TreeMap<>();
            for (Field field : kind.type.getDeclaredFields()) {
                if (!Modifier.isStatic(field.getModifiers())) {
                    found.put(field.getName(), field.getType().descriptorString());
                }
            }
            Map<String, String> expected = new TreeMap<>();
            TABLE.of(kind.name).forEach(key -> expected.put(key.field(), key.descriptor()));
            assertEquals(expected, found, kind.name);
        }
    }

    @Test
    void everyKeyHasASetterThatMarksItAndNoOther() throws ReflectiveOperationException {
        for (Kind kind : kinds) {
            Set<String> setters = new TreeSet<>();
            for (RecordKeys.Key key : TABLE.of(kind.name)) {
                for (Method method : kind.type.getMethods()) {
                    if (method.getName().equals(setter(key.name()))) {
                        KeyedValues values = kind.empty.get();
                        method.invoke(values, sample(method.getParameterTypes()[0]));
                        assertEquals(Set.of(key.name()), values.keys(), kind.name + ' ' + method);
                        setters.add(key.name());
                    }
                }
            }
            Set<String> keys = new TreeSet<>();
            TABLE.of(kind.name).forEach(key -> keys.add(key.name()));
            assertEquals(keys, setters, kind.name);
        }
    }

    private static void set(KeyedValues values, Kind kind, RecordKeys.Key key, Object value) {
        try {
            Field field = kind.type.getDeclaredField(key.field());
            field.setAccessible(true);
            field.set(values, value);
        } catch (ReflectiveOperationException e) {
            throw new AssertionError(e);
        }
        values.mark(key.name());
    }

    private byte[] updated(Kind kind, byte[] stored, KeyedValues values) {
        Script.answer(kind.read, stored);
        kind.update.call(values);
        return Script.lastRecord();
    }

    private static void put(byte[] record, RecordKeys.Target target, int value) {
        byte[] little = ByteBuffer.allocate(4).order(ByteOrder.LITTLE_ENDIAN).putInt(value).array();
        System.arraycopy(little, 0, record, target.offset(), target.width());
    }

    /** The value that a test puts under a key, which changes all bytes of its fields. */
    private static Object value(RecordKeys.Key key, RecordKeys.Target target) {
        return switch (key.kind()) {
            case "number" -> 0x41424344;
            case "flag" -> 1;
            case "text" -> "x".repeat(target.width() - 1);
            case "record id" -> "258,515";
            default -> target.codes().isEmpty() ? 2 : TABLE.codes(target.codes()).keySet().iterator().next();
        };
    }

    /** What the bytes of a record become when the value is put. */
    private static byte[] expected(byte[] before, RecordKeys.Key key, List<RecordKeys.Target> targets, Object value) {
        byte[] record = before.clone();
        switch (key.kind()) {
            case "text" -> {
                byte[] text = ((String) value).getBytes(StandardCharsets.UTF_8);
                for (RecordKeys.Target target : targets) {
                    Arrays.fill(record, target.offset(), target.offset() + target.width(), (byte) 0);
                }
                System.arraycopy(text, 0, record, targets.get(0).offset(), text.length);
            }
            case "record id" -> {
                put(record, targets.get(0), 258);
                put(record, targets.get(1), 515);
            }
            case "flag" -> put(record, targets.get(0), Records.int32(before, targets.get(0).offset()) | key.mask());
            default -> {
                for (RecordKeys.Target target : targets) {
                    int number = (Integer) value;
                    put(record, target, target.codes().isEmpty() ? number : TABLE.codes(target.codes()).get(number));
                }
            }
        }
        return record;
    }

    private static boolean isIdentity(RecordKeys.Key key) {
        return key.kind().equals("record id") && key.targets().size() == 1;
    }

    /** Checks all keys of a kind in records of one view; returns those that it checked. */
    private Set<String> check(Kind kind, String selector, int view) {
        Set<String> checked = new TreeSet<>();
        List<RecordKeys.Key> keys = TABLE.of(kind.name);
        for (RecordKeys.Key key : keys) {
            List<RecordKeys.Target> targets = key.targets().stream().filter(target -> target.in(view)).toList();
            if (targets.isEmpty() || isIdentity(key) || Set.of(selector, ADDED_ONLY).contains(key.name())
                    || RULES.contains(key.name())) {
                continue;
            }
            byte[] stored = Records.patterned(kind.size);
            KeyedValues values = kind.empty.get();
            for (RecordKeys.Key other : keys) {
                if (isIdentity(other)) {
                    set(values, kind, other, "1,17");
                } else if (other.name().equals(selector)) {
                    set(values, kind, other, view);
                    put(stored, other.targets().get(0), view);
                }
            }
            Object value = value(key, targets.get(0));
            set(values, kind, key, value);
            byte[] expected = expected(stored, key, targets, value);
            assertArrayEquals(expected, updated(kind, stored, values), kind.name + ' ' + view + ' ' + key);
            checked.add(key.name());
        }
        return checked;
    }

    private void checkAll(int kindIndex, String selector, int... views) {
        Kind kind = kinds.get(kindIndex);
        Set<String> left = new TreeSet<>();
        TABLE.of(kind.name).forEach(key -> left.add(key.name()));
        left.removeIf(RULES::contains);
        for (int view : views) {
            left.removeAll(check(kind, selector, view));
        }
        TABLE.of(kind.name).stream().filter(ScriptedLayoutTest::isIdentity).forEach(key -> left.remove(key.name()));
        left.removeAll(Set.of(selector, ADDED_ONLY));
        assertEquals(Set.of(), left, "keys that no record took");
    }

    @Test
    void updatesPutEveryValueOfAServiceIntoItsFields() {
        open(lists, 1);
        checkAll(0, "BroadcastType", 2, 5, 7);
    }

    @Test
    void updatesPutEveryValueOfAStreamIntoItsFields() {
        open(streams, 1);
        checkAll(1, "BroadcastMedium", 1, 2, 3);
    }

    @Test
    void updatesPutEveryValueOfANetworkIntoItsFields() {
        open(networks, 1);
        checkAll(2, "", 0);
    }

    @Test
    void updatesPutEveryValueOfASatelliteIntoItsFields() {
        assertEquals(0, satellites.nativeOpen(1));
        checkAll(3, "", 0);
    }

    @Test
    void everyFlagOfAServiceIsInTheTable() {
        Set<String> expected = new TreeSet<>();
        for (RecordKeys.Key key : TABLE.of("service")) {
            if (key.kind().equals("flag")) {
                expected.add(key.name() + ' ' + key.targets().get(0).offset() + ' ' + key.mask());
            }
        }
        Set<String> found = new TreeSet<>();
        for (ServiceFlag flag : ServiceFlag.values()) {
            found.add(flag.key() + ' ' + flag.word.offset() + ' ' + flag.bit);
        }
        assertEquals(expected, found);
    }
}
