package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.ByteBuffer;
import java.nio.ByteOrder;
import java.nio.charset.StandardCharsets;
import java.util.List;
import java.util.Set;
import org.junit.jupiter.api.Test;

class ServiceRecordTest {
    private final byte[] bytes = new byte[552];
    private final ByteBuffer view = ByteBuffer.wrap(bytes).order(ByteOrder.LITTLE_ENDIAN);
    private final ServiceRecord record = new ServiceRecord(bytes);

    private void text(int offset, String text) {
        view.put(offset, text.getBytes(StandardCharsets.UTF_8));
    }

    @Test
    void decodesTheHeader() {
        view.putShort(0, (short) 65000).putInt(4, -16).putShort(24, (short) 40000);
        for (int i = 0; i < 6; i++) {
            view.putShort(26 + 2 * i, (short) (100 + i));
        }
        view.put(38, (byte) 7).put(39, (byte) 200);
        text(40, "Zwei äöü");
        assertEquals(65000, record.recordId());
        assertEquals(0xFFFFFFF0L, record.channelId());
        assertEquals(0x3FFF, record.majorChannelNumber());
        assertEquals(40000, record.serviceId());
        assertEquals(new RecordId(100, 101), record.transportStream());
        assertEquals(new RecordId(102, 103), record.network());
        assertEquals(new RecordId(104, 105), record.satellite());
        assertEquals(7, record.broadcastType());
        assertEquals(200, record.serviceType());
        assertEquals("Zwei äöü", record.name());
    }

    @Test
    void readsATextWithoutATerminatorToTheEndOfItsField() {
        text(40, "x".repeat(70));
        assertEquals("x".repeat(65), record.name());
    }

    @Test
    void readsModifiedUtf8WithCharactersBeyondTheBasicPlane() {
        view.put(40, new byte[] {'a', (byte) 0xED, (byte) 0xA0, (byte) 0xBD, (byte) 0xED, (byte) 0xB8, (byte) 0x80, 'b'});
        assertEquals("a\uD83D\uDE00b", record.name());
    }

    @Test
    void describesTheChannelNumbersThatItsBroadcastTypeKeeps() {
        view.putInt(4, 0x00280301);
        for (var expected : List.of(
                List.of(2, "0x00280301 (major 10)"), List.of(7, "0x00280301 (major 10)"),
                List.of(5, "0x00280301 (major 10, minor 3)"), List.of(3, "0x00280301"))) {
            view.put(38, ((Integer) expected.get(0)).byteValue());
            assertEquals("channel id                     " + expected.get(1), record.describe(false).lines().toList().get(1));
        }
    }

    @Test
    void describesATextOnOneLine() {
        text(40, "a\nservice id  9\u001B\u0086\u2028b");
        assertEquals("name                           \"a·service id  9···b\"", record.describe(false).lines().toList().get(14));
        assertEquals("a\nservice id  9\u001B\u0086\u2028b", record.name());
    }

    @Test
    void namesTheFlagsThatAreSet() {
        view.putInt(8, 0x2 | 0x800 | 0x1).putInt(12, 0x20).putInt(16, 0x400);
        assertEquals(Set.of("VnetActive", "VnetScrambled"), record.networkFlags());
        assertEquals(Set.of("VoptLcnApplied", "vopt2NewServiceBasedOnOPT"), record.optionFlags());
        assertTrue(record.scrambled());
        assertFalse(record.visible());
    }

    @Test
    void decodesTheSpecificPartByBroadcastType() {
        text(156, "Short");
        view.putShort(174, (short) 0x1833).put(216, (byte) 1).put(214, (byte) 2).putShort(260, (short) 501);
        view.put(284, (byte) 25).put(217, (byte) 26).put(152, (byte) 27);
        view.put(38, (byte) 2);
        assertEquals(List.of(501, 1, 25), List.of(record.logicalChannelNumber(), record.freeCaMode(), record.sdtServiceType()));
        view.put(38, (byte) 7);
        assertEquals(List.of(0, 2, 26), List.of(record.logicalChannelNumber(), record.freeCaMode(), record.sdtServiceType()));
        view.put(38, (byte) 5);
        assertEquals(27, record.sdtServiceType());
        assertEquals("Short", record.shortName());
        assertEquals(0x1833, record.caSystemId());
    }

    @Test
    void describesTheFieldsThatItsBroadcastTypeHas() {
        view.putInt(8, 0x8).put(38, (byte) 5).put(152, (byte) 27);
        text(40, "Five");
        assertEquals(
                """
                record id                      0
                channel id                     0x00000000 (major 0, minor 0)
                network flags                  0x00000008 VnetVisible
                option flags                   0x00000000
                option flags 2                 0x00000000
                service id                     0
                transport stream list          0
                transport stream record        0
                network list                   0
                network record                 0
                satellite list                 0
                satellite record               0
                broadcast type                 5
                service type                   0
                name                           "Five"
                SDT service type               27
                """,
                record.describe(false));
        List<String> hex = record.describe(true).lines().skip(16).toList();
        assertEquals(35, hex.size());
        assertEquals("0020  00 00 00 00 00 00 05 00 46 69 76 65 00 00 00 00  ........Five....", hex.get(2));
        assertEquals("0220  00 00 00 00 00 00 00 00                          ........", hex.get(34));
    }

    @Test
    void viewsOneRecordOrManyAndRefusesOtherLengths() {
        byte[] two = new byte[1104];
        two[0] = 1;
        two[552] = 2;
        List<ServiceRecord> records = ServiceRecord.listOf(two);
        assertEquals(List.of(1, 2), records.stream().map(ServiceRecord::recordId).toList());
        assertEquals(552, records.get(1).bytes().length);
        assertEquals(2, records.get(1).bytes()[0]);
        assertArrayEquals(bytes, record.bytes());
        assertEquals(List.of(), ServiceRecord.listOf(new byte[0]));
        assertEquals("a service record has 552 bytes, not 551",
                assertThrows(IllegalArgumentException.class, () -> new ServiceRecord(new byte[551])).getMessage());
        assertEquals("service records have 552 bytes each; 1105 is no multiple of it",
                assertThrows(IllegalArgumentException.class, () -> ServiceRecord.listOf(new byte[1105])).getMessage());
    }
}
