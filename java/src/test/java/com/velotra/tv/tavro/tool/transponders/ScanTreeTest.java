package com.velotra.tv.tavro.tool.transponders;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.TransportStreamRecord;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfo;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.input.ImportFixture;
import com.velotra.tv.tavro.tool.input.ImportReport;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.satellites.SatelliteImport;
import com.velotra.tv.tavro.tool.satellites.Satellites;
import java.io.IOException;
import java.io.OutputStream;
import java.io.PrintStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.HashMap;
import java.util.LinkedHashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.stream.Collectors;
import java.util.stream.Stream;
import org.junit.jupiter.api.Test;

/**
 * All of Debian's dtv-scan-tables: every distinct transponder is imported once, the counts add up, and every record has
 * the values of its source, checked by offset and stored code. Slow builds use every Nth file only.
 */
class ScanTreeTest {
    private static final int FIRST = 31;
    private static final int STEP = Integer.getInteger("tavro.scanStep", 1);
    private static final List<String> FOLDERS = List.of("atsc", "dvb-c", "dvb-s", "dvb-t", "isdb-t");
    private static final List<String> LEGACY_FOLDERS = List.of("atsc", "dvb-c", "dvb-s", "dvb-t");
    private static final Map<String, Integer> MEDIUM = Map.of(
            "DVBT", 1, "DVBT2", 1, "ISDBT", 1, "ATSC", 1, "DVBC/ANNEX_A", 2, "DVBC/ANNEX_B", 2, "DVBS", 3, "DVBS2", 3);

    /** A block of a file, as this test reads it. */
    private record Entry(Path file, int line, String heading, Map<String, String> values) {
        String place() {
            return file + ":" + line;
        }

        boolean isService() {
            return !heading.equalsIgnoreCase("CHANNEL") && values.containsKey("SERVICE_ID");
        }

        int medium() {
            return MEDIUM.get(values.get("DELIVERY_SYSTEM"));
        }

        long kilohertz() {
            long frequency = Long.parseLong(values.get("FREQUENCY"));
            return medium() == 3 ? frequency : (frequency + 500) / 1000;
        }

        /** Returns the position at the end of the file name, with tenths; empty if there is none. */
        String position() {
            String name = file.getFileName().toString();
            String end = name.substring(Math.max(name.lastIndexOf('-'), name.lastIndexOf('_')) + 1);
            if (medium() != 3 || !end.matches("\\d+(\\.\\d)?[EW]")) {
                return "";
            }
            return end.contains(".") ? end : end.replaceFirst("([EW])$", ".0$1");
        }

        /** Returns what distinguishes it from other transponders. */
        List<Object> identity() {
            String stream = values.getOrDefault("STREAM_ID", "0");
            boolean counts = medium() == 3 && !stream.equals("4294967295") || medium() == 1
                    && Long.parseLong(stream) <= 0xFF;
            return identity(counts ? Long.parseLong(stream) : 0);
        }

        /** Returns the same for the older format, which has no stream ids for the first generation. */
        List<Object> legacyIdentity() {
            return values.get("DELIVERY_SYSTEM").endsWith("2") ? identity() : identity(0);
        }

        private List<Object> identity(long stream) {
            return List.of(
                    medium(), kilohertz(), medium() == 3 ? POLARIZATION.getOrDefault(values.get("POLARIZATION"), 0L)
                            : 0L, stream, position());
        }
    }

    // Stored codes by the value in the source.
    private static final Map<String, Long> BANDWIDTH = Map.of("6000000", 1L, "7000000", 2L, "8000000", 3L);
    private static final Map<String, Long> FEC =
            Map.of("1/2", 2L, "2/3", 3L, "3/4", 4L, "5/6", 6L, "7/8", 7L, "8/9", 8L, "3/5", 9L, "4/5", 10L, "9/10",
                    11L);
    private static final Map<String, Long> SATELLITE_RATE =
            Map.of("1/2", 3L, "3/5", 4L, "2/3", 5L, "3/4", 6L, "4/5", 7L, "5/6", 8L, "7/8", 9L, "8/9", 10L);
    private static final Map<String, Long> TERRESTRIAL_RATE =
            Map.of("1/2", 1L, "3/5", 2L, "2/3", 3L, "3/4", 4L, "4/5", 5L, "5/6", 6L, "7/8", 7L);
    private static final Map<String, Long> MODULATION = Map.of(
            "QPSK", 1L, "PSK/8", 2L, "QAM/16", 3L, "QAM/64", 5L, "QAM/128", 6L, "QAM/256", 7L, "APSK/16", 8L, "APSK/32",
            9L);
    private static final Map<String, Long> MODE = Map.of("2K", 1L, "8K", 2L, "4K", 6L, "16K", 7L, "32K", 8L);
    private static final Map<String, Long> GUARD =
            Map.of("1/32", 1L, "1/16", 2L, "1/8", 3L, "1/4", 4L, "1/128", 5L, "19/256", 7L);
    private static final Map<String, Long> HIERARCHY = Map.of("NONE", 1L, "1", 2L);
    private static final Map<String, Long> POLARIZATION =
            Map.of("HORIZONTAL", 0L, "VERTICAL", 1L, "LEFT", 2L, "RIGHT", 3L);
    private static final Map<String, Long> STANDARD =
            Map.of("DVBT", 1L, "DVBT2", 2L, "DVBC/ANNEX_A", 1L, "DVBS", 1L, "DVBS2", 2L);

    private final VltTvTransportStreamList lists = VltTvTransportStreamList.getInstance();

    private static Path root() {
        return Path.of(System.getProperty("tavro.scanTables"));
    }

    /** Returns the files below folders, sorted by name. */
    private static List<Path> files(Path root, List<String> folders) throws IOException {
        assertTrue(Files.isDirectory(root), "there are no scan tables at " + root + "; ./tavro test fetches them");
        List<Path> all = new ArrayList<>();
        for (String folder : folders) {
            try (Stream<Path> files = Files.walk(root.resolve(folder))) {
                files.filter(Files::isRegularFile).sorted().forEach(all::add);
            }
        }
        all.removeIf(file -> Math.floorMod(root.relativize(file).toString().hashCode(), STEP) != 0);
        return all;
    }

    /** Returns the blocks by file and line of their headings, read without the importer's parser. */
    private static Map<String, Entry> entries() throws IOException {
        Map<String, Entry> entries = new LinkedHashMap<>();
        for (Path file : files(root(), FOLDERS)) {
            read(file, entries);
        }
        return entries;
    }

    private static void read(Path file, Map<String, Entry> entries) throws IOException {
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
                Entry entry = new Entry(file, i + 1, line.substring(1, line.lastIndexOf(']')).trim(), values);
                entries.put(entry.place(), entry);
            } else if (equals > 0 && !line.startsWith("#")) {
                values.putIfAbsent(line.substring(0, equals).trim(), line.substring(equals + 1).trim());
            }
        }
    }

    private static ImportReport report() {
        return new ImportReport(new PrintStream(OutputStream.nullOutputStream()));
    }

    // Satellites are imported from Debian's vdr.
    private static Satellites satellites() {
        Path sources = Path.of(System.getProperty("tavro.dishes"), "sources.conf");
        assertTrue(Files.exists(sources), "there is no " + sources + "; ./tavro test fetches it");
        SatelliteImport satellites = new SatelliteImport(VltTvSatelliteList.getInstance(), FIRST + 2, report());
        satellites.addSources(Source.read(sources));
        return satellites.store();
    }

    private ImportReport imported(List<Transponder> transponders, StreamImport.Observer observer) {
        ImportReport report = report();
        new StreamImport(lists, satellites(), ListIds.from(FIRST), report, observer).storeAll(transponders);
        return report;
    }

    @Test
    void everyTransponderIsImportedOnceAndEqualsItsSource() throws IOException {
        Map<String, Entry> entries = entries();
        List<Entry> expected = entries.values().stream().filter(entry -> !entry.isService()).toList();
        assertTrue(expected.size() > 28_000 / STEP, "the tree has " + expected.size() + " transponders");
        List<Transponder> transponders = files(root(), FOLDERS).stream()
                .flatMap(file -> DvbV5File.read(Source.read(file)).transponders().stream()).toList();
        assertEquals(
                expected.stream().map(Entry::place).toList(),
                transponders.stream().map(transponder -> transponder.place().toString()).toList());

        Map<RecordId, Entry> sources = new HashMap<>();
        ImportReport report = imported(transponders,
                (transponder, id) -> sources.put(id, entries.get(transponder.place().toString())));
        assertEquals(Map.of(), report.notImported());
        Map<List<Object>, Entry> distinct = new LinkedHashMap<>();
        expected.forEach(entry -> distinct.putIfAbsent(entry.identity(), entry));
        assertEquals(
                distinct.values().stream().map(Entry::place).collect(Collectors.toSet()),
                sources.values().stream().map(Entry::place).collect(Collectors.toSet()),
                "the first of those that are alike");
        assertEquals(
                Set.copyOf(summary("%d added, 0 changed, 0 unchanged, %d repeated in the files; it holds %1$d records",
                expected, distinct)), Set.copyOf(ImportFixture.lists(report)));
        assertEquals(
                distinct.values().stream().collect(Collectors.groupingBy(
                        entry -> entry.values().get("DELIVERY_SYSTEM"), Collectors.summingInt(entry -> 1))),
                report.imported());
        checkSatellites(sources, report);
        checkRecords(sources);

        List<List<TransportStreamRecord>> before = records();
        ImportReport again = imported(transponders,
                (transponder, id) -> assertEquals(transponder.place().toString(), sources.get(id).place()));
        assertEquals(
                Set.copyOf(summary("0 added, 0 changed, %d unchanged, %d repeated in the files; it holds %1$d records",
                expected, distinct)), Set.copyOf(ImportFixture.lists(again)));
        assertEquals(before, records());
        checkLegacy(entries);
    }

    private List<List<TransportStreamRecord>> records() {
        return List.of(lists.getAll(FIRST), lists.getAll(FIRST + 1), lists.getAll(FIRST + 2));
    }

    /** Returns a line per list with the number of its transponders and of repeated ones. */
    private static List<String> summary(String format, List<Entry> all, Map<List<Object>, Entry> distinct) {
        List<String> lines = new ArrayList<>();
        for (int medium = 1; medium <= 3; medium++) {
            int wanted = medium;
            long records = distinct.values().stream().filter(entry -> entry.medium() == wanted).count();
            long repeated = all.stream().filter(entry -> entry.medium() == wanted).count() - records;
            lines.add("transport stream list " + (FIRST + medium - 1) + ": "
                    + String.format(format, records, repeated));
        }
        return lines;
    }

    private void checkSatellites(Map<RecordId, Entry> sources, ImportReport report) {
        Map<String, RecordId> byPosition = new HashMap<>();
        for (VltTvSatelliteInfo satellite : VltTvSatelliteList.getInstance().getAll(FIRST + 2)) {
            byPosition.put(String.format("%.1f%s", Math.abs(satellite.getOrbitPosition()) / 10.0,
                    satellite.getOrbitPosition() < 0 ? "W" : "E"), satellite.id());
        }
        int referring = 0;
        for (TransportStreamRecord record : lists.getAll(FIRST + 2)) {
            Entry source = sources.get(new RecordId(FIRST + 2, record.recordId()));
            RecordId satellite = byPosition.getOrDefault(source.position(), new RecordId(0, 0));
            assertEquals(satellite, record.satellite(), source.place());
            referring += satellite.recordId() == 0 ? 0 : 1;
        }
        assertTrue(referring > 5000 / STEP, referring + " transponders refer to a satellite");
        assertEquals(
                lists.getAll(FIRST + 2).size(), referring + report.withoutSatellite().values().stream()
                        .mapToInt(Integer::intValue).sum());
    }

    private void checkRecords(Map<RecordId, Entry> sources) {
        int checked = 0;
        for (int list = FIRST; list < FIRST + 3; list++) {
            for (TransportStreamRecord record : lists.getAll(list)) {
                check(sources.get(new RecordId(list, record.recordId())), list - FIRST + 1,
                        new RawRecord(record.bytes()));
                checked++;
            }
        }
        assertEquals(sources.size(), checked);
    }

    // The older tables repeat the DVBv5 tables line by line. They have services as transponders, so files with services
    // are skipped.
    private void checkLegacy(Map<String, Entry> entries) throws IOException {
        Set<Path> withServices = entries.values().stream().filter(Entry::isService).map(Entry::file)
                .collect(Collectors.toSet());
        Set<Path> legacyFiles = new LinkedHashSet<>(files(root(), LEGACY_FOLDERS));
        legacyFiles.removeAll(withServices);
        List<Entry> expected = entries.values().stream().filter(entry -> legacyFiles.contains(entry.file())).toList();
        List<Transponder> transponders = new ArrayList<>();
        for (Path file : legacyFiles) {
            LegacyFile legacy = LegacyFile.read(
                    Source.read(root().resolve("dvb-legacy").resolve(root().relativize(file))));
            assertEquals(List.of(), legacy.malformed());
            transponders.addAll(legacy.transponders());
        }
        assertEquals(expected.size(), transponders.size());

        List<List<TransportStreamRecord>> before = records();
        ImportReport report = imported(transponders, (transponder, id) -> { });
        assertEquals(Map.of(), report.notImported());
        Map<List<Object>, Entry> found = new LinkedHashMap<>();
        expected.forEach(entry -> found.putIfAbsent(entry.legacyIdentity(), entry));
        List<String> lines = summary("0 added, 0 changed, %d unchanged, %d repeated in the files; it holds ", expected,
                found);
        for (int medium = 1; medium <= 3; medium++) {
            lines.set(medium - 1, lines.get(medium - 1) + before.get(medium - 1).size() + " records");
        }
        assertEquals(Set.copyOf(lines), Set.copyOf(ImportFixture.lists(report)));
        assertEquals(before, records());
    }

    private static void check(Entry source, int medium, RawRecord record) {
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
                assertEquals(system.equals("DVBT2") ? code(GUARD, values, "GUARD_INTERVAL") : 0, record.u32(148),
                        place);
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
        assertEquals(source.heading().equalsIgnoreCase("CHANNEL") || !fits ? "" : source.heading(), record.text(212),
                place);
    }

    private static long code(Map<String, Long> codes, Map<String, String> values, String key) {
        return codes.getOrDefault(values.getOrDefault(key, ""), 0L);
    }
}
