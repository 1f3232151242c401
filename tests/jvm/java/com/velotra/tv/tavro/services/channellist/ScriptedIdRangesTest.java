package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertInstanceOf;
import static org.junit.jupiter.api.Assertions.assertNotEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.lang.reflect.InvocationTargetException;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.stream.Stream;
import org.junit.jupiter.api.DynamicTest;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.TestFactory;
import org.junit.jupiter.api.function.Executable;

/** Ids out of range are refused before any native is called, by every public method of every list class. */
class ScriptedIdRangesTest extends SatellitePlatform {
    private static final String LIST = "list id %d is out of range; list ids are 1 to 65535";
    private static final String RECORD = "record id %d is out of range; record ids are 0 to 65534";
    private static final String STREAM = "transport stream id %d is out of range; transport stream ids are 0 to 65535";
    private static final String NETWORK = "network id %d is out of range; network ids are 0 to 65535";

    private List<TvList> kinds() {
        return List.of(lists, streams, networks, satellites);
    }

    private static List<Method> publicMethods(TvList list) {
        return Arrays.stream(list.getClass().getMethods())
                .filter(method -> TvList.class.isAssignableFrom(method.getDeclaringClass()))
                .filter(method -> !Modifier.isStatic(method.getModifiers()) && !method.isBridge())
                .filter(method -> method.getParameterCount() > 0)
                .toList();
    }

    /** What the number in that place of a method's parameters is, as the message about it says. */
    private static String rangeOf(Method method, int parameter) {
        if (parameter == 0 || method.getName().equals("copy")) {
            return LIST;
        }
        return switch (method.getName()) {
            case "byTransportStream" -> STREAM;
            case "byNetwork" -> NETWORK;
            default -> RECORD;
        };
    }

    /** Values out of range for one parameter, with the messages that they get. */
    private static Map<Object, String> refused(TvList list, Method method, int parameter) {
        Class<?> type = method.getParameterTypes()[parameter];
        Map<Object, String> values = new LinkedHashMap<>();
        if (type == int.class) {
            String range = rangeOf(method, parameter);
            Stream.of(-1, 65536, 70000, Integer.MIN_VALUE, Integer.MAX_VALUE)
                    .forEach(id -> values.put(id, range.formatted(id)));
            if (range.equals(LIST)) {
                values.put(0, LIST.formatted(0));
            } else if (range.equals(RECORD)) {
                values.put(65535, RECORD.formatted(65535));
                values.put(65541, RECORD.formatted(65541));
            }
        } else if (type == RecordId.class) {
            refusedIdentifiers(true).forEach((id, message) -> values.put(RecordId.parse(id), message));
        } else if (KeyedValues.class.isAssignableFrom(type) && !method.getName().equals("add")) {
            refusedIdentifiers(list instanceof VltTvSatelliteList)
                    .forEach((id, message) -> values.put(info(list, id), message));
        } else if (type == List.class && method.getName().equals("updateAll")) {
            refusedIdentifiers(list instanceof VltTvSatelliteList)
                    .forEach((id, message) -> values.put(List.of(info(list, "1,1"), info(list, id)), message));
        }
        return values;
    }

    /** Identifiers of no record; {@code withLists}: their list part counts. */
    private static Map<String, String> refusedIdentifiers(boolean withLists) {
        Map<String, String> identifiers = new LinkedHashMap<>();
        for (int record : new int[] {65535, 65541, 70000}) {
            identifiers.put("1," + record, RECORD.formatted(record));
        }
        for (int list : withLists ? new int[] {0, 65536, 70000} : new int[0]) {
            identifiers.put(list + ",1", LIST.formatted(list));
        }
        return identifiers;
    }

    /** An object of the kind that updates of the list take, for that record. */
    private static KeyedValues info(TvList list, String identifier) {
        if (list instanceof VltTvChannelList) {
            return new VltTvChannelInfoBase().setSvlIdSvlRecId(RecordId.parse(identifier));
        }
        if (list instanceof VltTvTransportStreamList) {
            return new VltTvTransportStreamInfoBase().setTslIdTslRecId(RecordId.parse(identifier));
        }
        if (list instanceof VltTvNetworkList) {
            VltTvNetworkInfoBase network = new VltTvNetworkInfoBase();
            network.setNwlIdNwlRecId(identifier);
            return network;
        }
        return named(identifier);
    }

    /** Arguments in range: at the lowest end of every range, or at the highest. */
    private static Object[] accepted(TvList list, Method method, boolean highest) {
        Class<?>[] types = method.getParameterTypes();
        Object[] arguments = new Object[types.length];
        for (int i = 0; i < types.length; i++) {
            String range = types[i] == int.class ? rangeOf(method, i) : "";
            String identifier = highest ? "65535,65534" : "1,0";
            if (types[i] == int.class) {
                arguments[i] = highest ? range.equals(RECORD) ? 65534 : 65535 : range.equals(LIST) ? 1 : 0;
            } else if (types[i] == RecordId.class) {
                arguments[i] = RecordId.parse(identifier);
            } else if (types[i] == String.class) {
                arguments[i] = "/data/list";
            } else if (types[i] == List.class) {
                arguments[i] = method.getName().equals("updateAll") ? List.of(info(list, identifier)) : List.of();
            } else {
                arguments[i] = info(list, identifier);
            }
        }
        return arguments;
    }

    /** What the call throws, or null. */
    private static Throwable thrown(TvList list, Method method, Object[] arguments) throws IllegalAccessException {
        try {
            method.invoke(list, arguments);
            return null;
        } catch (InvocationTargetException e) {
            return e.getCause();
        }
    }

    private static String nameOf(TvList list, Method method) {
        return list.getClass().getSimpleName() + '.' + method.getName() + Arrays.toString(method.getParameterTypes());
    }

    @TestFactory
    Stream<DynamicTest> everyMethodRefusesIdsOutOfRangeBeforeAnyNative() {
        List<DynamicTest> tests = new ArrayList<>();
        for (TvList list : kinds()) {
            for (Method method : publicMethods(list)) {
                tests.add(DynamicTest.dynamicTest(nameOf(list, method), () -> {
                    Script.reset();
                    int refused = 0;
                    for (int i = 0; i < method.getParameterCount(); i++) {
                        for (Map.Entry<Object, String> bad : refused(list, method, i).entrySet()) {
                            Object[] arguments = accepted(list, method, false);
                            arguments[i] = bad.getKey();
                            Throwable thrown = thrown(list, method, arguments);
                            assertInstanceOf(IllegalArgumentException.class, thrown, Arrays.toString(arguments));
                            assertEquals(bad.getValue(), thrown.getMessage());
                            refused++;
                        }
                    }
                    assertNotEquals(0, refused, "no parameter that could be out of range");
                    assertJournal();
                }));
            }
        }
        assertTrue(tests.size() > 4 * 15, tests.size() + " methods");
        return tests.stream();
    }

    @TestFactory
    Stream<DynamicTest> everyMethodTakesTheEndsOfTheRangesToTheNatives() {
        return kinds().stream().flatMap(list -> publicMethods(list).stream().map(method -> DynamicTest.dynamicTest(
                nameOf(list, method), () -> {
                    for (boolean highest : new boolean[] {false, true}) {
                        list.native_close(highest ? 65535 : 1);
                        Script.reset();
                        Throwable thrown = thrown(list, method, accepted(list, method, highest));
                        // Natives may refuse them, as removals from transport stream lists do with record 0.
                        boolean refused = thrown instanceof ChannelListException;
                        assertTrue(refused || thrown == null && Script.lines().length != 0, String.valueOf(thrown));
                    }
                })));
    }

    @Test
    void identifiersOfUpdatesMayLeaveTheListOut() {
        open(lists, 1);
        lists.update(1, new VltTvChannelInfoBase().setSvlIdSvlRecId(new RecordId(0, 17)));
        assertEquals(1, Script.linesWith("x_svl_get_rec(0x10001, 17)").size());
    }

    @Test
    void referencesToOtherRecordsHaveSixteenBitsAndMayBeNone() {
        Script.reset();
        for (RecordId bad : List.of(new RecordId(65536, 1), new RecordId(70000, 1), new RecordId(1, 65536))) {
            String message = bad.listId() > 65535
                    ? "list id " + bad.listId() + " is out of range; list ids are 0 to 65535"
                    : "record id 65536 is out of range; record ids are 0 to 65535";
            for (VltTvChannelInfoBase info : List.of(
                    new VltTvChannelInfoBase().setTslRecId(bad), new VltTvChannelInfoBase().setSatlRecId(bad))) {
                for (Executable call : List.<Executable>of(
                        () -> lists.add(1, info), () -> lists.update(1, info),
                        () -> lists.updateAll(1, List.of(info)))) {
                    assertEquals(message, assertThrows(IllegalArgumentException.class, call).getMessage());
                }
            }
            for (VltTvTransportStreamInfoBase info : List.of(
                    new VltTvTransportStreamInfoBase().setTslNwlRecId(bad), new VltTvTransportStreamInfoBase()
                    .setTslSatlRecId(bad))) {
                for (Executable call : List.<Executable>of(
                        () -> streams.add(1, info), () -> streams.update(1, info),
                        () -> streams.updateAll(1, List.of(info)))) {
                    assertEquals(message, assertThrows(IllegalArgumentException.class, call).getMessage());
                }
            }
        }
        assertJournal();
        open(lists, 1);
        Script.reset();
        lists.updateAll(1, List.of(new VltTvChannelInfoBase().setSvlIdSvlRecId(new RecordId(1, 17))
                .setTslRecId(new RecordId(0, 0)).setSatlRecId(new RecordId(65535, 65535))));
        assertEquals(1, Script.linesWith("x_svl_get_rec(0x10001, 17)").size());
    }
}
