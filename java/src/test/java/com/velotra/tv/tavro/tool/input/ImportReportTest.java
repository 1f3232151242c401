package com.velotra.tv.tavro.tool.input;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.io.ByteArrayOutputStream;
import java.io.PrintStream;
import java.nio.charset.StandardCharsets;
import java.util.List;
import java.util.Map;
import java.util.stream.IntStream;
import org.junit.jupiter.api.Test;

class ImportReportTest {
    private final ByteArrayOutputStream log = new ByteArrayOutputStream();
    private final ImportReport report = new ImportReport(new PrintStream(log, true, StandardCharsets.UTF_8));

    private String log() {
        return log.toString(StandardCharsets.UTF_8);
    }

    private static List<Malformed> malformed(int count) {
        return IntStream.rangeClosed(1, count)
                .mapToObj(line -> new Malformed(new Place("table", line), "nonsense")).toList();
    }

    @Test
    void theSummaryHasEverything() {
        report.read(2, "transponder", malformed(1));
        report.alsoRead(3, "service");
        report.read(4, "transponder", List.of());
        report.imported("DVBT");
        report.skipped("not a satellite (source C)");
        report.notImported(new Place("table", 7), "no frequency");
        report.dropped("PLS_CODE");
        report.withoutSatellite("no satellites in satellite list 13");
        report.switched();
        ListCounts counts = report.list("satellite list 13", () -> 4);
        counts.added();
        counts.updated(1, true);
        counts.updated(1, false);
        counts.updated(2, false);
        counts.updated(2, false);
        counts.repeated();
        report.list("network list 13", () -> 1).added();
        assertEquals(
                """
                2 files: 3 services, 6 transponders; 1 malformed line
                Transport streams, by delivery system:
                       1  DVBT
                Skipped, by reason:
                       1  not a satellite (source C)
                Not imported, by reason:
                       1  no frequency
                Imported with values dropped (no field in the record):
                       1  PLS_CODE
                Imported without a satellite record, by reason:
                       1  no satellites in satellite list 13
                1 satellite with dish settings
                satellite list 13: 1 added, 1 changed, 1 unchanged, 1 repeated in the files; it holds 4 records
                network list 13: 1 added, 0 changed, 0 unchanged; it holds 1 record
                """,
                ImportFixture.summary(report));
        assertEquals("  malformed line table:1: nonsense\n  not imported table:7: no frequency\n", log());
    }

    @Test
    void aListThatIsNoLongerReadableIsReportedWithWhatWasAdded() {
        ListCounts counts = report.list("service list 13", () -> {
            throw new IllegalStateException("gone");
        });
        counts.added();
        assertEquals(List.of("service list 13: 1 added, 0 changed, 0 unchanged; its records cannot be counted"),
                ImportFixture.lists(report));
    }

    @Test
    void theCountsOfAListGoOnWhenItIsAskedForAgain() {
        report.list("service list 13", () -> 2).added();
        report.list("service list 13", () -> 2).added();
        assertEquals(
                List.of("service list 13: 2 added, 0 changed, 0 unchanged; it holds 2 records"),
                ImportFixture.lists(report));
    }

    @Test
    void twentyLinesAreLoggedForAReasonAndTheRestIsCounted() {
        report.read(0, "transponder", malformed(22));
        for (int line = 1; line <= 22; line++) {
            report.notImported(new Place("table", line), "no frequency");
            report.skippedFile("cannot import " + line);
        }
        StringBuilder expected = new StringBuilder();
        for (int line = 1; line <= 20; line++) {
            expected.append("  malformed line table:").append(line).append(": nonsense\n");
        }
        expected.append("  … more of these (malformed lines) are counted in the summary\n");
        for (int line = 1; line <= 20; line++) {
            expected.append("  not imported table:").append(line).append(": no frequency\n  cannot import ")
                    .append(line).append('\n');
        }
        expected.append("  … more of these (no frequency) are counted in the summary\n");
        expected.append("  … more of these (skipped files) are counted in the summary\n");
        assertEquals(expected.toString(), log());
        assertEquals(22, report.malformed());
        assertEquals(Map.of("no frequency", 22), report.notImported());
        assertEquals(Map.of("an unusable file in a folder", 22), report.skipped());
    }

    @Test
    void progressIsLoggedEveryThousandStepsOfAKind() {
        for (int i = 0; i < 2001; i++) {
            report.step(2001, "transponders");
        }
        report.beginSteps();
        for (int i = 0; i < 1000; i++) {
            report.step(1000, "services");
        }
        assertEquals("  1000 of 2001 transponders\n  2000 of 2001 transponders\n  1000 of 1000 services\n", log());
    }

    @Test
    void anImportIsCompleteWhateverWasSkippedOrDropped() {
        report.read(1, "transponder", List.of());
        report.skipped("not a satellite (source C)");
        report.skippedFile("cannot import x: it is a PNG image");
        report.dropped("PLS_CODE");
        report.withoutSatellite("no satellites in satellite list 13");
        assertTrue(report.complete());
        assertTrue(report.anyFile());
    }

    @Test
    void anImportIsNotCompleteWithAMalformedLine() {
        report.read(1, "transponder", malformed(1));
        assertFalse(report.complete());
    }

    @Test
    void anImportWithAnItemNotImportedIsIncomplete() {
        report.notImported(new Place("table", 1), "no frequency");
        assertFalse(report.complete());
    }

    @Test
    void anImportIsNotCompleteWithARefusedFile() {
        report.refusedFile("cannot read x: permission denied");
        assertFalse(report.complete());
        assertFalse(report.anyFile());
        assertEquals("tavro: cannot read x: permission denied\n", log());
        assertEquals("1 file cannot be used; see the messages above", report.whyNothing());
    }

    @Test
    void anImportWithoutAnyFileSaysWhatCanBeImported() {
        assertFalse(report.anyFile());
        assertEquals(
                "no file is in a known format; " + Format.KNOWN,
                report.whyNothing());
    }
}
