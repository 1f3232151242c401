package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.file.Path;
import java.util.List;
import java.util.Map;
import java.util.Optional;
import java.util.OptionalInt;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.function.Executable;
import org.junit.jupiter.api.io.TempDir;

/** The channel list's API over the workstation's platform. */
class HostServicesTest {
    private final VltTvChannelList lists = VltTvChannelList.getInstance();

    @AfterEach
    void removeLists() {
        for (int id = 1; id <= 3; id++) {
            if (lists.exists(id)) {
                lists.delete(id);
            }
        }
    }

    private static VltTvChannelInfoBase service(String name, int serviceId) {
        return new VltTvChannelInfoBase()
                .setBroadcastType(BroadcastType.DVB)
                .setServiceName(name)
                .setServiceId(serviceId)
                .setTslRecId(new RecordId(1, serviceId / 100));
    }

    @Test
    void aListThatWasNeverOpenedDoesNotExistAndAskingCreatesNothing() {
        assertFalse(lists.exists(1));
        assertTrue(lists.getAll(1).isEmpty());
        assertEquals(Optional.empty(), lists.get(new RecordId(1, 1)));
        assertFalse(lists.exists(1));
        lists.open(1);
        assertTrue(lists.exists(1));
    }

    @Test
    void servicesAreAddedReadUpdatedAndRemoved() {
        lists.open(1);
        RecordId one = lists.add(1, service("One", 101));
        RecordId two = lists.add(1, service("Zwei äöü", 102));
        assertEquals(new RecordId(1, 1), one);
        assertEquals(List.of("One", "Zwei äöü"), lists.getAll(1).stream().map(ServiceRecord::name).toList());

        lists.update(1, new VltTvChannelInfoBase().setSvlIdSvlRecId(one).setServiceName("Uno").setVnetVisible(true));
        ServiceRecord updated = lists.get(one).orElseThrow();
        assertEquals("Uno", updated.name());
        assertEquals(101, updated.serviceId());
        assertTrue(updated.visible());

        lists.remove(one);
        assertEquals(Optional.empty(), lists.get(one));
        assertEquals(List.of("Zwei äöü"), lists.getAll(1).stream().map(ServiceRecord::name).toList());
        assertThrows(ChannelListException.class, () -> lists.remove(one));
        lists.remove(1, new RecordId(7, two.recordId()));
        assertTrue(lists.getAll(1).isEmpty());
    }

    @Test
    void filtersChooseByTransportStreamRecord() {
        lists.open(1);
        for (int serviceId : new int[] {101, 202, 102, 203}) {
            lists.add(1, service("S" + serviceId, serviceId));
        }
        assertEquals(List.of(101, 102), lists.byTransportStreamRecord(new RecordId(1, 1)).stream()
                .map(ServiceRecord::serviceId).toList());
        assertEquals(List.of(202, 203), lists.byTransportStreamRecord(new RecordId(1, 2)).stream()
                .map(ServiceRecord::serviceId).toList());
        assertTrue(lists.byTransportStreamRecord(new RecordId(1, 3)).isEmpty());
        assertTrue(lists.byTransportStream(1, 1).isEmpty());
    }

    @Test
    void aListIsCopiedAndARecordIsCopiedUnderItsId() {
        lists.open(1);
        lists.open(2);
        lists.add(1, service("One", 101));
        RecordId two = lists.add(1, service("Two", 102));
        assertEquals(new RecordId(2, 2), lists.add(2, two));
        assertThrows(ChannelListException.class, () -> lists.add(2, two));
        lists.copy(1, 2);
        assertArrayEquals(lists.getAllBytes(1), lists.getAllBytes(2));
        lists.clean(2);
        assertTrue(lists.getAll(2).isEmpty());
        assertEquals(2, lists.getAll(1).size());
    }

    @Test
    void aListIsStoredAndLoadedByteForByte(@TempDir Path folder) {
        lists.open(1);
        for (int i = 0; i < 300; i++) {
            lists.add(1, service("Service " + i, i));
        }
        String file = folder.resolve("list").toString();
        lists.store(1, file);
        lists.open(3, file);
        assertArrayEquals(lists.getAllBytes(1), lists.getAllBytes(3));
        assertEquals(300, lists.getAll(3).size());
    }

    @Test
    void anOpenListThatHasRecordsIsNotLoadedAgain(@TempDir Path folder) {
        lists.open(1);
        lists.add(1, service("One", 101));
        String file = folder.resolve("list").toString();
        lists.store(1, file);
        lists.add(1, service("Two", 102));
        lists.open(1, file);
        assertEquals(2, lists.getAll(1).size());
        lists.clean(1);
        lists.open(1, file);
        assertEquals(List.of("One"), lists.getAll(1).stream().map(ServiceRecord::name).toList());
    }

    @Test
    void manyServicesAreUpdatedTogether() {
        lists.open(1);
        RecordId one = lists.add(1, service("One", 101));
        RecordId two = lists.add(1, service("Two", 102));
        lists.updateAll(1, List.of(
                new VltTvChannelInfoBase().setSvlIdSvlRecId(one).setLogicalChannelNumber(501),
                new VltTvChannelInfoBase().setSvlIdSvlRecId(two).setLogicalChannelNumber(502)));
        assertEquals(List.of(501, 502), lists.getAll(1).stream().map(ServiceRecord::logicalChannelNumber).toList());
    }

    @Test
    void aServiceMovedToAnotherListPointsAtItsCompanions() {
        lists.open(1);
        lists.open(2);
        RecordId one = lists.add(1, service("One", 101));
        lists.add(2, one);
        lists.update(2, one);
        ServiceRecord moved = lists.get(new RecordId(2, one.recordId())).orElseThrow();
        assertEquals(new RecordId(2, 1), moved.transportStream());
        assertEquals(List.of(2, 2), List.of(moved.network().listId(), moved.satellite().listId()));
    }

    @Test
    void failuresAreExceptionsThatNameTheListAndTheStatus() {
        ChannelListException failure = assertThrows(ChannelListException.class, () -> lists.delete(77));
        assertEquals("cannot delete service list 77 (status -22); is there such a list? If so, see the log",
                failure.getMessage());
        assertEquals(List.of(ListKind.SERVICE, OptionalInt.of(77), Optional.empty(), -22),
                List.of(failure.kind(), failure.listId(), failure.recordId(), failure.status()));
        lists.open(1);
        failure = assertThrows(ChannelListException.class, () -> lists.remove(new RecordId(1, 7)));
        assertEquals("cannot remove service 1,7 (status -22)", failure.problem());
        assertEquals(Optional.of(new RecordId(1, 7)), failure.recordId());
        failure = assertThrows(ChannelListException.class,
                () -> lists.update(1, VltTvChannelInfoBase.forRecord(new RecordId(9, 7))));
        assertEquals(Optional.of(new RecordId(1, 7)), failure.recordId());
        failure = assertThrows(ChannelListException.class, () -> lists.add(2, new RecordId(1, 7)));
        assertEquals("cannot copy service 1,7 to list 2", failure.problem());
        lists.open(2);
        RecordId one = lists.add(1, service("One", 1));
        lists.add(2, one);
        failure = assertThrows(ChannelListException.class, () -> lists.add(2, one));
        assertEquals("cannot copy service 1,1 to list 2; are there the record and the list, and is the record id free"
                + " in the list? If so, see the log", failure.getMessage());
        lists.remove(2, one);
        failure = assertThrows(ChannelListException.class, () -> lists.update(2, one));
        assertEquals("cannot replace service 2,1 by service 1,1 (status -22); are there both records? If so, see the"
                + " log", failure.getMessage());
        assertEquals(Optional.of(new RecordId(2, 1)), failure.recordId());
        failure = assertThrows(ChannelListException.class, () -> lists.add(77, service("One", 1)));
        assertEquals("cannot add a service to list 77", failure.problem());
        failure = assertThrows(ChannelListException.class, () -> lists.store(1, "/no\u001bwhere/list"));
        assertEquals("cannot store service list 1 to the file '/no·where/list' (status -22)", failure.problem());
    }

    @Test
    void aNullArgumentIsNamed() {
        Map<String, Executable> calls = Map.of(
                "info", () -> lists.add(1, (VltTvChannelInfoBase) null),
                "infos", () -> lists.updateAll(1, null),
                "path", () -> lists.store(1, null),
                "keys", () -> VltTvNetworkList.getInstance().getAll(1, null),
                "text", () -> RecordId.parse(null));
        calls.forEach((name, call) ->
                assertEquals(name, assertThrows(NullPointerException.class, call, name).getMessage()));
    }

    @Test
    void idsOutOfRangeTouchNoListOrRecord() {
        lists.open(1);
        RecordId one = lists.add(1, service("One", 101));
        byte[] before = lists.getAllBytes(1);
        int list = 65536 + 1;
        RecordId record = new RecordId(1, 65536 + one.recordId());
        VltTvChannelInfoBase named = service("Changed", 102).setSvlIdSvlRecId(record);
        for (Executable call : List.<Executable>of(
                () -> lists.remove(record), () -> lists.remove(1, record), () -> lists.remove(list, one),
                () -> lists.update(1, record), () -> lists.update(1, named), () -> lists.updateAll(1, List.of(named)),
                () -> lists.add(list, service("Two", 102)), () -> lists.clean(list), () -> lists.delete(list),
                () -> lists.copy(2, list), () -> lists.open(70000))) {
            assertThrows(IllegalArgumentException.class, call);
        }
        assertArrayEquals(before, lists.getAllBytes(1));
        assertFalse(lists.exists(70000 - 65536));
    }
}
