package com.velotra.tv.tavro.tool.transponders;

import com.velotra.tv.tavro.services.channellist.ChannelListException;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import java.io.IOException;
import java.io.PrintStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.HashMap;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.TreeMap;
import java.util.stream.Stream;

/** Adds the transponders of scan tables to transport stream lists, one list a medium. */
public final class ScanImport {
    /** Told of every transponder that became a record. */
    public interface Observer {
        void imported(ScanTable.Entry entry, RecordId id);
    }

    private static final int PROGRESS_EVERY = 1000;
    private static final int MAX_RECORDS = 65_534; // of one list: record ids have 16 bits, and the two ends are not given out

    private final VltTvTransportStreamList lists;
    private final int firstList;
    private final PrintStream progress;
    private final Observer observer;

    private final Map<String, Integer> imported = new TreeMap<>();
    private final Map<String, Integer> notImported = new TreeMap<>();
    private final Map<String, Integer> left = new TreeMap<>();
    private final Map<Integer, Integer> perList = new LinkedHashMap<>();
    private final Map<Integer, Integer> sizes = new HashMap<>(); // records in each list, with those of before
    private int files;
    private int entries;
    private int malformed;

    /** Terrestrial streams go to list {@code firstList}, cable to the next one, satellite to the one behind it. */
    public ScanImport(VltTvTransportStreamList lists, int firstList, PrintStream progress, Observer observer) {
        this.lists = lists;
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
                observer.imported(entry, add(mapping));
                count(imported, mapping.systemName());
                mapping.left().stream().distinct().forEach(reason -> count(left, reason));
            } catch (Mapping.NotImportable | ChannelListException e) {
                count(notImported, e.getMessage());
                progress.println("  not imported " + entry.place() + ": " + e.getMessage());
            }
            if (entries % PROGRESS_EVERY == 0) {
                progress.printf("  %d transponders of %d files%n", entries, files);
            }
        }
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

    private static void count(Map<String, Integer> counts, String what) {
        counts.merge(what, 1, Integer::sum);
    }

    /** Transponders met so far. */
    public int entries() {
        return entries;
    }

    /** Those that became records, by delivery system. */
    public Map<String, Integer> imported() {
        return imported;
    }

    /** Those that did not, by reason. */
    public Map<String, Integer> notImported() {
        return notImported;
    }

    /** Transponders of which something was left out because the record has no place for it, by what it was. */
    public Map<String, Integer> left() {
        return left;
    }

    /** Records added, by list. */
    public Map<Integer, Integer> perList() {
        return perList;
    }

    /** Prints what came of it; the counts of the first two parts add up to the transponders in the files. */
    public void printSummary(PrintStream out) {
        out.printf("%d files, %d transponders, %d malformed lines%n", files, entries, malformed);
        print(out, "Imported, by delivery system:", imported);
        print(out, "Not imported, by reason:", notImported);
        print(out, "Imported without what a record has no place for:", left);
        perList.forEach((list, number) -> out.printf("transport stream list %d: %d records%n", list, number));
    }

    private static void print(PrintStream out, String heading, Map<String, Integer> counts) {
        if (!counts.isEmpty()) {
            out.println(heading);
            counts.forEach((what, number) -> out.printf("  %6d  %s%n", number, what));
        }
    }
}
