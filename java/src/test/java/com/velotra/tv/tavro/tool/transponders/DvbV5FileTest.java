package com.velotra.tv.tavro.tool.transponders;

import static com.velotra.tv.tavro.tool.input.ImportFixture.source;
import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.tool.input.Malformed;
import com.velotra.tv.tavro.tool.input.Place;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.transponders.DvbV5File.Block;
import java.nio.charset.StandardCharsets;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.Test;

class DvbV5FileTest {
    private static DvbV5File read(String... lines) {
        return DvbV5File.read(source("table", lines));
    }

    private static Place line(int number) {
        return new Place("table", number);
    }

    private static List<String> headings(DvbV5File file) {
        return file.blocks().stream().map(Block::heading).toList();
    }

    @Test
    void blocksHaveAPlaceAHeadingAndValues() {
        DvbV5File file = read(
                "# a comment", "", "[CHANNEL]", "\tFREQUENCY = 474000000", "  DELIVERY_SYSTEM=DVBT # comment",
                "[ Zwei ]", "A = B = C");
        assertEquals(List.of(), file.malformed());
        assertEquals(
                List.of(
                        new Block(line(3), "CHANNEL", Map.of("FREQUENCY", "474000000", "DELIVERY_SYSTEM", "DVBT")),
                        new Block(line(6), "Zwei", Map.of("A", "B = C"))),
                file.blocks());
    }

    @Test
    void blocksAreTranspondersWithTheNamesInTheirHeadings() {
        DvbV5File file = read("[CHANNEL]", "A = 1", "[C21 MPE2]", "B = 2", "[channel]");
        assertEquals(
                List.of(
                        new Transponder(line(1), "", "", Map.of("A", "1")),
                        new Transponder(line(3), "C21 MPE2", "", Map.of("B", "2")),
                        new Transponder(line(5), "", "", Map.of())),
                file.transponders());
    }

    @Test
    void aNamedBlockWithAServiceIdIsAServiceAndNoTransponder() {
        DvbV5File file = read("[Uno]", "SERVICE_ID = 7", "[CHANNEL]", "SERVICE_ID = 8", "[Due]", "A = 1");
        assertEquals(List.of(true, false, false), file.blocks().stream().map(Block::isService).toList());
        assertEquals(
                List.of(
                        new Transponder(line(3), "", "", Map.of("SERVICE_ID", "8")),
                        new Transponder(line(5), "Due", "", Map.of("A", "1"))),
                file.transponders());
    }

    @Test
    void theEndOfTheFileNameIsThePositionOfItsTransponders() {
        DvbV5File file = DvbV5File.read(
                new Source("tables/Uno-5.0W", "Uno-5.0W", "[CHANNEL]".getBytes(StandardCharsets.US_ASCII)));
        assertEquals("S5.0W", file.position());
        assertEquals(List.of(new Transponder(new Place("tables/Uno-5.0W", 1), "", "S5.0W", Map.of())),
                file.transponders());
    }

    @Test
    void aPositionStandsBehindTheLastHyphenOrUnderscore() {
        assertEquals("S19.2E", DvbV5File.positionIn("Astra-19.2E"));
        assertEquals("S1W", DvbV5File.positionIn("Thor_1W"));
        assertEquals("S5.0W", DvbV5File.positionIn("Eutelsat_5-West-A_-5.0W"));
        assertEquals("S5..0W", DvbV5File.positionIn("Uno-5..0W"), "a position that is none is named later");
        for (String none : List.of("", "de-Berlin", "19.2E", "Astra-19.2E.txt", "Astra-19.2e", "Astra-E",
                "Astra-19.2")) {
            assertEquals("", DvbV5File.positionIn(none), none);
        }
    }

    @Test
    void aHeadingMayHaveANumberSignInItAndACommentBehindIt() {
        assertEquals(List.of("C21 # MPE2", "C22"), headings(read("[C21 # MPE2]", "[C22] # [not this]")));
    }

    @Test
    void aLineThatIsNotUtf8IsReadAsLatin1() {
        assertEquals(
                List.of("Köln"),
                headings(DvbV5File.read(new Source("table", "table", "[Köln]".getBytes(StandardCharsets.ISO_8859_1)))));
        assertEquals(List.of("Köln"), headings(read("[Köln]")));
    }

    @Test
    void malformedLinesAreReportedAndTheRestIsRead() {
        DvbV5File file = read("A = 1", "[CHANNEL]", "no value", "= 3", "B = 1", "B = 1", "B = 2", "C =", "[open",
                "C = 4", "[x\u001b");
        String notAHeading = " is not a heading; this line and the lines up to the next heading are skipped";
        assertEquals(
                List.of(
                        new Malformed(line(1), "'A = 1' comes before the first heading"),
                        new Malformed(line(3), "'no value' is neither a heading nor of the form KEY = VALUE"),
                        new Malformed(line(4), "'= 3' is neither a heading nor of the form KEY = VALUE"),
                        new Malformed(line(7), "B is '2' here and '1' above; the first one is used"),
                        new Malformed(line(8), "'C' has no value"),
                        new Malformed(line(9), "'[open'" + notAHeading),
                        new Malformed(line(11), "'[x·'" + notAHeading)),
                file.malformed());
        assertEquals(List.of(new Block(line(2), "CHANNEL", Map.of("B", "1"))), file.blocks());
    }

    @Test
    void aHeadingBehindAMalformedOneIsReadAgain() {
        assertEquals(
                List.of(new Block(line(1), "A", Map.of()), new Block(line(4), "C", Map.of("D", "2"))),
                read("[A]", "[open", "B = 1", "[C]", "D = 2").blocks());
    }

    @Test
    void keysInMessagesArePrintable() {
        assertEquals(
                List.of("A· is '2' here and '1' above; the first one is used"),
                read("[CHANNEL]", "A\u001b = 1", "A\u001b = 2").malformed().stream().map(Malformed::reason).toList());
    }
}
