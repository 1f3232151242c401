package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import java.util.Arrays;
import java.util.List;
import java.util.function.Function;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.function.Executable;

/**
 * Java methods that throw while a native calls them. The exception reaches Java; what the native does meanwhile is in
 * docs/porting.md. What later methods return while the exception is pending is up to the virtual machine, so no test
 * looks at values that are read after the exception.
 */
class ScriptedThrowingTest extends ScriptedPlatform {
    private final VltTvSatelliteList satellites = VltTvSatelliteList.getInstance();

    /** Bytes of a record. */
    private record Place(int offset, int width) {
        byte[] in(byte[] record) {
            return Arrays.copyOfRange(record, offset, offset + width);
        }
    }

    /**
     * The objects of one list kind. Each carries a value, 7, for a key that is asked before the one that throws, and a
     * value for that one.
     */
    private record Kind(TvList list, String calls, int size, String identifierKey, String throwingKey,
            Function<String, KeyedValues> object, Place before, Place thrown) {
        /** A middleware call on list 1. */
        String call(String name, String rest) {
            return "x_" + calls + "_" + name + "(0x" + (list.kind().ordinal() + 1) + "0001" + rest + ")";
        }
    }

    private static VltTvChannelInfoBase service(String throwing) {
        return Throwing.service(throwing).setSvlIdSvlRecId(new RecordId(1, 17)).setServiceId(7).setServiceName("name");
    }

    private static VltTvTransportStreamInfoBase stream(String throwing) {
        return Throwing.stream(throwing).setTslIdTslRecId(new RecordId(1, 17)).setNetworkId(7).setTransportStreamId(8);
    }

    private static VltTvNetworkInfoBase network(String throwing) {
        VltTvNetworkInfoBase network = Throwing.network(throwing);
        network.setNwlIdNwlRecId("1,17");
        network.setNetworkVersion(7);
        network.setNetworkName("name");
        return network;
    }

    private static VltTvSatelliteInfoBase satellite(String throwing) {
        VltTvSatelliteInfoBase satellite = Throwing.satellite(throwing);
        satellite.setRecId("1,17");
        satellite.setOrbitPosition(7);
        satellite.setName("name");
        return satellite;
    }

    private final List<Kind> kinds = List.of(
            new Kind(lists, "svl", 552, "SvlIdSvlRecId", "ServiceName", ScriptedThrowingTest::service,
                    new Place(24, 2), new Place(40, 4)),
            new Kind(streams, "tsl", 724, "TslIdTslRecId", "TransportStreamId", ScriptedThrowingTest::stream,
                    new Place(12, 2), new Place(16, 2)),
            new Kind(networks, "nwl", 304, "NwlIdNwlRecId", "NetworkName", ScriptedThrowingTest::network,
                    new Place(12, 1), new Place(13, 4)),
            new Kind(satellites, "satl", 412, "RecId", "Name", ScriptedThrowingTest::satellite, new Place(280, 2),
                    new Place(282, 4)));

    @BeforeEach
    void openLists() {
        kinds.forEach(kind -> open(kind.list(), 1));
    }

    private String add(Kind kind, KeyedValues object) {
        return switch (kind.calls()) {
            case "svl" -> lists.nativeAdd(1, (VltTvChannelInfoBase) object);
            case "tsl" -> streams.nativeAdd(1, (VltTvTransportStreamInfoBase) object);
            case "nwl" -> networks.nativeAdd(1, (VltTvNetworkInfoBase) object);
            default -> satellites.nativeAdd(1, (VltTvSatelliteInfoBase) object);
        };
    }

    private int update(Kind kind, KeyedValues object) {
        return switch (kind.calls()) {
            case "svl" -> lists.native_updateInfo(1, (VltTvChannelInfoBase) object);
            case "tsl" -> streams.native_updateInfo(1, (VltTvTransportStreamInfoBase) object);
            case "nwl" -> networks.native_updateInfo(1, (VltTvNetworkInfoBase) object);
            default -> satellites.nativeUpdateInfo((VltTvSatelliteInfoBase) object);
        };
    }

    @SuppressWarnings("unchecked")
    private int updateList(Kind kind, List<? extends KeyedValues> objects) {
        return switch (kind.calls()) {
            case "svl" -> lists.native_updateInfoList(1, (List<VltTvChannelInfoBase>) objects);
            case "tsl" -> streams.native_updateInfoList(1, (List<VltTvTransportStreamInfoBase>) objects);
            case "nwl" -> networks.native_updateInfoList(1, (List<VltTvNetworkInfoBase>) objects);
            default -> satellites.nativeUpdateInfoList((List<VltTvSatelliteInfoBase>) objects);
        };
    }

    private static void assertThrown(String message, Executable call) {
        assertEquals(message, assertThrows(Throwing.Thrown.class, call).getMessage());
    }

    private static List<String> calls() {
        return Arrays.stream(Script.lines()).filter(line -> line.startsWith("x_")).toList();
    }

    private static byte[] littleEndian(int value, int width) {
        byte[] bytes = new byte[width];
        for (int i = 0; i < width; i++) {
            bytes[i] = (byte) (value >>> 8 * i);
        }
        return bytes;
    }

    @Test
    void anAddStoresTheRecordWithoutTheValueWhoseKeyThrew() {
        for (Kind kind : kinds) {
            Script.reset();
            assertThrown("isContainsKey of " + kind.throwingKey(),
                    () -> add(kind, kind.object().apply(kind.throwingKey())));
            byte[] added = Script.lastRecord();
            assertArrayEquals(littleEndian(7, kind.before().width()), kind.before().in(added), kind.calls());
            assertArrayEquals(new byte[kind.thrown().width()], kind.thrown().in(added), kind.calls());
            assertEquals(List.of(kind.call("lock", ""), kind.call("add_rec", ", record"), kind.call("unlock", "")),
                    calls().stream().filter(call -> !call.contains("qry_rec_id")).toList());
        }
    }

    @Test
    void anUpdateStoresTheRecordWithTheOldValueWhoseKeyThrew() {
        for (Kind kind : kinds) {
            Script.reset();
            byte[] stored = Records.patterned(kind.size());
            Script.answer("x_" + kind.calls() + "_get_rec", stored);
            assertThrown("isContainsKey of " + kind.throwingKey(),
                    () -> update(kind, kind.object().apply(kind.throwingKey())));
            byte[] updated = Script.lastRecord();
            assertArrayEquals(littleEndian(7, kind.before().width()), kind.before().in(updated), kind.calls());
            assertArrayEquals(kind.thrown().in(stored), kind.thrown().in(updated), kind.calls());
            assertEquals(List.of(kind.call("get_rec", ", 17"), kind.call("lock", ""),
                    kind.call("update_rec", ", record, 0"), kind.call("unlock", "")), calls());
        }
    }

    @Test
    void anUpdateWhoseIdentifierKeyThrewIsAnUpdateOfRecordZero() {
        for (Kind kind : kinds) {
            Script.reset();
            assertThrown("isContainsKey of " + kind.identifierKey(),
                    () -> update(kind, kind.object().apply(kind.identifierKey())));
            // A satellite's identifier names the list, too; list 0 is opened and then has no recorded handle.
            assertEquals(kind.calls().equals("satl") ? List.of() : List.of(kind.call("get_rec", ", 0")),
                    Script.linesWith("get_rec("));
            assertEquals(Script.linesWith("_lock(").size(), Script.linesWith("_unlock(").size());
        }
    }

    @Test
    void aListUpdateEndsAtTheElementWhoseGetThrewAndUnlocks() {
        for (Kind kind : kinds) {
            Script.reset();
            KeyedValues good = kind.object().apply("");
            assertThrown("get of 1",
                    () -> updateList(kind, Throwing.listWithoutElement(1, List.of(good, good, good))));
            assertEquals(List.of(kind.call("update_rec", ", record, 0")), Script.linesWith("update_rec"));
            assertEquals(1, Script.linesWith("_lock(").size(), kind.calls());
            assertEquals(1, Script.linesWith("_unlock(").size(), kind.calls());
        }
    }

    @Test
    void aListUpdateWhoseSizeThrewUpdatesNothingAndUnlocks() {
        for (Kind kind : kinds) {
            Script.reset();
            assertThrown("size",
                    () -> updateList(kind, Throwing.listWithoutSize(List.of(kind.object().apply("")))));
            assertEquals(kind.calls().equals("satl") ? List.of()
                    : List.of(kind.call("lock", ""), kind.call("unlock", "")), calls());
        }
    }

    @Test
    void aReadByKeysThatThrowReturnsNothingAndUnlocks() {
        Script.always("x_nwl_get_num_rec", 0, 2);
        Script.always("x_satl_get_num_recs", 0, 2);
        List<String> names = List.of("NetworkName", "Name");
        assertThrown("get of 0", () -> networks.native_getInfo("1,17", Throwing.listWithoutElement(0, names)));
        assertThrown("size", () -> networks.native_getInfo("1,17", Throwing.listWithoutSize(names)));
        assertThrown("get of 0", () -> satellites.nativeGetInfo("1,17", Throwing.listWithoutElement(0, names)));
        assertThrown("size", () -> satellites.nativeGetInfo("1,17", Throwing.listWithoutSize(names)));
        for (int index = 0; index < 2; index++) {
            List<String> keys = Throwing.listWithoutElement(index, names);
            assertThrown("get of " + index, () -> networks.native_getInfoList(1, keys));
            assertThrown("get of " + index, () -> satellites.nativeGetInfoList(1, keys));
        }
        for (String calls : List.of("x_nwl_", "x_satl_")) {
            assertEquals(2, Script.linesWith(calls + "read_lock(").size());
            assertEquals(2, Script.linesWith(calls + "read_unlock(").size());
        }
    }
}
