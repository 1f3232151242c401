package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNotNull;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.util.ArrayList;
import java.util.Arrays;
import java.util.Collections;
import java.util.List;
import java.util.function.IntFunction;
import java.util.function.Supplier;
import java.util.function.ToIntBiFunction;
import java.util.stream.IntStream;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;

/**
 * How many local references the natives hold that walk a list or a list of keys: a small number, however long the list
 * is. Android before version 8 ends a process whose native holds more than 512.
 */
class ScriptedReferencesTest extends SatellitePlatform {
    /**
     * The most local references that any of these natives may hold at once; reading networks by their names needs as
     * many.
     */
    private static final int MOST = 9;

    private static final int FEW = 10;
    private static final int MANY = 60;

    private static final int SERVICE_TYPE_AT = 38; // e_brdcst_type
    private static final List<Integer> BROADCAST_TYPES = List.of(2, 3, 5, 7, 0); // DVB, type 3, type 5, DTMB, unknown
    private static final List<Integer> MEDIA = List.of(1, 2, 3, 0); // terrestrial, cable, satellite, unknown

    /** What a test found wrong, so that one failing run shows all. */
    private final List<String> findings = new ArrayList<>();

    @BeforeEach
    void openListOneOfEachKind() {
        open(lists, 1);
        open(streams, 1);
        open(networks, 1);
        open(1);
    }

    @AfterEach
    void nothingWasFound() {
        assertEquals("", String.join("\n", findings));
    }

    // Reading lists.

    @Test
    void readingServicesHoldsTheArrayAlone() {
        byte[] stream = Records.with16(new byte[18], 16, 1101);
        byte[] network = Records.with16(new byte[12], 10, 8468);
        assertExactly(1, size -> {
            answerServices(size, Records.patterned());
            return () -> assertEquals(size * ServiceRecord.SIZE, lists.native_getSvlInfoList(1).length);
        });
        assertExactly(1, size -> {
            answerServices(size, Records.patterned());
            Script.always("x_tsl_get_rec", stream);
            return () ->
                    assertEquals(size * ServiceRecord.SIZE, lists.native_getInfoListByTransportStream(1, 1101).length);
        });
        assertExactly(1, size -> {
            answerServices(size, Records.patterned());
            Script.always("x_nwl_get_rec", network);
            return () -> assertEquals(size * ServiceRecord.SIZE, lists.native_getInfoListByNetwork(1, 8468).length);
        });
        assertExactly(1, size -> {
            Script.always("x_svl_get_num_rec_by_ts", 0, size);
            return () ->
                    assertEquals(size * ServiceRecord.SIZE, lists.native_getInfoListByTransportStreamRecord(1, 1)
                            .length);
        });
    }

    @Test
    void readingTransportStreamsHoldsTheArrayAlone() {
        assertExactly(1, size -> {
            Script.always("x_tsl_get_num_recs", 0, size);
            return () -> assertEquals(size * TransportStreamRecord.SIZE, streams.native_getInfoList(1).length);
        });
        assertExactly(1, size -> {
            Script.always("x_tsl_get_num_rec_by_sat", 0, size);
            return () ->
                    assertEquals(size * TransportStreamRecord.SIZE, streams.native_getInfoListBySatellite(1, 1).length);
        });
    }

    @Test
    void readingNetworksHoldsTheSameForAListOfAnyLength() {
        for (List<String> keys : keyLists(new VltTvNetworkInfoBase())) {
            assertBounded("networks, keys " + keys, size -> {
                Script.always("x_nwl_get_num_rec", 0, size);
                return () -> assertEquals(size, networks.native_getInfoList(1, keys).size());
            });
        }
    }

    @Test
    void readingSatellitesHoldsTheSameForAListOfAnyLength() {
        for (List<String> keys : keyLists(new VltTvSatelliteInfoBase())) {
            assertBounded("satellites, keys " + keys, size -> {
                Script.always("x_satl_get_num_recs", 0, size);
                Script.always("x_satl_get_rec_by_rec_idx", stored);
                return () -> assertEquals(size, satellites.nativeGetInfoList(1, keys).size());
            });
        }
    }

    // Reading by keys.

    @Test
    void readingNetworksHoldsTheSameForAKeyListOfAnyLength() {
        for (String key : FilledObjects.allKeys(new VltTvNetworkInfoBase())) {
            assertBounded("network, key " + key, size -> {
                List<String> keys = Collections.nCopies(size, key);
                return () -> assertNotNull(networks.native_getInfo("1,1", keys));
            });
            assertBounded("networks, key " + key, size -> {
                Script.always("x_nwl_get_num_rec", 0, 3);
                List<String> keys = Collections.nCopies(size, key);
                return () -> assertEquals(3, networks.native_getInfoList(1, keys).size());
            });
        }
    }

    @Test
    void readingSatellitesHoldsTheSameForAKeyListOfAnyLength() {
        for (String key : FilledObjects.allKeys(new VltTvSatelliteInfoBase())) {
            assertBounded("satellite, key " + key, size -> {
                Script.always("x_satl_get_rec", stored);
                List<String> keys = Collections.nCopies(size, key);
                return () -> assertNotNull(satellites.nativeGetInfo("1,1", keys));
            });
            assertBounded("satellites, key " + key, size -> {
                Script.always("x_satl_get_num_recs", 0, 3);
                Script.always("x_satl_get_rec_by_rec_idx", stored);
                List<String> keys = Collections.nCopies(size, key);
                return () -> assertEquals(3, satellites.nativeGetInfoList(1, keys).size());
            });
        }
    }

    // Updating lists.

    @Test
    void updatingServicesHoldsTheSameForAListOfAnyLength() {
        assertBoundedUpdate(lists::native_updateInfoList, List.of(service()));
        assertBoundedUpdate(lists::native_updateInfoList, BROADCAST_TYPES.stream().map(type -> {
            VltTvChannelInfoBase info = FilledObjects.withAll(service());
            info.broadcastType = type;
            return info;
        }).toList());
    }

    @Test
    void updatingTransportStreamsHoldsTheSameForAListOfAnyLength() {
        assertBoundedUpdate(streams::native_updateInfoList, List.of(stream()));
        assertBoundedUpdate(streams::native_updateInfoList, MEDIA.stream().map(medium -> {
            VltTvTransportStreamInfoBase info = FilledObjects.withAll(stream());
            info.broadcastMedium = medium;
            return info;
        }).toList());
    }

    @Test
    void updatingNetworksHoldsTheSameForAListOfAnyLength() {
        assertBoundedUpdate(networks::native_updateInfoList, List.of(network()));
        assertBoundedUpdate(networks::native_updateInfoList, List.of(FilledObjects.withAll(network())));
    }

    @Test
    void updatingSatellitesWithoutNamesHoldsTheSameForAnyLength() {
        assertBoundedUpdate((id, infos) -> satellites.nativeUpdateInfoList(infos), List.of(named("1,1")));
        assertBoundedUpdate((id, infos) -> satellites.nativeUpdateInfoList(infos),
                List.of(FilledObjects.withAll(named("1,1"), "Name")));
    }

    // What the contract keeps for each element; docs/architecture.md lists it.

    @Test
    void updatingSatellitesKeepsTheNameOfEach() {
        VltTvSatelliteInfoBase info = FilledObjects.withAll(named("1,1"));
        assertOneForEachElement(size -> {
            List<VltTvSatelliteInfoBase> infos = Collections.nCopies(size, info);
            return () -> assertEquals(0, satellites.nativeUpdateInfoList(infos));
        });
    }

    @Test
    void updatingTransportStreamsKeepsTheKeyOfEachBadIdentifier() {
        VltTvTransportStreamInfoBase info = stream();
        info.tslIdTslRecId = "none";
        assertOneForEachElement(size -> {
            List<VltTvTransportStreamInfoBase> infos = Collections.nCopies(size, info);
            return () -> assertEquals(0, streams.native_updateInfoList(1, infos));
        });
    }

    // One record with one value and with all.

    @Test
    void writingOneRecordHoldsFewReferencesForAnyNumberOfKeys() {
        for (int type : BROADCAST_TYPES) {
            Script.always("x_svl_get_rec", Records.with8(new byte[ServiceRecord.SIZE], SERVICE_TYPE_AT, type));
            for (VltTvChannelInfoBase info : List.of(service(), FilledObjects.withAll(service()))) {
                info.broadcastType = type;
                assertFew("service of type " + type, () -> lists.native_updateInfo(1, info) == 0);
                assertFew("new service of type " + type, () -> lists.nativeAdd(1, info).equals("1,1"));
            }
        }
        for (int medium : MEDIA) {
            for (VltTvTransportStreamInfoBase info : List.of(stream(), FilledObjects.withAll(stream()))) {
                info.broadcastMedium = medium;
                assertFew("stream of medium " + medium, () -> streams.native_updateInfo(1, info) == 0);
                assertFew("new stream of medium " + medium, () -> !streams.nativeAdd(1, info).isEmpty());
            }
        }
        for (VltTvNetworkInfoBase info : List.of(network(), FilledObjects.withAll(network()))) {
            assertFew("network", () -> networks.native_updateInfo(1, info) == 0);
            assertFew("new network", () -> !networks.nativeAdd(1, info).isEmpty());
        }
        for (VltTvSatelliteInfoBase info : List.of(named("1,1"), FilledObjects.withAll(named("1,1")))) {
            assertFew("satellite", () -> satellites.nativeUpdateInfo(info) == 0);
            assertFew("new satellite", () -> !satellites.nativeAdd(1, info).isEmpty());
        }
    }

    @Test
    void readingOneRecordHoldsFewReferencesForAnyNumberOfKeys() {
        assertFew("service", () -> lists.native_getSvlInfo("1,1").length == ServiceRecord.SIZE);
        assertFew("stream", () -> streams.native_getInfo("1,1").length == TransportStreamRecord.SIZE);
        for (List<String> keys : keyLists(new VltTvNetworkInfoBase())) {
            assertFew("network, keys " + keys, () -> networks.native_getInfo("1,1", keys) != null);
        }
        Script.always("x_satl_get_rec", stored);
        for (List<String> keys : keyLists(new VltTvSatelliteInfoBase())) {
            assertFew("satellite, keys " + keys, () -> satellites.nativeGetInfo("1,1", keys) != null);
        }
    }

    // What the tests share.

    private static JniCalls.Peak peak(int size, IntFunction<Runnable> call) {
        return JniCalls.peak(call.apply(size));
    }

    private void assertExactly(int number, IntFunction<Runnable> call) {
        for (int size : new int[] {FEW, MANY}) {
            JniCalls.Peak peak = peak(size, call);
            expect(peak.number() == number, peak + " for " + size + ", not " + number);
        }
    }

    /** Updates list 1 with lists that repeat some objects. */
    private <T> void assertBoundedUpdate(ToIntBiFunction<Integer, List<T>> update, List<T> repeated) {
        assertBounded("list update, " + repeated.get(0).getClass().getSimpleName(), size -> {
            List<T> infos = IntStream.range(0, size).mapToObj(i -> repeated.get(i % repeated.size())).toList();
            return () -> assertEquals(0, update.applyAsInt(1, infos));
        });
    }

    private void assertBounded(String what, IntFunction<Runnable> call) {
        JniCalls.Peak few = peak(FEW, call);
        JniCalls.Peak many = peak(MANY, call);
        expect(
                few.number() == many.number() && many.number() <= MOST,
                what + ": " + few + " for " + FEW + ", " + many + " for " + MANY + "; at most " + MOST);
    }

    /** For lists so short that the virtual machine's own checks do not warn. */
    private void assertOneForEachElement(IntFunction<Runnable> call) {
        JniCalls.Peak five = peak(5, call);
        JniCalls.Peak fifteen = peak(15, call);
        expect(
                fifteen.number() - five.number() == 10 && five.number() <= 5 + MOST,
                five + " for 5, " + fifteen + " for 15; at most " + MOST + " and one for each");
    }

    private void assertFew(String what, Supplier<Boolean> call) {
        JniCalls.Peak peak = JniCalls.peak(() -> assertTrue(call.get(), what));
        expect(peak.number() <= MOST, what + ": " + peak + "; at most " + MOST);
    }

    private void expect(boolean holds, String finding) {
        if (!holds) {
            findings.add(finding);
        }
    }

    private static void answerServices(int size, byte[] record) {
        Script.always("x_svl_get_num_rec_by_brdcst_type", 0, size);
        Script.always("x_svl_get_rec_by_brdcst_type", record);
    }

    private static VltTvChannelInfoBase service() {
        return new VltTvChannelInfoBase().setSvlIdSvlRecId(new RecordId(1, 1));
    }

    private static VltTvTransportStreamInfoBase stream() {
        return new VltTvTransportStreamInfoBase().setTslIdTslRecId(new RecordId(1, 1));
    }

    private static VltTvNetworkInfoBase network() {
        VltTvNetworkInfoBase info = new VltTvNetworkInfoBase();
        info.setNwlIdNwlRecId("1,1");
        return info;
    }

    /** Null for all values, one key, all keys. */
    private static List<List<String>> keyLists(KeyedValues info) {
        List<String> all = FilledObjects.allKeys(info);
        return Arrays.asList(null, all.subList(0, 1), all);
    }
}
