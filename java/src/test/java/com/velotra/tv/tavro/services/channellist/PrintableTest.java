package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.nio.charset.StandardCharsets;
import org.junit.jupiter.api.Test;

class PrintableTest {
    @Test
    void showsADotForEveryControlCharacterAndLineSeparator() {
        for (int c = 0; c < 0x110000; c++) {
            boolean control = c < 0x20 || c >= 0x7F && c <= 0x9F || c == 0x2028 || c == 0x2029;
            String text = Character.toString(c);
            assertEquals(control ? "a·b" : "a" + text + "b", Printable.of("a" + text + "b"), Integer.toHexString(c));
        }
    }

    @Test
    void recordsAndMessagesNeverControlTheTerminal() {
        byte[] bytes = new byte[ServiceRecord.SIZE];
        byte[] name = "Uno\u001b[2J\u0085".getBytes(StandardCharsets.UTF_8);
        System.arraycopy(name, 0, bytes, ServiceField.NAME.offset(), name.length);
        ServiceRecord record = new ServiceRecord(bytes);
        assertEquals("service 0 \"Uno·[2J·\"", record.toString());
        assertEquals("name                           \"Uno·[2J·\"", record.describe(false).lines().toList().get(14));
        assertEquals(-1, record.describe(true).indexOf('\u001b'));
        ChannelListException failure = ChannelListException.ofList(ListKind.SERVICE, 1, -22, "read '\u001b[2J'",
                "see\nthe log");
        assertEquals("cannot read '·[2J' (status -22); see·the log", failure.getMessage());
    }
}
