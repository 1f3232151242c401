package com.velotra.tv.tavro.tool.transponders;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.io.IOException;
import java.nio.charset.Charset;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

class ScanTableTest {
    @TempDir
    Path folder;

    private ScanTable read(Charset charset, String... lines) throws IOException {
        return ScanTable.read(Files.write(folder.resolve("table"), List.of(lines), charset));
    }

    private ScanTable read(String... lines) throws IOException {
        return read(StandardCharsets.UTF_8, lines);
    }

    @Test
    void blocksAreTransponders() throws IOException {
        ScanTable table = read("# a comment", "", "[CHANNEL]", "\tFREQUENCY = 474000000", "  DELIVERY_SYSTEM=DVBT # comment", "[Zwei]", "A = B = C");
        assertEquals(List.of(), table.malformed());
        assertEquals(
                List.of(
                        new ScanTable.Entry(folder.resolve("table"), 3, "CHANNEL", Map.of("FREQUENCY", "474000000", "DELIVERY_SYSTEM", "DVBT")),
                        new ScanTable.Entry(folder.resolve("table"), 6, "Zwei", Map.of("A", "B = C"))),
                table.entries());
        assertEquals(folder.resolve("table") + ":6", table.entries().get(1).place());
    }

    @Test
    void aHeadingMayHaveANumberSignInItAndACommentBehindIt() throws IOException {
        assertEquals(
                List.of("C21 # MPE2", "C22"),
                read("[C21 # MPE2]", "[C22] # [not this]").entries().stream().map(ScanTable.Entry::heading).toList());
    }

    @Test
    void aFileThatIsNotUtf8IsReadAsLatin1() throws IOException {
        assertEquals("Köln", read(StandardCharsets.ISO_8859_1, "[Köln]").entries().get(0).heading());
        assertEquals("Köln", read("[Köln]").entries().get(0).heading());
    }

    @Test
    void malformedLinesAreToldWithFileLineAndReasonAndTheRestIsRead() throws IOException {
        ScanTable table = read("A = 1", "[CHANNEL]", "no value", "= 3", "B = 1", "B = 1", "B = 2", "C =", "[open", "C = 4", "[x");
        String file = folder.resolve("table").toString();
        assertEquals(
                List.of(
                        file + ":1: 'A = 1' stands before the first heading",
                        file + ":3: 'no value' is neither a heading nor of the form KEY = VALUE",
                        file + ":4: '= 3' is neither a heading nor of the form KEY = VALUE",
                        file + ":7: B is 2 here and 1 further up; the first counts",
                        file + ":8: C has no value",
                        file + ":9: '[open' is no heading; the lines up to the next one are left out with it",
                        file + ":11: '[x' is no heading; the lines up to the next one are left out with it"),
                table.malformed().stream().map(Object::toString).toList());
        assertEquals(Map.of("B", "1"), table.entries().get(0).values());
    }

    @Test
    void aHeadingBehindAMalformedOneIsReadAgain() throws IOException {
        ScanTable table = read("[A]", "[open", "B = 1", "[C]", "D = 2");
        assertEquals(List.of(Map.of(), Map.of("D", "2")), table.entries().stream().map(ScanTable.Entry::values).toList());
    }
}
