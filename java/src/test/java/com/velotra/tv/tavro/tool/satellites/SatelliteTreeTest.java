package com.velotra.tv.tavro.tool.satellites;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.velotra.tv.tavro.services.channellist.OrbitalPosition;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfo;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.tool.input.ImportFixture;
import com.velotra.tv.tavro.tool.input.ImportReport;
import com.velotra.tv.tavro.tool.input.Source;
import java.io.IOException;
import java.io.OutputStream;
import java.io.PrintStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Set;
import org.junit.jupiter.api.Test;

/** All of sources.conf and diseqc.conf of Debian's vdr. */
class SatelliteTreeTest {
    private static final int LIST = 51;
    private static final Set<String> OTHER_MEDIA = Set.of("C", "T", "A", "I", "V");

    private static Path file(String name) {
        Path file = Path.of(System.getProperty("tavro.dishes")).resolve(name);
        assertTrue(Files.exists(file), "there is no " + file + "; ./tavro test fetches it");
        return file;
    }

    /** Returns position in tenths and name of every line, read without the importer's parser. */
    private static List<String> satellites() throws IOException {
        List<String> satellites = new ArrayList<>();
        for (String line : Files.readAllLines(file("sources.conf"))) {
            String code = line.split("\\s")[0];
            if (!code.isEmpty() && !code.startsWith("#") && !OTHER_MEDIA.contains(code)) {
                double degrees = Double.parseDouble(code.substring(1, code.length() - 1));
                long tenths = Math.round(degrees * 10) * (code.endsWith("W") ? -1 : 1);
                satellites.add(tenths + " " + line.substring(code.length()).trim());
            }
        }
        return satellites;
    }

    private static Satellites imported(VltTvSatelliteList lists, ImportReport report) {
        SatelliteImport satellites = new SatelliteImport(lists, LIST, report);
        satellites.addSources(Source.read(file("sources.conf")));
        satellites.addSwitches(Source.read(file("diseqc.conf")));
        return satellites.store();
    }

    @Test
    void everyPositionIsImportedAndReadsBackToItsLine() throws IOException {
        List<String> expected = satellites();
        assertEquals(158, expected.size());
        VltTvSatelliteList lists = VltTvSatelliteList.getInstance();
        ImportReport report = new ImportReport(new PrintStream(OutputStream.nullOutputStream()));
        Satellites stored = imported(lists, report);

        assertEquals(
                """
                2 files: 2 dish settings, 158 satellites; 0 malformed lines
                Skipped, by reason:
                       1  not a satellite (source A)
                       1  not a satellite (source C)
                       1  not a satellite (source I)
                       1  not a satellite (source T)
                       1  not a satellite (source V)
                Imported with values dropped (no field in the record):
                       2  more than one polarization (each transport stream has its own)
                       2  waiting times
                2 satellites with dish settings
                satellite list 51: 158 added, 0 changed, 0 unchanged; it holds 158 records
                """,
                ImportFixture.summary(report));

        List<VltTvSatelliteInfo> found = lists.getAll(LIST);
        assertEquals(expected, found.stream()
                .map(satellite -> satellite.getOrbitPosition() + " " + satellite.getName()).toList());
        for (VltTvSatelliteInfo satellite : found) {
            RecordId id = stored.at(new OrbitalPosition(satellite.getOrbitPosition())).orElseThrow();
            assertEquals(satellite.id(), id);
            assertEquals(satellite.getName(), lists.get(id, List.of("Name")).orElseThrow().getName());
        }

        // The file has settings for two satellites, each with a committed port and a tone burst.
        List<VltTvSatelliteInfo> inUse = found.stream().filter(satellite -> satellite.getMaskStatusOn() == 1).toList();
        assertEquals(List.of(130, 192), inUse.stream().map(VltTvSatelliteInfo::getOrbitPosition).toList());
        assertEquals(List.of(1, 0), inUse.stream().map(VltTvSatelliteInfo::getDiseqcPosition).toList());
        assertEquals(List.of(1, 0), inUse.stream().map(VltTvSatelliteInfo::getToneBurst).toList());
        for (VltTvSatelliteInfo satellite : inUse) {
            assertEquals(
                    List.of(1, 9750, 11700, 10600, 2, 3, 2),
                    List.of(satellite.getMaskLnbUniver(), satellite.getLnbLowFreq(), satellite.getLnbSwitchFreq(),
                            satellite.getLnbHighFreq(), satellite.getTone22k(), satellite.getLnbPower(),
                            satellite.getDiseqcType()));
        }

        ImportReport again = new ImportReport(new PrintStream(OutputStream.nullOutputStream()));
        imported(lists, again);
        assertEquals(List.of("satellite list 51: 0 added, 0 changed, 158 unchanged; it holds 158 records"),
                ImportFixture.lists(again));
    }
}
