package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.lang.reflect.ParameterizedType;
import java.lang.reflect.Type;
import java.lang.reflect.TypeVariable;
import java.nio.ByteBuffer;
import java.util.Arrays;
import java.util.EnumSet;
import java.util.List;
import java.util.Optional;
import java.util.OptionalInt;
import java.util.Set;
import java.util.TreeSet;
import org.junit.jupiter.api.Test;

/** Flags, fields, identifiers and failures have types of their own. */
class TypedValuesTest {
    @Test
    void aViewAcceptsOnlyTheFieldsOfItsKind() throws Exception {
        TypeVariable<?> fieldType = RecordView.class.getTypeParameters()[0];
        for (String accessor : List.of("value", "text")) {
            List<Type> taken = Arrays.stream(RecordView.class.getMethods())
                    .filter(method -> method.getName().equals(accessor))
                    .map(method -> method.getGenericParameterTypes()[0])
                    .toList();
            assertEquals(List.of(fieldType), taken, accessor);
        }
        assertEquals(ServiceField.class, fieldsOf(ServiceRecord.class));
        assertEquals(TransportStreamField.class, fieldsOf(TransportStreamRecord.class));
    }

    /** A view of satellite records, whose position is the only field that can be negative. */
    private static final class Satellite extends RecordView<SatelliteField> {
        Satellite(byte[] record) {
            super(ByteBuffer.wrap(record));
        }

        @Override
        List<SatelliteField> fields() {
            return List.of(SatelliteField.ORBITAL_POSITION, SatelliteField.LNB_LOW_FREQUENCY);
        }
    }

    @Test
    void onlySignedFieldsHaveNegativeValues() {
        byte[] record = new byte[412];
        Arrays.fill(record, (byte) 0xFF);
        Satellite satellite = new Satellite(record);
        assertEquals(-1, satellite.value(SatelliteField.ORBITAL_POSITION));
        assertEquals(65535, satellite.value(SatelliteField.LNB_LOW_FREQUENCY));
        assertEquals(
                List.of("orbital position               -1", "low band oscillator            65535"),
                satellite.describe(false).lines().toList());
    }

    private static Type fieldsOf(Class<?> view) {
        return ((ParameterizedType) view.getGenericSuperclass()).getActualTypeArguments()[0];
    }

    @Test
    void everyServiceFlagSetsTheKeyThatItNames() {
        for (ServiceFlag flag : ServiceFlag.values()) {
            VltTvChannelInfoBase info = new VltTvChannelInfoBase().put(flag, true);
            assertEquals(Set.of(flag.key()), info.keys());
        }
        assertEquals(0, new VltTvChannelInfoBase().setVnetEpg(true).put(ServiceFlag.EPG, false).vnetEpg);
    }

    @Test
    void satelliteFlagsAreSetReadAndClearedOneByOne() {
        Set<String> keys = new TreeSet<>();
        for (SatelliteFlag flag : SatelliteFlag.values()) {
            VltTvSatelliteInfoBase satellite = new VltTvSatelliteInfoBase();
            satellite.put(flag, true);
            assertEquals(EnumSet.of(flag), satellite.flags());
            keys.addAll(satellite.keys());
            satellite.put(flag, false);
            assertFalse(satellite.has(flag));
        }
        assertEquals(
                Set.of("MaskStatusOn", "LnbSignalDetected", "MaskLnbUniver", "MaskLnbSingcab", "MaskLnbSingcabJess"),
                keys);
        VltTvSatelliteInfoBase satellite = new VltTvSatelliteInfoBase();
        satellite.setMaskStatusOn(1);
        assertTrue(satellite.has(SatelliteFlag.ENABLED));
        satellite.setLnbSignalDetected(1);
        satellite.setMaskLnbUniver(1);
        satellite.setMaskLnbSingcab(1);
        assertEquals(EnumSet.complementOf(EnumSet.of(SatelliteFlag.LNB_SINGLE_CABLE_2)), satellite.flags());
    }

    @Test
    void networkFlagsAreSetReadAndClearedOneByOne() {
        for (NetworkFlag flag : NetworkFlag.values()) {
            VltTvNetworkInfoBase network = new VltTvNetworkInfoBase();
            network.put(flag, true);
            assertEquals(EnumSet.of(flag), network.flags());
            network.put(flag, false);
            assertEquals(Set.of(), network.flags());
        }
        VltTvNetworkInfoBase network = new VltTvNetworkInfoBase();
        network.setNwlFavNetwork(1);
        assertEquals(EnumSet.of(NetworkFlag.FAVORITE), network.flags());
    }

    @Test
    void everyRecordObjectNamesItsRecord() {
        RecordId id = new RecordId(3, 17);
        for (KeyedValues values : List.of(VltTvChannelInfoBase.forRecord(id),
                VltTvTransportStreamInfoBase.forRecord(id),
                VltTvNetworkInfoBase.forRecord(id), VltTvSatelliteInfoBase.forRecord(id))) {
            assertEquals(id, values.id());
            assertEquals(1, values.keys().size());
        }
        for (KeyedValues values : List.of(new VltTvChannelInfoBase(), new VltTvTransportStreamInfoBase(),
                new VltTvNetworkInfo(), new VltTvSatelliteInfo())) {
            assertNull(values.id());
        }
        VltTvSatelliteInfoBase malformed = new VltTvSatelliteInfoBase();
        malformed.setRecId("3,");
        assertThrows(IllegalArgumentException.class, malformed::id);
    }

    @Test
    void aFailureNamesKindListRecordStatusAndRemedy() {
        ChannelListException list = ChannelListException.ofList(ListKind.NETWORK, 7, -22, "clean network list 7",
                "see the log");
        assertEquals("cannot clean network list 7 (status -22); see the log", list.getMessage());
        assertEquals("cannot clean network list 7 (status -22)", list.problem());
        assertEquals(List.of(ListKind.NETWORK, OptionalInt.of(7), Optional.empty(), -22),
                List.of(list.kind(), list.listId(), list.recordId(), list.status()));
        RecordId id = new RecordId(3, 17);
        ChannelListException record = ChannelListException.ofRecord(ListKind.SATELLITE, id, 0, "update satellite 3,17",
                "is it there?");
        assertEquals("cannot update satellite 3,17; is it there?", record.getMessage());
        assertEquals(List.of(OptionalInt.of(3), Optional.of(id)), List.of(record.listId(), record.recordId()));
        ChannelListException several = ChannelListException.ofList(ListKind.SATELLITE, null, -22, "update 2 satellites",
                "see the log");
        assertEquals(OptionalInt.empty(), several.listId());
    }
}
