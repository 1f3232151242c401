package com.velotra.tv.tavro.tool.satellites;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;

import com.velotra.tv.tavro.services.channellist.OrbitalPosition;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfo;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.io.PrintStream;
import java.nio.charset.Charset;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Map;
import java.util.Optional;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** What becomes of satellites and of how dishes are switched to them, read back through the natives. */
class SatelliteImportTest {
    private static final int LIST = 6;
    private static final String UNO = "S19.2E  Uno";

    @TempDir
    Path folder;

    private final VltTvSatelliteList lists = VltTvSatelliteList.getInstance();
    private final ByteArrayOutputStream log = new ByteArrayOutputStream();

    @AfterEach
    void deleteList() {
        if (lists.exists(LIST)) {
            lists.delete(LIST);
        }
    }

    private SatelliteImport imported(List<String> sources, String... switches) throws IOException {
        SatelliteImport satellites = new SatelliteImport(lists, LIST, new PrintStream(log, true, StandardCharsets.UTF_8));
        satellites.addSources(Files.write(folder.resolve("sources.conf"), sources));
        satellites.addSwitches(Files.write(folder.resolve("diseqc.conf"), List.of(switches)));
        satellites.store();
        return satellites;
    }

    private VltTvSatelliteInfo only() {
        List<VltTvSatelliteInfo> all = lists.getAll(LIST, null);
        assertEquals(1, all.size());
        return all.get(0);
    }

    /** The one satellite with the dish that those lines describe. */
    private VltTvSatelliteInfo switched(String... lines) throws IOException {
        SatelliteImport satellites = imported(List.of(UNO), lines);
        assertEquals(0, satellites.malformed(), log.toString(StandardCharsets.UTF_8));
        return only();
    }

    private static void assertSwitch(int type, int position, int burst, VltTvSatelliteInfo satellite) {
        assertEquals(
                List.of(type, position, burst), List.of(satellite.getDiseqcType(), satellite.getDiseqcPosition(), satellite.getToneBurst()));
    }

    @Test
    void aSatelliteIsStoredWithPositionAndNameAndIsNotInUse() throws IOException {
        imported(List.of("# comment", "", "S0.8W\tDue  Tre & Vier "));
        VltTvSatelliteInfo satellite = only();
        assertEquals(-8, satellite.getOrbitPosition());
        assertEquals("Due  Tre & Vier", satellite.getName());
        assertEquals(0, satellite.getMaskStatusOn());
        assertSwitch(0, 255, 255, satellite);
        assertFalse(satellite.keys().contains("AntennaType"), "no kind of LNB");
    }

    @Test
    void aNameIsCutBehindAWholeCharacterAndThatIsTold() throws IOException {
        String name = "a".repeat(63);
        SatelliteImport satellites = imported(List.of("S1E " + name + "ü", "S2E " + name + "b"));
        assertEquals(List.of(name, name + "b"), lists.getAll(LIST, null).stream().map(VltTvSatelliteInfo::getName).toList());
        assertEquals(Map.of("the end of a name longer than 64 bytes", 1), satellites.left());
    }

    @Test
    void aLineThatIsNotUtf8IsReadAsLatin1() throws IOException {
        Path file = folder.resolve("sources.conf");
        Files.writeString(file, "S1E Zür\nS2E Züri\n", Charset.forName("ISO-8859-1"));
        SatelliteImport satellites = new SatelliteImport(lists, LIST, System.err);
        satellites.addSources(file);
        satellites.store();
        assertEquals(List.of("Zür", "Züri"), lists.getAll(LIST, null).stream().map(VltTvSatelliteInfo::getName).toList());
    }

    @Test
    void aUniversalLnbBehindACommittedSwitchIsStoredWithPortToneAndOscillators() throws IOException {
        VltTvSatelliteInfo satellite = switched(
                "S19.2E  11700 V  9750  t v W15 [E0 10 38 F8] W15 t", "S19.2E  99999 V 10600  t v W15 [E0 10 38 F9] W15 T",
                "S19.2E  11700 H  9750  t V W15 [e0  10 38 fA] W15 t", "S19.2E  99999 H 10600  t V W15 [E0 10 38 FB] W15 T");
        assertSwitch(2, 2, 255, satellite);
        assertEquals(
                List.of(9750, 11700, 10600),
                List.of(satellite.getLnbLowFreq(), satellite.getLnbSwitchFreq(), satellite.getLnbHighFreq()));
        assertEquals(List.of(1, 0, 0), List.of(
                satellite.getMaskLnbUniver(), satellite.getMaskLnbSingcab(), satellite.getMaskLnbSingcabJess()));
        assertEquals(3, satellite.getAntennaType());
        assertEquals(List.of(1, 2, 3), List.of(satellite.getMaskStatusOn(), satellite.getTone22k(), satellite.getLnbPower()));
    }

    @Test
    void aToneBurstAloneIsTheSwitchPosition() throws IOException {
        assertSwitch(0, 5, 0, switched("S19.2E 99999 V 10600 t v W15 A W15 t"));
        assertSwitch(0, 6, 1, switched("S19.2E 99999 V 10600 t v W15 B W15 t"));
    }

    @Test
    void aToneBurstBesideAPortIsKeptWithIt() throws IOException {
        assertSwitch(2, 1, 0, switched("S19.2E 99999 V 10600 [E0 10 38 F4] A"));
        assertSwitch(2, 3, 1, switched("S19.2E 99999 V 10600 [E0 10 38 FF] B"));
    }

    @Test
    void aPolarizationOfItsOwnIsTakenIntoNewSatellitesAlone() throws IOException {
        for (int polarization : new int[] {0, 1, 2, 3}) {
            VltTvSatelliteInfo satellite = switched("S19.2E 99999 " + "HVLR".charAt(polarization) + " 10600");
            assertEquals(polarization, satellite.getDiseqcPolar());
            deleteList();
        }
        imported(List.of(UNO));
        SatelliteImport again = imported(List.of(), "S19.2E 99999 R 10600");
        assertEquals(0, only().getDiseqcPolar());
        assertEquals(Map.of("the polarization of a satellite that was there before", 1), again.left());
    }

    @Test
    void toneAndVoltageThatNeverChangeAreStoredAsTheyAre() throws IOException {
        VltTvSatelliteInfo off = switched("S19.2E 99999 V 5150 t v");
        assertEquals(List.of(0, 1), List.of(off.getTone22k(), off.getLnbPower()));
        VltTvSatelliteInfo on = switched("S19.2E 99999 V 5150 t T v V");
        assertEquals(List.of(1, 2), List.of(on.getTone22k(), on.getLnbPower()));
        assertEquals(List.of(5150, 0, 0), List.of(on.getLnbLowFreq(), on.getLnbSwitchFreq(), on.getLnbHighFreq()));
        assertEquals(List.of(0, 0, 0), List.of(on.getMaskLnbUniver(), on.getMaskLnbSingcab(), on.getMaskLnbSingcabJess()));
    }

    @Test
    void aSingleCableIsStoredWithItsGenerationAndPosition() throws IOException {
        VltTvSatelliteInfo first = switched(
                "S19.2E  11700 V  9750  t V W10 S4 [E0 10 5A 00 00] W10 v", "S19.2E  99999 V 10600  t V W10 S5 [E0 10 5A 00 00] W10 v");
        assertEquals(List.of(1, 1, 0), List.of(first.getUnicablePosition(), first.getMaskLnbSingcab(), first.getMaskLnbSingcabJess()));
        assertEquals(List.of(0, 1), List.of(first.getMaskLnbUniver(), first.getAntennaType()));
        VltTvSatelliteInfo second = switched("S19.2E 99999 H 10600 t V W10 S15 [70 00 00 00] W10 v");
        assertEquals(List.of(3, 0, 1), List.of(second.getUnicablePosition(), second.getMaskLnbSingcab(), second.getMaskLnbSingcabJess()));
    }

    @Test
    void anUncommittedSwitchIsTheExtendedOne() throws IOException {
        VltTvSatelliteInfo satellite = switched("S19.2E 11700 V 9750 [E0 10 39 FD]", "S19.2E 99999 V 10600 [E0 10 39 FD]");
        assertEquals(List.of(4, 13, 4), List.of(satellite.getDiseqcTypeEx(), satellite.getDiseqcPositionEx(), satellite.getAntennaType()));
    }

    @Test
    void whatHasNoPlaceIsCountedByReason() throws IOException {
        SatelliteImport satellites = imported(
                List.of(UNO, "C Cable", "S360E Any"),
                "1 2:",
                "S19.2E 10700 V 9750 t v W15 [E0 10 38 F0] A [E0 31 6B 01]",
                "S19.2E 11700 V 9800 T V W15 [E0 10 38 F4] B",
                "S19.2E 12000 V 10600 t v S1 [E0 10 39 F1]",
                "S19.2E 12000 V 10700 t v S5 [E0 10 39 F2]",
                "S19.2E 11700 H 10000",
                "S360E 99999 V 10600 P W20",
                "S13E 99999 V 10600");
        assertEquals(Map.of("added", 2, "with how the dish is switched to them", 2), satellites.stored());
        assertEquals(
                Map.of("no satellite but source C", 1, "switching to a position where there is no satellite", 1), satellites.notImported());
        assertEquals(
                Map.ofEntries(
                        Map.entry("a restriction to some devices", 1), Map.entry("waiting times", 2), Map.entry("positioners", 1),
                        Map.entry("the DiSEqC command E0 31 6B 01", 1), Map.entry("switch ports that differ", 1),
                        Map.entry("tone bursts that differ", 1), Map.entry("uncommitted switch ports that differ", 1),
                        Map.entry("single-cable positions that differ", 1), Map.entry("bands that differ by polarization", 1),
                        Map.entry("several oscillators for one band", 1), Map.entry("more than two bands", 1),
                        Map.entry("an upper end of the last band", 1),
                        Map.entry("a tone that follows something else than the band", 1),
                        Map.entry("a voltage that follows something else than the polarization", 1),
                        Map.entry("more than one polarization; each transport stream has its own", 1)),
                satellites.left());
        VltTvSatelliteInfo first = lists.getAll(LIST, null).get(0);
        assertSwitch(2, 0, 0, first);
        assertEquals(
                List.of(9750, 10700, 9800), List.of(first.getLnbLowFreq(), first.getLnbSwitchFreq(), first.getLnbHighFreq()));
    }

    @Test
    void malformedLinesAreToldWithFileLineAndReasonAndTheRestIsStored() throws IOException {
        SatelliteImport satellites = imported(
                List.of("S19.2E", "X", UNO, "S190E Far", "S1,5E Comma"),
                "S19.2E 11700 V", "S19.2E 11700 X 9750", "S19.2E 0 V 9750", "S19.2E 11700 V 70000", "S19 11700 V 9750",
                "S19.2E 99999 V 10600 t q", "S19.2E 99999 V 10600 [E0 1]", "S19.2E 99999 V 10600 [E0 10", "S19.2E 99999 V 10600 W",
                "S19.2E 99999 V 10600 [E0 10 38 F0 00 00 00]", "S19.2E 99999 V 10600 T");
        String sources = "  left out " + folder.resolve("sources.conf") + ":";
        String switches = "  left out " + folder.resolve("diseqc.conf") + ":";
        String position = "' is not an orbital position; write degrees from 0 to 180 as in S19.2E or S5W\n";
        assertEquals(
                sources + "1: the satellite at S19.2E has no name\n"
                        + sources + "4: 'S190E" + position
                        + sources + "5: 'S1,5E" + position
                        + switches + "1: 3 fields instead of position, frequency, polarization, oscillator and commands\n"
                        + switches + "2: polarization 'X' is not V, H, L or R\n"
                        + switches + "3: frequency '0' is not a number from 1 to 2147483647\n"
                        + switches + "4: oscillator '70000' is not a number from 1 to 65535\n"
                        + switches + "5: 'S19" + position
                        + switches + "6: 'q' is no command\n"
                        + switches + "7: '[E0 1]' is no command\n"
                        + switches + "8: '[E0 10' is no command\n"
                        + switches + "9: 'W' is no command\n"
                        + switches + "10: '[E0 10 38 F0 00 00 00]' is no command\n",
                log.toString(StandardCharsets.UTF_8));
        assertEquals(13, satellites.malformed());
        assertEquals(Map.of("no satellite but source X", 1), satellites.notImported());
        assertEquals(List.of("Uno", 1, 1), List.of(only().getName(), only().getMaskStatusOn(), only().getTone22k()));
    }

    @Test
    void aPositionThatIsThereIsUpdatedAndKeepsWhatIsNotNamed() throws IOException {
        imported(List.of(UNO, "S13E Due"), "S19.2E 99999 V 10600 [E0 10 38 F4] T");
        VltTvSatelliteInfoBase detected = new VltTvSatelliteInfoBase();
        detected.setRecId(new RecordId(LIST, 1).toString());
        detected.setLnbSignalDetected(1);
        lists.update(detected);

        SatelliteImport again = imported(List.of("S19.2E Uno Nuovo", "S19.2E Uno Terzo"), "S13E 99999 V 10600 t");
        assertEquals(Map.of("updated", 2, "with how the dish is switched to them", 1), again.stored());
        assertEquals(Map.of("a position that was named before", 1), again.notImported());
        assertEquals(
                "  not imported " + folder.resolve("sources.conf") + ":2: a position that was named before\n",
                log.toString(StandardCharsets.UTF_8));
        List<VltTvSatelliteInfo> all = lists.getAll(LIST, null);
        assertEquals(List.of("Uno Nuovo", "Due"), all.stream().map(VltTvSatelliteInfo::getName).toList());
        assertSwitch(2, 1, 255, all.get(0));
        assertEquals(List.of(1, 1), List.of(all.get(0).getLnbSignalDetected(), all.get(0).getTone22k()));
        assertEquals(List.of(0, 1), List.of(all.get(1).getTone22k(), all.get(1).getMaskStatusOn()));
    }

    @Test
    void theSummaryTellsEverything() throws IOException {
        ByteArrayOutputStream out = new ByteArrayOutputStream();
        imported(List.of(UNO, "S13E Due", "T Terrestrial", "nonsense"), "S19.2E 99999 V 10600 W15 t")
                .printSummary(new PrintStream(out, true, StandardCharsets.UTF_8));
        assertEquals(
                """
                2 files, 2 satellites, switching for 1, 1 malformed lines
                Satellites stored:
                       2  added
                       1  with how the dish is switched to them
                Not imported, by reason:
                       1  no satellite but source T
                Imported without what a record has no place for:
                       1  waiting times
                satellite list 6: 2 records
                """,
                out.toString(StandardCharsets.UTF_8));
    }

    @Test
    void satellitesAreFoundByTheirPositionsAndWhatIsNotFoundIsTold() throws IOException {
        String none = "no satellites in satellite list 6";
        assertEquals(Optional.of(none), new Satellites(lists, LIST).pointAt("S19.2E", id -> { }));
        assertFalse(lists.exists(LIST));
        imported(List.of("S13E Due", UNO));
        Satellites satellites = new Satellites(lists, LIST);
        assertEquals(Optional.of(new RecordId(LIST, 2)), satellites.at(new OrbitalPosition(192)));
        RecordId[] found = new RecordId[1];
        assertEquals(Optional.empty(), satellites.pointAt("S13.0E", id -> found[0] = id));
        assertEquals(new RecordId(LIST, 1), found[0]);
        assertEquals(Optional.of("no satellite at S13.0W in satellite list 6"), satellites.pointAt("S13.0W", id -> { }));
        assertEquals(
                Optional.of("'S13..0W' is not an orbital position; write degrees from 0 to 180 as in S19.2E or S5W"),
                satellites.pointAt("S13..0W", id -> { }));
    }
}
