package com.velotra.tv.tavro.tool.demo;

import com.velotra.tv.tavro.services.channellist.OrbitalPosition;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.SatelliteFlag;
import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import com.velotra.tv.tavro.services.channellist.TransportStreamRecord;
import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkInfo;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfo;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.importing.Importer;
import com.velotra.tv.tavro.tool.input.ImportReport;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.services.Service;
import com.velotra.tv.tavro.tool.services.ServiceImport;
import com.velotra.tv.tavro.tool.storage.Storage;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import com.velotra.tv.tavro.tool.tables.SatelliteTable;
import com.velotra.tv.tavro.tool.transponders.ListIds;
import com.velotra.tv.tavro.tool.transponders.StreamImport.Stored;
import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.io.PrintStream;
import java.lang.management.ManagementFactory;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.HashSet;
import java.util.List;
import java.util.Map;
import java.util.Optional;
import java.util.Set;
import java.util.function.Function;
import java.util.function.Predicate;
import java.util.stream.Collectors;

/** Imports, edits, filters, copies, stores and loads real service lists, and checks the result of every step. */
public final class Demo {
    /** The list of the satellite services. */
    public static final int SATELLITE = 1;

    private static final int CABLE = 2;
    private static final int TERRESTRIAL = 3;
    private static final int COPY = 4;
    private static final int LOADED = 5;

    private static final String SATELLITE_SERVICES = "channels.conf.sat";
    private static final String CABLE_SERVICES = "channels.conf.cable";
    private static final String TERRESTRIAL_SERVICES = "channels.conf.terr";

    private static final ListIds LISTS = new ListIds(TERRESTRIAL, CABLE, SATELLITE);

    private static final int ROWS = 8;

    private final VltTvChannelList lists;
    private final VltTvTransportStreamList streams = VltTvTransportStreamList.getInstance();
    private final VltTvNetworkList networks = VltTvNetworkList.getInstance();
    private final VltTvSatelliteList satelliteLists = VltTvSatelliteList.getInstance();
    private final Path sources;
    private final Path satelliteNames;
    private final Path dishSettings;
    private final Path work;
    private final PrintStream out;

    private final Set<Integer> positions = new HashSet<>(); // of the satellites

    private int step;
    private int checks;
    private int failed;

    /**
     * @param sources folder with the channels.conf examples
     * @param dishes folder with sources.conf and diseqc.conf
     * @param work folder for the files that the demo writes
     */
    public Demo(VltTvChannelList lists, Path sources, Path dishes, Path work, PrintStream out) {
        this.lists = lists;
        this.sources = sources;
        satelliteNames = dishes.resolve("sources.conf");
        dishSettings = dishes.resolve("diseqc.conf");
        this.work = work;
        this.out = out;
    }

    /** Returns why the demo must not use the storage directory; nothing if it is empty and below {@code work}. */
    public static Optional<String> problem(Path work) {
        Path home = Storage.directory().toAbsolutePath().normalize();
        Path folder = work.toAbsolutePath().normalize();
        String[] content = home.toFile().list();
        String reason = null;
        if (home.equals(folder) || !home.startsWith(folder)) {
            reason = "is not below " + folder;
        } else if (Files.exists(home) && (content == null || content.length > 0)) {
            reason = "is not an empty directory";
        }
        return Optional.ofNullable(reason)
                .map(r -> "refusing to run the demo: storage directory " + home + " " + r
                        + "; run ./tavro demo, or set TAVRO_HOME to a new directory below " + folder);
    }

    /** Runs all steps. Returns whether every check passed. */
    public boolean run() throws IOException, InterruptedException {
        for (Path file : List.of(satelliteNames, dishSettings, sources.resolve(SATELLITE_SERVICES),
                sources.resolve(CABLE_SERVICES), sources.resolve(TERRESTRIAL_SERVICES))) {
            Source.read(file); // fails now if one is missing
        }
        importSatellites();
        importServices();
        showTables();
        traceService();
        editServices();
        filterServices();
        copyAndRemove();
        storeAndLoad();
        out.println();
        if (failed == 0) {
            out.printf("All %d checks passed.%n", checks);
        } else {
            out.printf("%d of %d checks FAILED.%n", failed, checks);
        }
        return failed == 0;
    }

    private void heading(String text) {
        out.printf("%n%d. %s%n", ++step, text);
    }

    private void check(boolean passed, String what, Object... arguments) {
        checks++;
        failed += passed ? 0 : 1;
        out.printf("   %s %s%n", passed ? "ok  " : "FAIL", String.format(what, arguments));
    }

    private void checkSame(byte[] expected, byte[] found, String what, Object... arguments) {
        int difference = Arrays.mismatch(expected, found);
        check(expected.length > 0 && difference < 0, what, arguments);
        if (difference >= 0) {
            out.printf("        %d and %d bytes; the first difference is at byte %d of the record at index %d%n",
                    expected.length, found.length, difference % ServiceRecord.SIZE, difference / ServiceRecord.SIZE);
        }
    }

    private void importSatellites() throws IOException, InterruptedException {
        heading(
                "Satellites: every orbital position goes through nativeAdd, with its dish settings where they are "
                + "known");
        importFiles((service, id, stream) -> { }, satelliteNames, dishSettings);
        out.println();
        List<VltTvSatelliteInfo> stored = satelliteLists.getAll(SATELLITE);
        stored.forEach(satellite -> positions.add(satellite.getOrbitPosition()));
        Set<Integer> inUse = stored.stream().filter(satellite -> satellite.has(SatelliteFlag.ENABLED))
                .map(satellite -> satellite.id().recordId()).collect(Collectors.toSet());
        printTable(StoredLists.read(Kind.SATELLITES, SATELLITE).stream()
                .filter(satellite -> inUse.contains(satellite.id())).toList());
        List<String> source = satelliteLines();
        List<String> found = stored.stream()
                .map(satellite -> new OrbitalPosition(satellite.getOrbitPosition()) + " " + satellite.getName())
                .toList();
        check(found.equals(source),
                "%d satellites read back with the order, positions and names of the source",
                source.size());
    }

    /** Imports files like ./tavro import and prints the summary. Returns whether everything was imported. */
    private boolean importFiles(ServiceImport.Observer observer, Path... files)
            throws IOException, InterruptedException {
        ImportReport report = new ImportReport(System.err);
        Importer importer = new Importer(LISTS, report);
        for (Path file : files) {
            importer.read(file);
        }
        importer.store((transponder, id) -> { }, observer);
        ByteArrayOutputStream summary = new ByteArrayOutputStream();
        report.print(new PrintStream(summary, true, StandardCharsets.UTF_8));
        summary.toString(StandardCharsets.UTF_8).lines().forEach(line -> out.println("   " + line));
        return report.complete();
    }

    /** Returns position and name from every line that begins like a satellite, without the importer's parser. */
    private List<String> satelliteLines() throws IOException {
        return Files.readAllLines(satelliteNames, StandardCharsets.ISO_8859_1).stream()
                .filter(line -> line.matches("S\\d.*"))
                .map(line -> line.replaceFirst("^(S\\d+)([EW])", "$1.0$2").replaceFirst("\\s+", " ").strip())
                .toList();
    }

    private void importServices() throws IOException, InterruptedException {
        heading("Import: every service of three real channel lists goes through nativeAdd");
        importFile(SATELLITE_SERVICES, SATELLITE);
        importFile(CABLE_SERVICES, CABLE);
        importFile(TERRESTRIAL_SERVICES, TERRESTRIAL);
    }

    /** A service of a file, and where it was stored. */
    private record Imported(Service source, RecordId id, Stored stream) {}

    private void importFile(String name, int listId) throws IOException, InterruptedException {
        Path file = sources.resolve(name);
        out.printf("   %s:%n", name);
        List<Imported> imported = new ArrayList<>();
        boolean complete = importFiles((service, id, stream) -> imported.add(new Imported(service, id, stream)), file);
        SourceComparison source = new SourceComparison(file, positions);
        long expected = source.distinctServices();
        check(complete && imported.size() == expected, "every service of the file was imported: %d", expected);
        Map<Integer, ServiceRecord> stored =
                lists.getAll(listId).stream().collect(Collectors.toMap(ServiceRecord::recordId, Function.identity()));
        check(stored.size() == imported.size(), "list %d holds %d services", listId, stored.size());
        int same = 0;
        for (Imported service : imported) {
            ServiceRecord record = stored.get(service.id.recordId());
            boolean agrees = record != null && source.agrees(record, service.source, service.stream.id());
            if (!agrees) {
                out.printf("   %s is stored as%n%s", service.source,
                        record == null ? "nothing" : record.describe(false));
            }
            same += agrees ? 1 : 0;
        }
        check(same == imported.size(),
                "%d of %d services equal the source, and so does the tuning of their transport streams",
                same, imported.size());
    }

    private void showTables() {
        heading("List: the first services of each list, read under its read lock");
        for (int listId : new int[] {SATELLITE, CABLE, TERRESTRIAL}) {
            out.println();
            printTable(StoredLists.read(Kind.SERVICES, listId));
        }
        out.println();
        printTable(StoredLists.read(Kind.STREAMS, SATELLITE));
    }

    private void printTable(List<Record> records) {
        FirstRecords.lines(records, ROWS).forEach(line -> out.println("   " + line));
    }

    private void traceService() {
        heading("Trace: one service through all four lists, following the identifiers in the records");
        RecordId serviceId = idOf(lists.getAll(SATELLITE).get(0));
        ServiceRecord service = lists.get(serviceId).orElseThrow();
        out.printf("   service %-10s '%s', service id %d%n", serviceId, service.name(), service.serviceId());
        Optional<TransportStreamRecord> stream = SourceComparison.record(service.transportStream(), streams::get);
        stream.ifPresent(record -> out.printf("   stream %-11s %d kHz, transport stream id %d, network id %d%n",
                service.transportStream(), record.frequency(), record.transportStreamId(), record.originalNetworkId()));
        RecordId none = new RecordId(0, 0);
        RecordId networkId = stream.map(TransportStreamRecord::network).orElse(none);
        Optional<VltTvNetworkInfo> network = SourceComparison.record(networkId, id -> networks.get(id));
        network.ifPresent(info -> out.printf("   network %-10s '%s', network id %d%n",
                networkId, info.getNetworkName(), info.getNwlNetworkId()));
        RecordId satelliteId = stream.map(TransportStreamRecord::satellite).orElse(none);
        Optional<VltTvSatelliteInfo> satellite = SourceComparison.record(
                satelliteId, id -> satelliteLists.get(id));
        satellite.ifPresent(info -> out.printf("   satellite %-8s %s%n", satelliteId, SatelliteTable.summary(info)));
        traceChecks(service, stream.orElse(null), networkId, network.orElse(null), satelliteId, satellite.orElse(null));
    }

    /** A record that was not found is null. */
    private void traceChecks(ServiceRecord service, TransportStreamRecord stream, RecordId networkId,
            VltTvNetworkInfo network, RecordId satelliteId, VltTvSatelliteInfo satellite) {
        check(stream != null && lists.byTransportStreamRecord(service.transportStream()).contains(service),
                "the service's transport stream exists, and the service is among its services");
        check(network != null && network.getNwlNetworkId() == stream.originalNetworkId()
                && service.network().equals(networkId),
                "service and transport stream refer to the same network, whose record has the stream's network id");
        check(satellite != null && service.satellite().equals(satelliteId),
                "service and transport stream refer to the same satellite");
        check(satellite != null && streams.bySatellite(satelliteId).contains(stream),
                "the transport stream is among those of the satellite");
        List<TransportStreamRecord> all = streams.getAll(SATELLITE);
        Map<RecordId, Long> sizes =
                all.stream().collect(Collectors.groupingBy(TransportStreamRecord::satellite, Collectors.counting()));
        boolean allFound = sizes.keySet().stream().allMatch(
                id -> id.namesRecord() && streams.bySatellite(id).size() == sizes.get(id));
        check(allFound, "all %d transport streams are found through the %d satellite records that they refer to",
                all.size(), sizes.size());
    }

    private void editServices() {
        heading("Edit: rename one service, number another, hide a third");
        List<ServiceRecord> before = lists.getAll(SATELLITE);
        RecordId renamed = idOf(before.get(0));
        RecordId numbered = idOf(before.get(1));
        RecordId hidden = idOf(before.get(2));
        lists.updateAll(SATELLITE, List.of(
                VltTvChannelInfoBase.forRecord(renamed).setServiceName("My favorite").setVoptChNameEdited(true),
                VltTvChannelInfoBase.forRecord(numbered).setLogicalChannelNumber(7).setVoptChNumEdited(true)));
        lists.update(SATELLITE, VltTvChannelInfoBase.forRecord(hidden).setVnetVisible(false));

        List<ServiceRecord> after = lists.getAll(SATELLITE);
        FirstRecords.lines(FirstRecords.of(after), 3).stream().limit(4).forEach(line -> out.println("   " + line));
        check(after.get(0).name().equals("My favorite"), "%s is called '%s' instead of '%s'", renamed,
                after.get(0).name(), before.get(0).name());
        check(after.get(1).logicalChannelNumber() == 7, "%s has the number %d", numbered,
                after.get(1).logicalChannelNumber());
        check(before.get(2).visible() && !after.get(2).visible(), "%s is hidden", hidden);
        check(after.subList(3, after.size()).equals(before.subList(3, before.size())),
                "the other %d services are unchanged", after.size() - 3);
    }

    private static RecordId idOf(ServiceRecord service) {
        return new RecordId(SATELLITE, service.recordId());
    }

    private void filterServices() {
        heading("Filter: the services of one transport stream record, one transport stream id, one network");
        List<ServiceRecord> all = lists.getAll(SATELLITE);
        RecordId first = all.get(0).transportStream();
        List<ServiceRecord> expected = all.stream().filter(service -> service.transportStream().equals(first)).toList();
        List<ServiceRecord> found = lists.byTransportStreamRecord(first);
        printTable(FirstRecords.of(found));
        check(found.equals(expected), "%d services are on transport stream %s", found.size(), first);
        Map<RecordId, List<ServiceRecord>> byStream =
                all.stream().collect(Collectors.groupingBy(ServiceRecord::transportStream));
        boolean allAgree = byStream.entrySet().stream().allMatch(
                stream -> lists.byTransportStreamRecord(stream.getKey()).equals(stream.getValue()));
        check(allAgree,
                "filtering by each of the %d transport streams returns all %d services", byStream.size(), all.size());
        check(lists.byTransportStreamRecord(new RecordId(SATELLITE, 60000)).isEmpty(),
                "no service is on a transport stream that does not exist");

        Map<Integer, Integer> streamIds = streams.getAll(SATELLITE).stream()
                .collect(Collectors.toMap(TransportStreamRecord::recordId, TransportStreamRecord::transportStreamId));
        int streamId = streamIds.get(first.recordId());
        filter(all, service -> streamIds.get(service.transportStream().recordId()) == streamId,
                lists.byTransportStream(SATELLITE, streamId),
                "transport stream id " + streamId);
        Map<Integer, Integer> networkIds = networks.getAll(SATELLITE).stream()
                .collect(Collectors.toMap(network -> network.id().recordId(),
                        network -> network.getNwlNetworkId()));
        for (int networkId : networkIds.values()) {
            filter(all, service -> networkIds.get(service.network().recordId()) == networkId,
                    lists.byNetwork(SATELLITE, networkId),
                    "network id " + networkId);
        }
        check(lists.byTransportStream(SATELLITE, 65534).isEmpty() && lists.byNetwork(SATELLITE, 65534).isEmpty(),
                "no service has an unknown transport stream id or network id");
    }

    private void filter(List<ServiceRecord> all, Predicate<ServiceRecord> wanted, List<ServiceRecord> found,
            String name) {
        check(found.equals(all.stream().filter(wanted).toList()), "%d services have %s", found.size(), name);
    }

    private void copyAndRemove() {
        heading("Copy and remove: copy a list, remove one service, copy it back");
        lists.open(COPY);
        lists.copy(CABLE, COPY);
        byte[] original = lists.getAllBytes(CABLE);
        checkSame(original, lists.getAllBytes(COPY), "list %d is a copy of list %d", COPY, CABLE);
        ServiceRecord last = lists.getAll(CABLE).get(lists.getAll(CABLE).size() - 1);
        RecordId id = new RecordId(CABLE, last.recordId());
        lists.remove(COPY, id);
        check(lists.get(new RecordId(COPY, last.recordId())).isEmpty(), "%s is removed from list %d", last, COPY);
        lists.add(COPY, id);
        checkSame(original, lists.getAllBytes(COPY),
                "it is back, copied from list %d with its record id", CABLE);
    }

    private void storeAndLoad() throws IOException, InterruptedException {
        heading("Store and load: store a list to a file and load it in a second virtual machine");
        Path file = work.resolve("satellite.list");
        Path records = work.resolve("loaded.records");
        Files.deleteIfExists(records);
        lists.store(SATELLITE, file.toString());
        out.printf("   %s: %d bytes%n", file, Files.size(file));
        check(runSecondMachine(file, records) == 0, "the second virtual machine loaded it into list %d", LOADED);
        byte[] stored = lists.getAllBytes(SATELLITE);
        byte[] loaded = Files.exists(records) ? Files.readAllBytes(records) : new byte[0];
        checkSame(stored, loaded,
                "%d bytes stored and %d loaded: equal byte for byte", stored.length, loaded.length);
        checkSame(stored, lists.getAllBytes(LOADED), "this virtual machine sees list %d too", LOADED);
    }

    private static int runSecondMachine(Path file, Path records) throws IOException, InterruptedException {
        List<String> command = new ArrayList<>();
        command.add(Path.of(System.getProperty("java.home"), "bin", "java").toString());
        // The options of this machine: where the library is, and how to run on an emulator.
        command.addAll(ManagementFactory.getRuntimeMXBean().getInputArguments());
        command.addAll(List.of("-cp", System.getProperty("java.class.path"), SecondMachine.class.getName()));
        command.addAll(List.of(Integer.toString(LOADED), file.toString(), records.toString()));
        return new ProcessBuilder(command).inheritIO().start().waitFor();
    }
}
