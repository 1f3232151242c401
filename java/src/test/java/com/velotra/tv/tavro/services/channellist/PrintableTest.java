package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.nio.charset.StandardCharsets;
import org.junit.jupiter.api.Test;

class PrintableTest {
    // Control characters and separators are below 0x2100. Each character there is a text of its own; the others are
    // tested in blocks, which takes a hundredth of the time.
    @Test
    void showsADotForEveryControlCharacterAndLineSeparator() {
        int step = 1;
        for (int first = 0; first < 0x110000; first += step) {
            step = first < 0x2100 ? 1 : 0x100;
            StringBuilder text = new StringBuilder("a");
            StringBuilder expected = new StringBuilder("a");
            for (int c = first; c < first + step; c++) {
                boolean control = c < 0x20 || c >= 0x7F && c <= 0x9F || c == 0x2028 || c == 0x2029
                        || c >= 0x202A && c <= 0x202E || c >= 0x2066 && c <= 0x2069;
                text.appendCodePoint(c);
                expected.appendCodePoint(control ? '·' : c);
            }
            assertEquals(expected + "b", Printable.of(text + "b"), () -> Integer.toHexString(text.codePointAt(1)));
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
