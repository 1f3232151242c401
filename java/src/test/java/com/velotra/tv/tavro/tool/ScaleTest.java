package com.velotra.tv.tavro.tool;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.sun.management.ThreadMXBean;
import com.velotra.tv.tavro.tool.ToolProcess.Result;
import com.velotra.tv.tavro.tool.listing.Records;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.ListFile;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.io.IOException;
import java.lang.management.ManagementFactory;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.stream.IntStream;
import java.util.stream.Stream;
import org.junit.jupiter.api.AfterAll;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/**
 * Commands over the longest list of services and over one of a quarter of its records: what a command needs is
 * proportional to the records. The heap is limited to 512 MB, and the whole process to 1 GB.
 */
class ScaleTest {
    /** The list with the most records that a list can have. */
    static final int LARGE = 1;

    /** The list with a quarter of them. */
    static final int SMALL = 2;

    static final int MOST = 65_534;
    static final int QUARTER = MOST / 4;

    private static final int STREAMS = 1000;

    // Proportional would be 4. Times vary, allocations do not.
    private static final double MOST_TIMES = 8;
    private static final double MOST_ALLOCATIONS = 4.5;
    private static final long MOST_KILOBYTES = 1 << 20;

    private static final Record SERVICE = Records.of(Kind.SERVICES, "service_type=1", "lcn=1", "tsl_id=1");
    private static final Field RECORD_ID = field("record_id");
    private static final Field SERVICE_ID = field("service_id");
    private static final Field NAME = field("name");
    private static final Field TSL_RECORD_ID = field("tsl_record_id");

    private static final ThreadMXBean THREAD = (ThreadMXBean) ManagementFactory.getThreadMXBean();

    @TempDir
    static Path folder;

    @BeforeAll
    static void lists() {
        load(Kind.SATELLITES, LARGE, List.of(
                Records.of(Kind.SATELLITES, "record_id=1", "name=Astra", "orbital_position=192")));
        load(Kind.STREAMS, LARGE, IntStream.rangeClosed(1, STREAMS).mapToObj(ScaleTest::stream).toList());
        List<Record> services = IntStream.rangeClosed(1, MOST).mapToObj(ScaleTest::service).toList();
        load(Kind.SERVICES, LARGE, services);
        load(Kind.SERVICES, SMALL, services.subList(0, QUARTER));
    }

    private static Record stream(int id) {
        return Records.of(Kind.STREAMS, "record_id=" + id, "medium=3", "sat_mode=2", "frequency=" + (10_700_000 + id),
                "sat_polarization=" + id % 2, "sat_symbol_rate=22000000", "transport_stream_id=" + id, "satl_id=1",
                "satl_record_id=1");
    }

    /** Services in reverse order of their names, each on one of the streams. */
    private static Record service(int id) {
        byte[] bytes = SERVICE.bytes();
        RECORD_ID.parse(Integer.toString(id), bytes);
        SERVICE_ID.parse(Integer.toString(id), bytes);
        NAME.parse("Service " + (MOST - id), bytes);
        TSL_RECORD_ID.parse(Integer.toString(1 + id % STREAMS), bytes);
        return Record.of(Kind.SERVICES, bytes);
    }

    private static Field field(String name) {
        return Layout.of(Kind.SERVICES).field(name).orElseThrow();
    }

    /** Stores a list through the native that loads list files. */
    static void load(Kind kind, int listId, List<Record> records) {
        Path file = folder.resolve(kind + "-" + listId + ".list");
        ListFile.write(file, RecordList.of(kind, listId, "scale", records));
        kind.lists().load(listId, file.toString());
    }

    /** Runs a command, which must succeed. Returns its output. */
    static String run(String... words) {
        Result result = ToolProcess.runHere(words);
        assertEquals("", result.err());
        assertEquals(0, result.exit());
        return result.out();
    }

    /** Checks that a command takes about four times as much for the large list as for the small one. */
    static void assertLinear(Runnable small, Runnable large) {
        small.run(); // loads the classes and compiles the loops
        Cost quarter = Cost.of(small);
        Cost whole = Cost.of(large);
        double times = (double) whole.nanoseconds / quarter.nanoseconds;
        double allocations = (double) whole.bytes / quarter.bytes;
        String costs = quarter + " for " + QUARTER + " records and " + whole + " for " + MOST;
        assertTrue(times < MOST_TIMES, costs);
        assertTrue(allocations < MOST_ALLOCATIONS, costs);
    }

    /** What this thread needs for something: time on a processor, and memory that is allocated meanwhile. */
    private record Cost(long nanoseconds, long bytes) {
        static Cost of(Runnable body) {
            long id = Thread.currentThread().getId();
            long nanoseconds = THREAD.getCurrentThreadCpuTime();
            long bytes = THREAD.getThreadAllocatedBytes(id);
            body.run();
            return new Cost(THREAD.getCurrentThreadCpuTime() - nanoseconds, THREAD.getThreadAllocatedBytes(id) - bytes);
        }
    }

    @AfterAll
    static void theProcessStaysBelowAGigabyte() throws IOException {
        String line = Files.readAllLines(Path.of("/proc/self/status")).stream()
                .filter(status -> status.startsWith("VmHWM:")).findFirst().orElseThrow();
        assertTrue(Long.parseLong(line.replaceAll("\\D", "")) < MOST_KILOBYTES, line);
    }

    private static void list(int listId, int records, String... options) {
        String[] words = Stream.concat(Stream.of("list", Integer.toString(listId)), Stream.of(options))
                .toArray(String[]::new);
        String out = run(words);
        assertTrue(out.endsWith("\n" + records + " services\n"), out.substring(out.length() - 100));
    }

    @Test
    void aWholeListAsATableIsLinear() {
        assertLinear(() -> list(SMALL, QUARTER), () -> list(LARGE, MOST));
    }

    @Test
    void aFilteredAndSortedListWithResolvedNamesIsLinear() {
        String[] options = {"--where", "name~'7' and freq>0 and position=19.2E", "--sort", "pol,-name",
            "--columns", "record,name,freq,pol,satellite"};
        assertLinear(() -> list(SMALL, withSevens(QUARTER), options), () -> list(LARGE, withSevens(MOST), options));
    }

    private static int withSevens(int records) {
        return (int) IntStream.rangeClosed(1, records).filter(id -> Integer.toString(MOST - id).contains("7")).count();
    }

    @Test
    void aListAsJsonIsLinear() {
        assertLinear(() -> assertEquals(QUARTER, objects(run("list", "2", "--json"))),
                () -> assertEquals(MOST, objects(run("list", "1", "--json"))));
    }

    private static long objects(String json) {
        return json.lines().filter(line -> line.equals("  {")).count();
    }

    @Test
    void aSearchInAllListsTakesLessThanThreeSeconds() {
        long start = THREAD.getCurrentThreadCpuTime();
        assertEquals(
                """
                kind      record  name           found
                services  1,1     Service 65533  name
                services  2,1     Service 65533  name
                2 records
                """,
                run("find", "service 65533"));
        double seconds = (THREAD.getCurrentThreadCpuTime() - start) / 1e9;
        assertTrue(seconds < 3, seconds + " s");
    }

    @Test
    void anAddToAFullListSaysSo() {
        assertEquals(new Result(1, "", "tavro: service list " + LARGE + " is full: no record id is free\n"),
                ToolProcess.runHere("add", Integer.toString(LARGE), "name=Last"));
    }

    /** A list file of the same services in reverse order, half of them with another number. */
    private static String other(int listId) {
        List<Record> services = StoredLists.read(Kind.SERVICES, listId);
        Field lcn = Layout.of(Kind.SERVICES).field("lcn").orElseThrow();
        String file = folder.resolve("other-" + listId + ".list").toString();
        ListFile.write(Path.of(file), RecordList.of(Kind.SERVICES, listId, "scale", IntStream
                .rangeClosed(1, services.size()).mapToObj(i -> services.get(services.size() - i))
                .map(service -> service.id() % 2 == 0 ? service : service.with(lcn, "0")).toList()));
        return file;
    }

    private static void diff(int listId, String other, String summary) {
        Result result = ToolProcess.runHere("diff", Integer.toString(listId), other);
        assertEquals("", result.err());
        assertEquals(1, result.exit());
        assertTrue(result.out().endsWith("\n" + summary + "\n"), result.out().substring(result.out().length() - 100));
    }

    @Test
    void aDiffOfListsInOtherOrdersIsLinear() {
        String small = other(SMALL);
        String large = other(LARGE);
        assertLinear(() -> diff(SMALL, small, "8192 changed, 16382 moved"),
                () -> diff(LARGE, large, "32767 changed, 65533 moved"));
    }

    /** Exports a list, and imports it into another one, so that every record is added and stored. */
    private static void exchange(int listId, String format, int records) {
        String file = folder.resolve("exported." + format).toString();
        assertEquals("", run("export", Integer.toString(listId), "--format", format, "-o", file));
        assertEquals("1 file: " + records + " services; 0 malformed lines\nservice list 9: " + records
                + " added, 0 changed, 0 removed, 0 unchanged\n", run("import", "--list", "9", file));
        Kind.SERVICES.lists().delete(9);
    }

    @Test
    void anExportAsCsvAndItsImportAreLinear() {
        assertLinear(() -> exchange(SMALL, "csv", QUARTER), () -> exchange(LARGE, "csv", MOST));
    }

    @Test
    void aWholeListAsJsonAndItsImportFitIntoTheMemory() {
        exchange(LARGE, "json", MOST);
    }
}
