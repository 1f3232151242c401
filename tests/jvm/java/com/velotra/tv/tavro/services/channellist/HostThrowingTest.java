package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import java.util.List;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;

/** What is stored, over the workstation's platform, when Java methods throw while a native calls them. */
class HostThrowingTest {
    private final VltTvChannelList lists = VltTvChannelList.getInstance();
    private RecordId one;
    private RecordId two;
    private byte[] bytesOfTwo;

    @BeforeEach
    void addTwoServices() {
        lists.open(1);
        one = lists.add(1, new VltTvChannelInfoBase().setServiceId(101).setServiceName("One"));
        two = lists.add(1, new VltTvChannelInfoBase().setServiceId(102).setServiceName("Two"));
        bytesOfTwo = lists.native_getSvlInfo(two.toString());
    }

    @AfterEach
    void theOtherServiceIsAsItWas() {
        assertArrayEquals(bytesOfTwo, lists.native_getSvlInfo(two.toString()));
        lists.delete(1);
    }

    private static VltTvChannelInfoBase changed(String throwingKey, RecordId id) {
        return Throwing.service(throwingKey).setSvlIdSvlRecId(id).setServiceId(201).setServiceName("Uno");
    }

    private List<String> services() {
        return lists.getAll(1).stream().map(service -> service.serviceId() + " " + service.name()).toList();
    }

    @Test
    void anUpdateIsStoredWithoutTheValueWhoseKeyThrew() {
        Throwing.Thrown thrown = assertThrows(Throwing.Thrown.class,
                () -> lists.update(1, changed("ServiceName", one)));
        assertEquals("isContainsKey of ServiceName", thrown.getMessage());
        assertEquals(List.of("201 One", "102 Two"), services());
        lists.update(1, changed("", one));
        assertEquals(List.of("201 Uno", "102 Two"), services());
    }

    @Test
    void anAddIsStoredWithoutTheValueWhoseKeyThrew() {
        assertThrows(Throwing.Thrown.class, () -> lists.add(1, changed("ServiceName", one)));
        assertEquals(List.of("101 One", "102 Two", "201 "), services());
    }

    @Test
    void anUpdateWhoseIdentifierKeyThrewChangesNoOtherRecord() {
        assertThrows(Throwing.Thrown.class, () -> lists.update(1, changed("SvlIdSvlRecId", one)));
        assertEquals(List.of("101 One", "102 Two"), services());
    }

    @Test
    void aListUpdateKeepsTheElementsBeforeTheOneThatThrew() {
        List<VltTvChannelInfoBase> elements = List.of(changed("", one), changed("", two));
        assertThrows(Throwing.Thrown.class,
                () -> lists.native_updateInfoList(1, Throwing.listWithoutElement(1, elements)));
        assertEquals(List.of("201 Uno", "102 Two"), services());
        assertThrows(Throwing.Thrown.class, () -> lists.native_updateInfoList(1, Throwing.listWithoutSize(elements)));
        assertEquals(List.of("201 Uno", "102 Two"), services());
    }
}
