package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;

import java.nio.file.Path;
import java.util.List;
import java.util.Optional;
import java.util.Set;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** Transport stream and network lists over the workstation's platform. */
class HostCompanionsTest {
    private final VltTvTransportStreamList streams = VltTvTransportStreamList.getInstance();
    private final VltTvNetworkList networks = VltTvNetworkList.getInstance();

    @AfterEach
    void removeLists() {
        for (TvList kind : List.of(streams, networks)) {
            for (int id = 1; id <= 3; id++) {
                if (kind.exists(id)) {
                    kind.delete(id);
                }
            }
        }
    }

    private static VltTvTransportStreamInfoBase stream(int transportStreamId, int satelliteRecord) {
        return new VltTvTransportStreamInfoBase()
                .setBroadcastMedium(TransportStreamRecord.SATELLITE)
                .setTransportStreamId(transportStreamId)
                .setTslSatlRecId(new RecordId(1, satelliteRecord));
    }

    private static VltTvNetworkInfoBase network(int networkId, String name) {
        VltTvNetworkInfoBase info = new VltTvNetworkInfoBase();
        info.setNwlNetworkId(networkId);
        info.setNetworkName(name);
        return info;
    }

    @Test
    void transportStreamsAreAddedReadFilteredUpdatedAndRemoved() {
        streams.open(1);
        RecordId one = streams.add(1, stream(1101, 4));
        streams.add(1, stream(1102, 5));
        RecordId three = streams.add(1, stream(1103, 4));
        assertEquals(List.of(1101, 1103), streams.bySatellite(new RecordId(1, 4)).stream()
                .map(TransportStreamRecord::transportStreamId).toList());
        assertEquals(List.of(), streams.bySatellite(new RecordId(1, 9)));

        streams.update(1, new VltTvTransportStreamInfoBase().setTslIdTslRecId(one).setFrequency(11493000).setStandard(6)
                .setBroadcastMedium(TransportStreamRecord.SATELLITE));
        TransportStreamRecord updated = streams.get(one).orElseThrow();
        assertEquals(List.of(11493000L, 2L, 1101L),
                List.of(updated.frequency(), (long) updated.mode(), (long) updated.transportStreamId()));

        streams.remove(one);
        assertEquals(Optional.empty(), streams.get(one));
        streams.close(1);
        streams.remove(three);
        streams.close(1);
        streams.remove(1, new RecordId(9, 2));
        assertEquals(List.of(), streams.getAll(1));
        assertThrows(ChannelListException.class, () -> streams.remove(three), "there is no such record");
        assertThrows(ChannelListException.class, () -> streams.remove(new RecordId(2, 1)), "there is no such list");
        assertFalse(streams.exists(2));
    }

    @Test
    void transportStreamListsAreStoredLoadedAndCopied(@TempDir Path folder) {
        streams.open(1);
        for (int i = 0; i < 50; i++) {
            streams.add(1, stream(i, 1));
        }
        String file = folder.resolve("tsl").toString();
        streams.store(1, file);
        streams.open(2, file);
        assertArrayEquals(streams.getAllBytes(1), streams.getAllBytes(2));
        streams.open(3);
        assertEquals(new RecordId(3, 50), streams.add(3, new RecordId(1, 50)));
        TransportStreamRecord copy = streams.get(new RecordId(3, 50)).orElseThrow();
        assertEquals(3, copy.satellite().listId());
        assertEquals(3, copy.network().listId());
    }

    @Test
    void networksAreAddedReadWholeOrByKeyUpdatedAndRemoved() {
        networks.open(1);
        RecordId one = networks.add(1, network(1, "Eins"));
        networks.add(1, network(85, "Zwei"));
        assertEquals(List.of("Eins", "Zwei"), networks.getAll(1).stream().map(n -> n.getNetworkName()).toList());
        VltTvNetworkInfo named = networks.get(one, List.of("NetworkName")).orElseThrow();
        assertEquals(List.of("NetworkName"), List.copyOf(named.keys()));

        VltTvNetworkInfoBase favorite = VltTvNetworkInfoBase.forRecord(one);
        favorite.put(NetworkFlag.FAVORITE, true);
        networks.update(1, favorite);
        assertEquals(Set.of(NetworkFlag.FAVORITE), networks.get(one).orElseThrow().flags());
        assertEquals("Eins", networks.get(one).orElseThrow().getNetworkName());

        networks.remove(one);
        assertEquals(Optional.empty(), networks.get(one));
        assertEquals(1, networks.getAll(1).size());
    }

    @Test
    void aListThatDoesNotExistIsAnEmptyListAndIsNotCreated() {
        assertEquals(List.of(), streams.getAll(3));
        assertEquals(List.of(), networks.getAll(3));
        assertFalse(streams.exists(3));
        assertFalse(networks.exists(3));
    }

    @Test
    void updatesRefuseMalformedIdentifiersBeforeAnyChange() {
        networks.open(1);
        RecordId one = networks.add(1, network(1, "Eins"));
        VltTvNetworkInfoBase good = new VltTvNetworkInfoBase();
        good.setNwlIdNwlRecId(one.toString());
        good.setNetworkName("Changed");
        VltTvNetworkInfoBase bad = new VltTvNetworkInfoBase();
        bad.setNwlIdNwlRecId("1,");
        IllegalArgumentException refused =
                assertThrows(IllegalArgumentException.class, () -> networks.updateAll(1, List.of(good, bad)));
        assertEquals("'1,' is not a record identifier; write list and record as in 3,17", refused.getMessage());
        assertThrows(IllegalArgumentException.class, () -> networks.update(1, bad));
        assertEquals("Eins", networks.get(one).orElseThrow().getNetworkName());
    }
}
