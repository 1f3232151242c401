package com.velotra.tv.tavro.tool.input;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import java.io.ByteArrayOutputStream;
import java.nio.charset.Charset;
import java.nio.charset.StandardCharsets;
import java.util.ArrayList;
import java.util.List;
import org.junit.jupiter.api.Test;

class SourceTextTest {
    private static final String TEXT = "[Köln]\r\n\tA = 1\n\nB = €\rC = \ud83d\udcfa";
    private static final List<String> LINES = List.of("[Köln]", "\tA = 1", "", "B = €", "C = \ud83d\udcfa");

    private static byte[] bytes(Object... parts) {
        ByteArrayOutputStream all = new ByteArrayOutputStream();
        for (Object part : parts) {
            if (part instanceof byte[] some) {
                all.writeBytes(some);
            } else {
                all.write((Integer) part);
            }
        }
        return all.toByteArray();
    }

    private static byte[] encoded(Charset charset) {
        return TEXT.getBytes(charset);
    }

    @Test
    void utf8IsReadWithAndWithoutAByteOrderMark() {
        assertEquals(LINES, SourceText.lines(encoded(StandardCharsets.UTF_8)));
        assertEquals(LINES, SourceText.lines(bytes(0xEF, 0xBB, 0xBF, encoded(StandardCharsets.UTF_8))));
    }

    @Test
    void utf16IsReadInEitherByteOrderWithAndWithoutAByteOrderMark() {
        assertEquals(LINES, SourceText.lines(encoded(StandardCharsets.UTF_16LE)));
        assertEquals(LINES, SourceText.lines(bytes(0xFF, 0xFE, encoded(StandardCharsets.UTF_16LE))));
        assertEquals(LINES, SourceText.lines(encoded(StandardCharsets.UTF_16BE)));
        assertEquals(LINES, SourceText.lines(bytes(0xFE, 0xFF, encoded(StandardCharsets.UTF_16BE))));
    }

    @Test
    void aByteOrderMarkIsRemovedAtTheBeginningAlone() {
        assertEquals(List.of("a", "\uFEFFb"), SourceText.lines("\uFEFFa\n\uFEFFb".getBytes(StandardCharsets.UTF_8)));
    }

    @Test
    void aLineThatIsNotUtf8IsReadAsLatin1AndTheOthersAsUtf8() {
        assertEquals(
                List.of("Köln", "Zürich", "Graz"),
                SourceText.lines(bytes(
                        "Köln\n".getBytes(StandardCharsets.UTF_8), "Zürich\n".getBytes(StandardCharsets.ISO_8859_1),
                        "Graz".getBytes(StandardCharsets.US_ASCII))));
    }

    @Test
    void aLineEndsWithLfOrCrLfOrCr() {
        assertEquals(List.of("a", "b", "c", "d"), SourceText.lines("a\nb\r\nc\rd".getBytes(StandardCharsets.US_ASCII)));
        assertEquals(List.of("a", "", "b", "", "c"),
                SourceText.lines("a\r\rb\n\nc\r\n".getBytes(StandardCharsets.US_ASCII)));
        assertEquals(List.of("a", "", "b"), SourceText.lines("a\r\n\r\nb\r".getBytes(StandardCharsets.US_ASCII)));
    }

    @Test
    void aFileMayBeEmptyOrHaveOneByte() {
        assertEquals(List.of(), SourceText.lines(new byte[0]));
        assertEquals(List.of("a"), SourceText.lines(bytes((int) 'a')));
        assertEquals(List.of(""), SourceText.lines(bytes((int) '\n')));
        assertEquals(List.of(""), SourceText.lines(bytes(0xEF, 0xBB, 0xBF)));
    }

    @Test
    void linesHaveTheirPlaceAndRefusedOnesTheReason() {
        List<String> taken = new ArrayList<>();
        Source source = ImportFixture.source("table", "  one \t", "", "two", "three");
        List<Malformed> malformed = SourceText.read(source, (place, line) -> {
            if (line.equals("two")) {
                throw new IllegalArgumentException("not today");
            }
            taken.add(place + "=" + line);
        });
        assertEquals(List.of("table:1=  one", "table:2=", "table:4=three"), taken);
        assertEquals(List.of(new Malformed(new Place("table", 3), "not today")), malformed);
        assertEquals("table:3: not today", malformed.get(0).toString());
    }

    @Test
    void aNumberIsReadBetweenItsLimitsInItsRadix() {
        assertEquals(1, SourceText.number("1", 10, 1, 31, "id"));
        assertEquals(31, SourceText.number("1f", 16, 1, 31, "id"));
    }

    @Test
    void aNumberOutOfRangeIsReportedInPrintableForm() {
        for (String text : List.of("0", "20", "", "x", " 1", "99999999999", "\u001b[2J")) {
            IllegalArgumentException refused =
                    assertThrows(IllegalArgumentException.class, () -> SourceText.number(text, 16, 1, 31, "id"));
            assertEquals("id " + Text.excerpt(text) + " is not a number from 1 to 31", refused.getMessage());
        }
    }
}
