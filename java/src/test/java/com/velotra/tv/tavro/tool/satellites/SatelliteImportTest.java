package com.velotra.tv.tavro.tool.satellites;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;

import com.velotra.tv.tavro.services.channellist.OrbitalPosition;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfo;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.tool.input.ImportFixture;
import com.velotra.tv.tavro.tool.input.ImportReport;
import com.velotra.tv.tavro.tool.input.Source;
import java.io.ByteArrayOutputStream;
import java.io.PrintStream;
import java.nio.charset.StandardCharsets;
import java.util.List;
import java.util.Map;
import java.util.Optional;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;

/** The records of satellites and their dish settings, read back through the natives. */
class SatelliteImportTest {
    private static final int LIST = 6;
    private static final String UNO = "S19.2E  Uno";
    private static final String NO_POSITION =
            "' is not an orbital position; write degrees from 0 to 180 as in S19.2E or S5W\n";

    private final VltTvSatelliteList lists = VltTvSatelliteList.getInstance();
    private final ByteArrayOutputStream log = new ByteArrayOutputStream();

    @AfterEach
    void deleteList() {
        if (lists.exists(LIST)) {
            lists.delete(LIST);
        }
    }

    private ImportReport imported(List<String> sources, String... switches) {
        ImportReport report = new ImportReport(new PrintStream(log, true, StandardCharsets.UTF_8));
        SatelliteImport satellites = new SatelliteImport(lists, LIST, report);
        satellites.addSources(ImportFixture.source("sources.conf", sources.toArray(String[]::new)));
        satellites.addSwitches(ImportFixture.source("diseqc.conf", switches));
        satellites.store();
        return report;
    }

    private VltTvSatelliteInfo only() {
        List<VltTvSatelliteInfo> all = lists.getAll(LIST);
        assertEquals(1, all.size());
        return all.get(0);
    }

    /** Returns a satellite with the dish settings in these lines. */
    private VltTvSatelliteInfo switched(String... lines) {
        ImportReport report = imported(List.of(UNO), lines);
        assertEquals(0, report.malformed(), log.toString(StandardCharsets.UTF_8));
        return only();
    }

    private static void assertSwitch(int type, int position, int burst, VltTvSatelliteInfo satellite) {
        assertEquals(
                List.of(type, position, burst),
                List.of(satellite.getDiseqcType(), satellite.getDiseqcPosition(), satellite.getToneBurst()));
    }

    @Test
    void aSatelliteIsStoredWithPositionAndNameAndIsNotInUse() {
        imported(List.of("# comment", "", "S0.8W\tDue  Tre & Vier "));
        VltTvSatelliteInfo satellite = only();
        assertEquals(-8, satellite.getOrbitPosition());
        assertEquals("Due  Tre & Vier", satellite.getName());
        assertEquals(0, satellite.getMaskStatusOn());
        assertSwitch(0, 255, 255, satellite);
        assertFalse(satellite.keys().contains("AntennaType"), "no kind of LNB");
    }

    @Test
    void aNameIsCutBehindAWholeCharacterAndThatIsReported() {
        String name = "a".repeat(63);
        ImportReport report = imported(List.of("S1E " + name + "ü", "S2E " + name + "b"));
        assertEquals(List.of(name, name + "b"), lists.getAll(LIST).stream().map(VltTvSatelliteInfo::getName)
                .toList());
        assertEquals(Map.of("the end of a name longer than 64 bytes", 1), report.dropped());
    }

    @Test
    void aLineThatIsNotUtf8IsReadAsLatin1() {
        SatelliteImport satellites = new SatelliteImport(lists, LIST, new ImportReport(System.err));
        satellites.addSources(new Source("x", "x", "S1E Zür\nS2E Züri\n".getBytes(StandardCharsets.ISO_8859_1)));
        satellites.store();
        assertEquals(List.of("Zür", "Züri"), lists.getAll(LIST).stream().map(VltTvSatelliteInfo::getName)
                .toList());
    }

    @Test
    void aUniversalLnbAfterACommittedSwitchIsStoredCompletely() {
        VltTvSatelliteInfo satellite = switched(
                "S19.2E  11700 V  9750  t v W15 [E0 10 38 F8] W15 t",
                "S19.2E  99999 V 10600  t v W15 [E0 10 38 F9] W15 T",
                "S19.2E  11700 H  9750  t V W15 [e0  10 38 fA] W15 t",
                "S19.2E  99999 H 10600  t V W15 [E0 10 38 FB] W15 T");
        assertSwitch(2, 2, 255, satellite);
        assertEquals(
                List.of(9750, 11700, 10600),
                List.of(satellite.getLnbLowFreq(), satellite.getLnbSwitchFreq(), satellite.getLnbHighFreq()));
        assertEquals(List.of(1, 0, 0), List.of(
                satellite.getMaskLnbUniver(), satellite.getMaskLnbSingcab(), satellite.getMaskLnbSingcabJess()));
        assertEquals(3, satellite.getAntennaType());
        assertEquals(List.of(1, 2, 3),
                List.of(satellite.getMaskStatusOn(), satellite.getTone22k(), satellite.getLnbPower()));
    }

    @Test
    void aToneBurstAloneIsTheSwitchPosition() {
        assertSwitch(0, 5, 0, switched("S19.2E 99999 V 10600 t v W15 A W15 t"));
        assertSwitch(0, 6, 1, switched("S19.2E 99999 V 10600 t v W15 B W15 t"));
    }

    @Test
    void aToneBurstBesideAPortIsKeptWithIt() {
        assertSwitch(2, 1, 0, switched("S19.2E 99999 V 10600 [E0 10 38 F4] A"));
        assertSwitch(2, 3, 1, switched("S19.2E 99999 V 10600 [E0 10 38 FF] B"));
    }

    @Test
    void aSinglePolarizationIsStoredInNewSatellitesOnly() {
        for (int polarization : new int[] {0, 1, 2, 3}) {
            VltTvSatelliteInfo satellite = switched("S19.2E 99999 " + "HVLR".charAt(polarization) + " 10600");
            assertEquals(polarization, satellite.getDiseqcPolar());
            deleteList();
        }
        imported(List.of(UNO));
        ImportReport again = imported(List.of(), "S19.2E 99999 R 10600");
        assertEquals(0, only().getDiseqcPolar());
        assertEquals(Map.of("the polarization of an existing satellite", 1), again.dropped());
    }

    @Test
    void toneAndVoltageThatNeverChangeAreStoredAsTheyAre() {
        VltTvSatelliteInfo off = switched("S19.2E 99999 V 5150 t v");
        assertEquals(List.of(0, 1), List.of(off.getTone22k(), off.getLnbPower()));
        VltTvSatelliteInfo on = switched("S19.2E 99999 V 5150 t T v V");
        assertEquals(List.of(1, 2), List.of(on.getTone22k(), on.getLnbPower()));
        assertEquals(List.of(5150, 0, 0), List.of(on.getLnbLowFreq(), on.getLnbSwitchFreq(), on.getLnbHighFreq()));
        assertEquals(List.of(0, 0, 0),
                List.of(on.getMaskLnbUniver(), on.getMaskLnbSingcab(), on.getMaskLnbSingcabJess()));
    }

    @Test
    void aSingleCableIsStoredWithItsGenerationAndPosition() {
        VltTvSatelliteInfo first = switched(
                "S19.2E  11700 V  9750  t V W10 S4 [E0 10 5A 00 00] W10 v",
                "S19.2E  99999 V 10600  t V W10 S5 [E0 10 5A 00 00] W10 v");
        assertEquals(List.of(1, 1, 0),
                List.of(first.getUnicablePosition(), first.getMaskLnbSingcab(), first.getMaskLnbSingcabJess()));
        assertEquals(List.of(0, 1), List.of(first.getMaskLnbUniver(), first.getAntennaType()));
        VltTvSatelliteInfo second = switched("S19.2E 99999 H 10600 t V W10 S15 [70 00 00 00] W10 v");
        assertEquals(List.of(3, 0, 1),
                List.of(second.getUnicablePosition(), second.getMaskLnbSingcab(), second.getMaskLnbSingcabJess()));
    }

    @Test
    void anUncommittedSwitchIsTheExtendedOne() {
        VltTvSatelliteInfo satellite = switched("S19.2E 11700 V 9750 [E0 10 39 FD]",
                "S19.2E 99999 V 10600 [E0 10 39 FD]");
        assertEquals(List.of(4, 13, 4),
                List.of(satellite.getDiseqcTypeEx(), satellite.getDiseqcPositionEx(), satellite.getAntennaType()));
    }

    @Test
    void whatHasNoPlaceIsCountedByReason() {
        ImportReport report = imported(
                List.of(UNO, "C Cable", "S360E Any"),
                "1 2:",
                "S19.2E 10700 V 9750 t v W15 [E0 10 38 F0] A [E0 31 6B 01]",
                "S19.2E 11700 V 9800 T V W15 [E0 10 38 F4] B",
                "S19.2E 12000 V 10600 t v S1 [E0 10 39 F1]",
                "S19.2E 12000 V 10700 t v S5 [E0 10 39 F2]",
                "S19.2E 11700 H 10000",
                "S360E 99999 V 10600 P W20",
                "S13E 99999 V 10600");
        assertEquals(List.of("satellite list 6: 2 added, 0 changed, 0 unchanged; it holds 2 records"),
                ImportFixture.lists(report));
        assertEquals(Map.of("not a satellite (source C)", 1), report.skipped());
        assertEquals(Map.of("dish settings for a position without a satellite (import sources.conf too)", 1),
                report.notImported());
        assertEquals(
                "  not imported S13.0E: dish settings for a position without a satellite (import sources.conf too)\n",
                log.toString(StandardCharsets.UTF_8));
        assertEquals(
                Map.ofEntries(
                        Map.entry("a restriction to certain devices", 1), Map.entry("waiting times", 2),
                        Map.entry("positioners", 1),
                        Map.entry("the DiSEqC command E0 31 6B 01", 1), Map.entry("switch ports that differ", 1),
                        Map.entry("tone bursts that differ", 1), Map.entry("uncommitted switch ports that differ", 1),
                        Map.entry("single-cable positions that differ", 1),
                        Map.entry("bands that differ by polarization", 1),
                        Map.entry("several oscillators for one band", 1), Map.entry("more than two bands", 1),
                        Map.entry("the upper end of the last band", 1),
                        Map.entry("a tone that depends on more than the band", 1),
                        Map.entry("a voltage that depends on more than the polarization", 1),
                        Map.entry("more than one polarization (each transport stream has its own)", 1)),
                report.dropped());
        VltTvSatelliteInfo first = lists.getAll(LIST).get(0);
        assertSwitch(2, 0, 0, first);
        assertEquals(
                List.of(9750, 10700, 9800),
                List.of(first.getLnbLowFreq(), first.getLnbSwitchFreq(), first.getLnbHighFreq()));
    }

    @Test
    void malformedSatellitesAreReportedAndTheRestIsStored() {
        ImportReport report = imported(List.of("S19.2E", "X", UNO, "S190E Far", "S1,5E Comma"));
        assertEquals(
                "  malformed line sources.conf:1: the satellite at S19.2E has no name\n"
                        + "  malformed line sources.conf:4: 'S190E" + NO_POSITION
                        + "  malformed line sources.conf:5: 'S1,5E" + NO_POSITION,
                log.toString(StandardCharsets.UTF_8));
        assertEquals(3, report.malformed());
        assertEquals(Map.of("not a satellite (source X)", 1), report.skipped());
        assertEquals(Map.of(), report.notImported());
        assertEquals(List.of("Uno", 0), List.of(only().getName(), only().getMaskStatusOn()));
    }

    @Test
    void malformedDishSettingsAreReportedAndTheRestIsStored() {
        ImportReport report = imported(
                List.of(UNO),
                "S19.2E 11700 V", "S19.2E 11700 X 9750", "S19.2E 0 V 9750", "S19.2E 11700 V 70000", "S19 11700 V 9750",
                "S19.2E 99999 V 10600 t q", "S19.2E 99999 V 10600 [E0 1]", "S19.2E 99999 V 10600 [E0 10",
                "S19.2E 99999 V 10600 W",
                "S19.2E 99999 V 10600 [E0 10 38 F0 00 00 00]", "S19.2E 99999 V 10600 T");
        String place = "  malformed line diseqc.conf:";
        assertEquals(
                place + "1: 3 fields instead of position, frequency, polarization, oscillator and commands\n"
                        + place + "2: polarization 'X' is not V, H, L or R\n"
                        + place + "3: frequency '0' is not a number from 1 to 2147483647\n"
                        + place + "4: oscillator '70000' is not a number from 1 to 65535\n"
                        + place + "5: 'S19" + NO_POSITION
                        + place + "6: 'q' is not a command\n"
                        + place + "7: '[E0 1]' is not a command\n"
                        + place + "8: '[E0 10' is not a command\n"
                        + place + "9: 'W' is not a command\n"
                        + place + "10: '[E0 10 38 F0 00 00 00]' is not a command\n",
                log.toString(StandardCharsets.UTF_8));
        assertEquals(10, report.malformed());
        assertEquals(List.of("Uno", 1, 1), List.of(only().getName(), only().getMaskStatusOn(), only().getTone22k()));
    }

    @Test
    void messagesArePrintable() {
        imported(List.of("\u001b[2JS19.2E Uno"), "S19.2E 11700 \u001b 9750", "\u001b[2J 11700 V 9750",
                "S19.2E 11700 V 9750 \u001b");
        String place = "  malformed line diseqc.conf:";
        assertEquals(
                "  malformed line sources.conf:1: '·[2JS19.2E" + NO_POSITION
                        + place + "1: polarization '·' is not V, H, L or R\n"
                        + place + "2: '·[2J" + NO_POSITION
                        + place + "3: '·' is not a command\n",
                log.toString(StandardCharsets.UTF_8));
    }

    @Test
    void anUpdateOfASatelliteKeepsValuesTheFileLacks() {
        imported(List.of(UNO, "S13E Due"), "S19.2E 99999 V 10600 [E0 10 38 F4] T");
        VltTvSatelliteInfoBase detected = new VltTvSatelliteInfoBase();
        detected.setRecId(new RecordId(LIST, 1).toString());
        detected.setLnbSignalDetected(1);
        lists.update(detected);

        ImportReport again = imported(List.of("S19.2E Uno Nuovo", "S19.2E Uno Terzo"), "S13E 99999 V 10600 t");
        assertEquals(
                List.of(
                        "satellite list 6: 0 added, 2 changed, 0 unchanged, 1 repeated in the files; it holds 2 "
                        + "records"),
                ImportFixture.lists(again));
        assertEquals(List.of(Map.of(), ""), List.of(again.notImported(), log.toString(StandardCharsets.UTF_8)));
        List<VltTvSatelliteInfo> all = lists.getAll(LIST);
        assertEquals(List.of("Uno Nuovo", "Due"), all.stream().map(VltTvSatelliteInfo::getName).toList());
        assertSwitch(2, 1, 255, all.get(0));
        assertEquals(List.of(1, 1), List.of(all.get(0).getLnbSignalDetected(), all.get(0).getTone22k()));
        assertEquals(List.of(0, 1), List.of(all.get(1).getTone22k(), all.get(1).getMaskStatusOn()));
    }

    @Test
    void aSecondImportLeavesEqualSatellitesUnchanged() {
        String[] switches = {"S19.2E  11700 V  9750  t v [E0 10 38 F8] B", "S19.2E  99999 V 10600  T v [E0 10 38 F9] B",
                "S1E 99999 H 10600 A"};
        List<String> sources = List.of(UNO, "S13E Due", "S1E Tre");
        imported(sources, switches);
        List<List<Object>> before = values();
        assertEquals(
                List.of("satellite list 6: 0 added, 0 changed, 3 unchanged; it holds 3 records"),
                ImportFixture.lists(imported(sources, switches)));
        assertEquals(before, values());
        assertEquals(
                List.of("satellite list 6: 1 added, 1 changed, 1 unchanged; it holds 4 records"),
                ImportFixture.lists(imported(List.of(UNO, "S13E Quattro", "S2E Cinque"))));
    }

    private List<List<Object>> values() {
        return lists.getAll(LIST).stream()
                .map(satellite -> lists.get(satellite.id()).orElseThrow().allValues()).toList();
    }

    @Test
    void theSummaryHasEverything() {
        assertEquals(
                """
                2 files: 1 dish setting, 2 satellites; 1 malformed line
                Skipped, by reason:
                       1  not a satellite (source T)
                Imported with values dropped (no field in the record):
                       1  waiting times
                1 satellite with dish settings
                satellite list 6: 2 added, 0 changed, 0 unchanged; it holds 2 records
                """,
                ImportFixture.summary(
                        imported(List.of(UNO, "S13E Due", "T Terrestrial", "nonsense"), "S19.2E 99999 V 10600 W15 t")));
    }

    @Test
    void satellitesAndPositionsAreFoundByEachOther() {
        assertEquals(Optional.empty(), new Satellites(lists, LIST).find("S19.2E"));
        assertFalse(lists.exists(LIST));
        imported(List.of("S13E Due", UNO));
        Satellites satellites = new Satellites(lists, LIST);
        assertEquals(Optional.of(new RecordId(LIST, 2)), satellites.at(new OrbitalPosition(192)));
        assertEquals(Optional.of(new RecordId(LIST, 1)), satellites.find("S13.0E"));
        assertEquals(List.of(Optional.empty(), Optional.empty()),
                List.of(satellites.find("S13.0W"), satellites.find("S13..0E")));
        assertEquals(Optional.of(new OrbitalPosition(130)), satellites.positionOf(new RecordId(LIST, 1)));
        assertEquals(Optional.empty(), satellites.positionOf(new RecordId(LIST, 3)));
    }

    @Test
    void aPositionWithoutASatelliteHasAReason() {
        assertEquals("no satellites in satellite list 6", new Satellites(lists, LIST).whyNone("S19.2E"));
        imported(List.of(UNO));
        Satellites satellites = new Satellites(lists, LIST);
        assertEquals("no orbital position at the end of the file's name", satellites.whyNone(""));
        assertEquals("no satellite at S13.0W in satellite list 6", satellites.whyNone("S13.0W"));
        assertEquals("'S13..0W' is not an orbital position", satellites.whyNone("S13..0W"));
    }

    @Test
    void ofSeveralSatellitesAtOnePositionTheFirstIsTaken() {
        imported(List.of(UNO));
        VltTvSatelliteInfoBase twin = new VltTvSatelliteInfoBase();
        twin.setOrbitPosition(192);
        RecordId second = lists.add(LIST, twin);
        Satellites satellites = new Satellites(lists, LIST);
        assertEquals(Optional.of(new RecordId(LIST, 1)), satellites.find("S19.2E"));
        assertEquals(Optional.of(new OrbitalPosition(192)), satellites.positionOf(second));
    }
}
