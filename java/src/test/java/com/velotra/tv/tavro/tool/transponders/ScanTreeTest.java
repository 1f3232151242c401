package com.velotra.tv.tavro.tool.transponders;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.TransportStreamRecord;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfo;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.satellites.SatelliteImport;
import com.velotra.tv.tavro.tool.satellites.Satellites;
import java.io.IOException;
import java.io.OutputStream;
import java.io.PrintStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Arrays;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.stream.Stream;
import org.junit.jupiter.api.Test;

/**
 * The whole tree of scan tables of Debian's dtv-scan-tables: everything is imported, the counts add up, and every record has
 * the values of its source, told here by offsets and stored codes.
 */
class ScanTreeTest {
    private static final int FIRST = 31;
    private static final List<String> FOLDERS = List.of("atsc", "dvb-c", "dvb-s", "dvb-t", "isdb-t");

    // Stored codes by what the source says.
    private static final Map<String, Long> BANDWIDTH = Map.of("6000000", 1L, "7000000", 2L, "8000000", 3L);
    private static final Map<String, Long> FEC =
            Map.of("1/2", 2L, "2/3", 3L, "3/4", 4L, "5/6", 6L, "7/8", 7L, "8/9", 8L, "3/5", 9L, "4/5", 10L, "9/10", 11L);
    private static final Map<String, Long> SATELLITE_RATE =
            Map.of("1/2", 3L, "3/5", 4L, "2/3", 5L, "3/4", 6L, "4/5", 7L, "5/6", 8L, "7/8", 9L, "8/9", 10L);
    private static final Map<String, Long> TERRESTRIAL_RATE =
            Map.of("1/2", 1L, "3/5", 2L, "2/3", 3L, "3/4", 4L, "4/5", 5L, "5/6", 6L, "7/8", 7L);
    private static final Map<String, Long> MODULATION = Map.of(
            "QPSK", 1L, "PSK/8", 2L, "QAM/16", 3L, "QAM/64", 5L, "QAM/128", 6L, "QAM/256", 7L, "APSK/16", 8L, "APSK/32", 9L);
    private static final Map<String, Long> MODE = Map.of("2K", 1L, "8K", 2L, "4K", 6L, "16K", 7L, "32K", 8L);
    private static final Map<String, Long> GUARD = Map.of("1/32", 1L, "1/16", 2L, "1/8", 3L, "1/4", 4L, "1/128", 5L, "19/256", 7L);
    private static final Map<String, Long> HIERARCHY = Map.of("NONE", 1L, "1", 2L);
    private static final Map<String, Long> POLARIZATION = Map.of("HORIZONTAL", 0L, "VERTICAL", 1L, "LEFT", 2L, "RIGHT", 3L);
    private static final Map<String, Long> STANDARD = Map.of("DVBT", 1L, "DVBT2", 2L, "DVBC/ANNEX_A", 1L, "DVBS", 1L, "DVBS2", 2L);

    private static Path root() {
        return Path.of(System.getProperty("tavro.scanTables"));
    }

    /** The transponders of the files by file and line of their headings, read without the importer's reader. */
    private static Map<String, ScanTable.Entry> sources() throws IOException {
        Map<String, ScanTable.Entry> sources = new HashMap<>();
        for (String folder : FOLDERS) {
            try (Stream<Path> files = Files.walk(root().resolve(folder))) {
                for (Path file : files.filter(Files::isRegularFile).toList()) {
                    read(file, sources);
                }
            }
        }
        return sources;
    }

    private static void read(Path file, Map<String, ScanTable.Entry> sources) throws IOException {
        byte[] bytes = Files.readAllBytes(file);
        String utf8 = new String(bytes, StandardCharsets.UTF_8);
        boolean valid = Arrays.equals(utf8.getBytes(StandardCharsets.UTF_8), bytes);
        String[] lines = (valid ? utf8 : new String(bytes, StandardCharsets.ISO_8859_1)).split("\n");
        Map<String, String> values = null;
        for (int i = 0; i < lines.length; i++) {
            String line = lines[i].trim();
            int equals = line.indexOf('=');
            if (line.startsWith("[")) {
                values = new HashMap<>();
                ScanTable.Entry entry = new ScanTable.Entry(file, i + 1, line.substring(1, line.lastIndexOf(']')).trim(), values);
                sources.put(entry.place(), entry);
            } else if (equals > 0 && !line.startsWith("#")) {
                values.putIfAbsent(line.substring(0, equals).trim(), line.substring(equals + 1).trim());
            }
        }
    }

    // Imported by the positions of Debian's vdr.
    private static Satellites satellites() throws IOException {
        Path sources = Path.of(System.getProperty("tavro.dishes"), "sources.conf");
        assertTrue(Files.exists(sources), "there is no " + sources + "; ./tavro test fetches it");
        SatelliteImport satellites = new SatelliteImport(VltTvSatelliteList.getInstance(), FIRST + 2, System.out);
        satellites.addSources(sources);
        return satellites.store();
    }

    /** The satellite that a satellite transponder's file is about, by the position at the end of the file's name; or 0,0. */
    private static RecordId satelliteOf(ScanTable.Entry source, Map<String, RecordId> byPosition) {
        String name = source.file().getFileName().toString();
        String position = name.substring(Math.max(name.lastIndexOf('-'), name.lastIndexOf('_')) + 1);
        return byPosition.getOrDefault(position.contains(".") ? position : position.replaceFirst("([EW])$", ".0$1"), new RecordId(0, 0));
    }

    @Test
    void everyTransponderIsImportedAndReadsBackToTheValuesOfItsSource() throws IOException {
        assertTrue(Files.isDirectory(root()), "there are no scan tables at " + root() + "; ./tavro test fetches them");
        VltTvTransportStreamList lists = VltTvTransportStreamList.getInstance();
        Map<String, ScanTable.Entry> read = sources();
        Map<RecordId, ScanTable.Entry> sources = new HashMap<>();
        Satellites satellites = satellites();
        ScanImport scan = new ScanImport(
                lists, satellites, FIRST, new PrintStream(OutputStream.nullOutputStream()), (entry, id) -> sources.put(id, read.get(entry.place())));
        for (String folder : FOLDERS) {
            scan.add(root().resolve(folder));
        }
        scan.printSummary(System.out);

        long expected = read.size();
        assertTrue(expected > 28_000, "the tree has " + expected + " transponders");
        assertEquals(expected, scan.entries());
        assertEquals(expected, sum(scan.imported()) + sum(scan.notImported()));
        assertEquals(expected, scan.perList().values().stream().mapToInt(Integer::intValue).sum());

        Map<String, RecordId> byPosition = new HashMap<>();
        for (VltTvSatelliteInfo satellite : VltTvSatelliteList.getInstance().getAll(FIRST + 2, null)) {
            byPosition.put(String.format("%.1f%s", Math.abs(satellite.getOrbitPosition()) / 10.0,
                    satellite.getOrbitPosition() < 0 ? "W" : "E"), satellite.id());
        }
        int pointing = 0;
        for (TransportStreamRecord record : lists.getAll(FIRST + 2)) {
            RecordId satellite = satelliteOf(sources.get(new RecordId(FIRST + 2, record.recordId())), byPosition);
            assertEquals(satellite, record.satellite());
            pointing += satellite.recordId() == 0 ? 0 : 1;
        }
        assertTrue(pointing > 6000, pointing + " transponders point at a satellite");
        assertEquals(lists.getAll(FIRST + 2).size(), pointing + sum(scan.withoutSatellite()));

        int checked = 0;
        for (int list = FIRST; list < FIRST + 3; list++) {
            for (TransportStreamRecord record : lists.getAll(list)) {
                check(sources.get(new RecordId(list, record.recordId())), list - FIRST + 1, new RawRecord(record.bytes()));
                checked++;
            }
        }
        assertEquals(expected, checked);
    }

    private static long sum(Map<String, Integer> counts) {
        return counts.values().stream().mapToInt(Integer::intValue).sum();
    }

    private static void check(ScanTable.Entry source, int medium, RawRecord record) {
        Map<String, String> values = source.values();
        String place = source.place();
        assertEquals(medium, record.u8(5), place);
        long frequency = Long.parseLong(values.get("FREQUENCY"));
        assertEquals(medium == 3 ? frequency : (frequency + 500) / 1000, record.u32(44), place);
        String system = values.get("DELIVERY_SYSTEM");
        switch (medium) {
            case 1 -> {
                assertEquals(STANDARD.getOrDefault(system, 0L), record.u32(120), place);
                assertEquals(code(BANDWIDTH, values, "BANDWIDTH_HZ"), record.u32(48), place);
                assertEquals(code(MODULATION, values, "MODULATION"), record.u32(60), place);
                assertEquals(code(TERRESTRIAL_RATE, values, "CODE_RATE_HP"), record.u32(132), place);
                assertEquals(code(MODE, values, "TRANSMISSION_MODE"), record.u32(76), place);
                assertEquals(code(HIERARCHY, values, "HIERARCHY"), record.u32(64), place);
                assertEquals(system.equals("DVBT") ? code(GUARD, values, "GUARD_INTERVAL") : 0, record.u32(144), place);
                assertEquals(system.equals("DVBT2") ? code(GUARD, values, "GUARD_INTERVAL") : 0, record.u32(148), place);
                long stream = Long.parseLong(values.getOrDefault("STREAM_ID", "0"));
                assertEquals(stream <= 0xFF ? stream : 0, record.u8(124), place);
            }
            case 2 -> {
                assertEquals(STANDARD.getOrDefault(system, 0L), record.u32(80), place);
                assertEquals(Long.parseLong(values.getOrDefault("SYMBOL_RATE", "0")), record.u32(48), place);
                assertEquals(code(MODULATION, values, "MODULATION"), record.u32(60), place);
                assertEquals(code(FEC, values, "INNER_FEC"), record.u32(56), place);
            }
            default -> {
                assertEquals(STANDARD.getOrDefault(system, 0L), record.u32(92), place);
                assertEquals(Long.parseLong(values.getOrDefault("SYMBOL_RATE", "0")), record.u32(56), place);
                assertEquals(code(MODULATION, values, "MODULATION"), record.u32(72), place);
                assertEquals(code(FEC, values, "INNER_FEC"), record.u32(68), place);
                assertEquals(code(SATELLITE_RATE, values, "INNER_FEC"), record.u32(108), place);
                assertEquals(code(POLARIZATION, values, "POLARIZATION"), record.u32(76), place);
            }
        }
        boolean fits = source.heading().getBytes(StandardCharsets.UTF_8).length <= 40;
        assertEquals(source.heading().equalsIgnoreCase("CHANNEL") || !fits ? "" : source.heading(), record.text(212), place);
    }

    private static long code(Map<String, Long> codes, Map<String, String> values, String key) {
        return codes.getOrDefault(values.getOrDefault(key, ""), 0L);
    }
}
