package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.ByteBuffer;
import java.nio.ByteOrder;
import java.nio.charset.StandardCharsets;
import java.util.Arrays;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.stream.Collectors;
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
            view.putShort(26 + 2 * i, (short) (60100 + i));
        }
        view.put(38, (byte) 7).put(39, (byte) 200);
        text(40, "Zwei äöü");
        assertEquals(65000, record.recordId());
        assertEquals(0xFFFFFFF0L, record.channelId());
        assertEquals(0x3FFF, record.majorChannelNumber());
        assertEquals(40000, record.serviceId());
        assertEquals(new RecordId(60100, 60101), record.transportStream());
        assertEquals(new RecordId(60102, 60103), record.network());
        assertEquals(new RecordId(60104, 60105), record.satellite());
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
        view.put(40,
                new byte[] {'a', (byte) 0xED, (byte) 0xA0, (byte) 0xBD, (byte) 0xED, (byte) 0xB8, (byte) 0x80, 'b'});
        assertEquals("a\uD83D\uDE00b", record.name());
    }

    @Test
    void describesTheChannelNumbersThatItsBroadcastTypeKeeps() {
        view.putInt(4, 0x00280301);
        for (var expected : List.of(
                List.of(2, "0x00280301 (major 10)"), List.of(7, "0x00280301 (major 10)"),
                List.of(5, "0x00280301 (major 10, minor 3)"), List.of(3, "0x00280301"))) {
            view.put(38, ((Integer) expected.get(0)).byteValue());
            assertEquals("channel id                     " + expected.get(1), line(1));
        }
    }

    @Test
    void describesATextOnOneLine() {
        text(40, "a\nservice id  9\u001B\u0086\u2028b");
        assertEquals("name                           \"a·service id  9···b\"", line(14));
        assertEquals("a\nservice id  9\u001B\u0086\u2028b", record.name());
    }

    @Test
    void namesTheFlagsThatAreSet() {
        view.putInt(8, 0x2 | 0x800 | 0x1).putInt(12, 0x20).putInt(16, 0x400);
        assertEquals(Set.of(ServiceFlag.ACTIVE, ServiceFlag.SCRAMBLED, ServiceFlag.LCN_APPLIED, ServiceFlag.NEW_BY_OPT),
                record.flags());
        assertTrue(record.scrambled());
        assertFalse(record.visible());
    }

    private String line(int index) {
        return record.describe(false).lines().toList().get(index);
    }

    private Set<String> keysOfFlags() {
        return record.flags().stream().map(ServiceFlag::key).collect(Collectors.toSet());
    }

    @Test
    void namesEachFlagByItsBitAlone() {
        Map<Integer, Map<Integer, String>> flagsByOffset = Map.of(
                8, Map.of(0x2, "VnetActive", 0x4, "VnetEpg", 0x8, "VnetVisible", 0x100, "ventChannelBlock",
                        0x200, "VnetNumericSelectable", 0x400, "VnetInbList", 0x800, "VnetScrambled",
                        0x1000, "VnetBackup1", 0x40000, "ventNewServiceByBGM", 0x100000, "VnetBrdcstSvc"),
                12, Map.of(0x4, "VoptUserTmpUnlock", 0x8, "VoptChNameEdited", 0x20, "VoptLcnApplied",
                        0x80, "VoptHdSimulcast", 0x200, "VoptSdtAvailable", 0x400, "VoptChNumEdited",
                        0x800, "VoptPortugalHdSiMulcast", 0x2000, "VoptDeletedByUser",
                        0x400000, "VoptStreamReqBlock", 0x800000, "VoptInteractRestrict"),
                16, Map.of(0x40, "Vopt2SdtActualAvailable", 0x100, "vopt2NewServiceByMonitor",
                        0x200, "Vopt2SvcEitSchedule", 0x400, "vopt2NewServiceBasedOnOPT"));
        flagsByOffset.forEach((offset, flags) -> {
            for (int bit = 0; bit < 32; bit++) {
                view.putInt(offset, 1 << bit);
                String flag = flags.get(1 << bit);
                Set<String> expected = flag == null ? Set.of() : Set.of(flag);
                String which = "bit " + bit + " of the word at " + offset;
                assertEquals(expected, keysOfFlags(), which);
            }
            view.putInt(offset, 0);
        });
    }

    @Test
    void decodesTheSpecificPartByBroadcastType() {
        text(156, "Short");
        view.putShort(174, (short) 0x1833).put(216, (byte) 1).put(214, (byte) 2).putShort(260, (short) 501);
        view.put(284, (byte) 25).put(217, (byte) 26).put(152, (byte) 27);
        view.put(38, (byte) 2);
        assertEquals(List.of(501, 1, 25),
                List.of(record.logicalChannelNumber(), record.freeCaMode(), record.sdtServiceType()));
        view.put(38, (byte) 7);
        assertEquals(List.of(0, 2, 26),
                List.of(record.logicalChannelNumber(), record.freeCaMode(), record.sdtServiceType()));
        view.put(38, (byte) 5);
        assertEquals(27, record.sdtServiceType());
        assertEquals("Short", record.shortName());
        assertEquals(0x1833, record.caSystemId());
    }

    @Test
    void describesTheFieldsThatItsBroadcastTypeHas() {
        view.putInt(8, 0x8).putInt(16, 0x10000).put(38, (byte) 5).put(152, (byte) 27).put(153, (byte) 0xFF);
        text(40, "Five");
        assertEquals(
                """
                record id                      0
                channel id                     0x00000000 (major 0, minor 0)
                network flags                  0x00000008 VnetVisible
                option flags                   0x00000000
                option flags 2                 0x00010000
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

    /** The lines of {@link ServiceRecord#describe} after those that every service has. */
    private String describeSpecificPart() {
        return record.describe(false).lines().skip(15).collect(Collectors.joining("\n", "", "\n"));
    }

    /**
     * Fills what DVB and DTMB services have alike, each number with its own value. The bytes without a name are the
     * middleware's and hold anything, here ones.
     */
    private void fillCommonPart(int broadcastType) {
        Arrays.fill(bytes, (byte) 0xFF);
        view.put(38, (byte) broadcastType);
        text(156, "s".repeat(17));
        view.putShort(174, (short) 0x9811).putInt(176, 0x10004).putInt(180, 0x80000001);
        for (int i = 0; i < 12; i++) {
            view.putShort(184 + 2 * i, (short) (60001 + i));
        }
    }

    private static final String COMMON_PART =
            """
            short name                     "sssssssssssssssss"
            CA system id                   0x9811
            running status                 65540
            linkage descriptors            0x80000001
            CA replacement network id      60001
            CA replacement stream id       60002
            CA replacement service id      60003
            replacement network id         60004
            replacement stream id          60005
            replacement service id         60006
            EIT schedule network id        60007
            EIT schedule stream id         60008
            EIT schedule service id        60009
            HD simulcast network id        60010
            HD simulcast stream id         60011
            HD simulcast service id        60012
            """;

    @Test
    void describesEveryFieldOfADvbService() {
        fillCommonPart(2);
        view.put(216, (byte) 201).put(217, (byte) 202).put(224, (byte) 203).put(259, (byte) 204);
        view.putShort(260, (short) 61001).putShort(262, (short) 61002).putShort(264, (short) 61003);
        view.put(271, (byte) 205).putShort(272, (short) 61004).putShort(274, (short) 61005);
        view.putInt(280, 0x90000002).put(284, (byte) 206);
        text(286, "d".repeat(33));
        view.putInt(324, 0xA0000003);
        text(328, "p".repeat(33));
        view.put(361, (byte) 207);
        view.putShort(362, (short) 61006).putShort(364, (short) 61007).putShort(366, (short) 61008);
        view.put(368, (byte) 208).put(369, (byte) 209).put(370, (byte) 210);
        assertEquals(
                COMMON_PART
                        + """
                        free CA mode                   201
                        CI host shunning mode          202
                        CI tune service                203
                        EIT present/following          204
                        logical channel number         61001
                        original LCN                   61002
                        LCN index                      61003
                        displaying-id flag             205
                        displaying stream id           61004
                        displaying service id          61005
                        component descriptor           0x90000002
                        SDT service type               206
                        DAD information                "ddddddddddddddddddddddddddddddddd"
                        category mask                  0xa0000003
                        service profile name           "ppppppppppppppppppppppppppppppppp"
                        target region level            207
                        target region code 1           61006
                        target region code 2           61007
                        target region code 3           61008
                        SDT stream content             208
                        SDT stream content extension   209
                        SDT stream component type      210
                        """,
                describeSpecificPart());
    }

    @Test
    void describesEveryFieldOfADtmbService() {
        fillCommonPart(7);
        view.put(214, (byte) 211).put(217, (byte) 212);
        assertEquals(
                COMMON_PART
                        + """
                        free CA mode                   211
                        SDT service type               212
                        """,
                describeSpecificPart());
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
        assertEquals("1105 bytes is not a whole number of 552-byte service records",
                assertThrows(IllegalArgumentException.class, () -> ServiceRecord.listOf(new byte[1105])).getMessage());
    }
}
