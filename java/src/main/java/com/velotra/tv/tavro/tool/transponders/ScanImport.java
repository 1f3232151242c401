package com.velotra.tv.tavro.tool.transponders;

import com.velotra.tv.tavro.services.channellist.ChannelListException;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.satellites.Satellites;
import com.velotra.tv.tavro.tool.sources.Tally;
import java.io.IOException;
import java.io.PrintStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.HashMap;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Optional;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import java.util.stream.Stream;

/** Adds the transponders of scan tables to transport stream lists, one list a medium. */
public final class ScanImport {
    /** Told of every transponder that became a record. */
    public interface Observer {
        void imported(ScanTable.Entry entry, RecordId id);
    }

    // Scan tables say in their names where the satellite stands, as in Astra-19.2E.
    private static final Pattern POSITION = Pattern.compile("[-_]([0-9.]+[EW])$");

    private static final int PROGRESS_EVERY = 1000;
    private static final int MAX_RECORDS = 65_534; // of one list: record ids have 16 bits, and the two ends are not given out

    private final VltTvTransportStreamList lists;
    private final int firstList;
    private final PrintStream progress;
    private final Observer observer;

    private final Satellites satellites;
    private final Tally imported = new Tally("Imported, by delivery system:");
    private final Tally notImported = new Tally("Not imported, by reason:");
    private final Tally left = new Tally("Imported without what a record has no place for:");
    private final Tally withoutSatellite = new Tally("Imported without a satellite record, by reason:");
    private final Map<Integer, Integer> perList = new LinkedHashMap<>();
    private final Map<Integer, Integer> sizes = new HashMap<>(); // records in each list, with those of before
    private int files;
    private int entries;
    private int malformed;

    /**
     * Terrestrial streams go to list {@code firstList}, cable to the next one, satellite to the one behind it, where they
     * point at those of {@code satellites} that stand where their file's name says.
     */
    public ScanImport(
            VltTvTransportStreamList lists, Satellites satellites, int firstList, PrintStream progress, Observer observer) {
        this.lists = lists;
        this.satellites = satellites;
        this.firstList = firstList;
        this.progress = progress;
        this.observer = observer;
    }

    /** Imports a file, or all files below a folder in the order of their names. */
    public void add(Path path) throws IOException {
        List<Path> found;
        try (Stream<Path> tree = Files.walk(path)) {
            found = tree.filter(Files::isRegularFile).sorted().toList();
        }
        for (Path file : found) {
            addFile(file);
        }
    }

    private void addFile(Path file) throws IOException {
        ScanTable table = ScanTable.read(file);
        files++;
        malformed += table.malformed().size();
        table.malformed().forEach(line -> progress.println("  left out " + line));
        for (ScanTable.Entry entry : table.entries()) {
            entries++;
            try {
                Mapping mapping = new Mapping(entry);
                Optional<String> unmatched = point(mapping, file);
                observer.imported(entry, add(mapping));
                imported.count(mapping.systemName());
                unmatched.ifPresent(withoutSatellite::count);
                mapping.left().stream().distinct().forEach(left::count);
            } catch (Mapping.NotImportable | ChannelListException e) {
                notImported.count(e.getMessage());
                progress.println("  not imported " + entry.place() + ": " + e.getMessage());
            }
            if (entries % PROGRESS_EVERY == 0) {
                progress.printf("  %d transponders of %d files%n", entries, files);
            }
        }
    }

    /** Makes a satellite stream point at its satellite, or says why it cannot. */
    private Optional<String> point(Mapping mapping, Path file) {
        if (mapping.medium() != TunerValues.SATELLITE) {
            return Optional.empty();
        }
        Matcher position = POSITION.matcher(file.getFileName().toString());
        if (!position.find()) {
            return Optional.of("no orbital position at the end of the file's name");
        }
        return satellites.pointAt("S" + position.group(1), mapping.info()::setTslSatlRecId);
    }

    private RecordId add(Mapping mapping) throws Mapping.NotImportable {
        int listId = firstList + mapping.medium() - 1;
        if (!sizes.containsKey(listId)) {
            lists.open(listId);
            sizes.put(listId, lists.getAll(listId).size());
            perList.put(listId, 0);
        }
        if (sizes.get(listId) == MAX_RECORDS) {
            throw new Mapping.NotImportable("list " + listId + " is full: it has " + MAX_RECORDS + " records");
        }
        RecordId id = lists.add(listId, mapping.info());
        perList.merge(listId, 1, Integer::sum);
        sizes.merge(listId, 1, Integer::sum);
        return id;
    }

    /** Transponders met so far. */
    public int entries() {
        return entries;
    }

    /** Those that became records, by delivery system. */
    public Map<String, Integer> imported() {
        return imported.counts();
    }

    /** Those that did not, by reason. */
    public Map<String, Integer> notImported() {
        return notImported.counts();
    }

    /** Transponders of which something was left out because the record has no place for it, by what it was. */
    public Map<String, Integer> left() {
        return left.counts();
    }

    /** Satellite transponders that point at no satellite record, by reason. */
    public Map<String, Integer> withoutSatellite() {
        return withoutSatellite.counts();
    }

    /** Records added, by list. */
    public Map<Integer, Integer> perList() {
        return perList;
    }

    /** Prints what came of it; the counts of the first two parts add up to the transponders in the files. */
    public void printSummary(PrintStream out) {
        out.printf("%d files, %d transponders, %d malformed lines%n", files, entries, malformed);
        for (Tally tally : List.of(imported, notImported, left, withoutSatellite)) {
            tally.print(out);
        }
        perList.forEach((list, number) -> out.printf("transport stream list %d: %d records%n", list, number));
    }
}
