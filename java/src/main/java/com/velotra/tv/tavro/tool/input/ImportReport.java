package com.velotra.tv.tavro.tool.input;

import java.io.PrintStream;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.function.IntSupplier;

/** Reports problems and progress while an import runs, and prints a summary at the end. */
public final class ImportReport {
    private static final int PROGRESS_EVERY = 1000;
    private static final int LINES_PER_REASON = 20;

    private final PrintStream progress;
    private final Tally read = new Tally("Read:");
    private final Tally imported = new Tally("Transport streams, by delivery system:");
    private final Tally skipped = new Tally("Skipped, by reason:");
    private final Tally notImported = new Tally("Not imported, by reason:");
    private final Tally dropped = new Tally("Imported with values dropped (no field in the record):");
    private final Tally withoutSatellite = new Tally("Imported without a satellite record, by reason:");
    private final Map<String, ListCounts> lists = new LinkedHashMap<>();
    private final Map<String, Integer> printed = new HashMap<>(); // lines by reason
    private int files;
    private int malformed;
    private int refused;
    private int switched;
    private int done;

    /** @param progress receives a line for everything that is not imported and for every thousand records */
    public ImportReport(PrintStream progress) {
        this.progress = progress;
    }

    /** A file was read. It has {@code count} items called {@code what}, and malformed {@code lines}. */
    public void read(int count, String what, List<Malformed> lines) {
        files++;
        alsoRead(count, what);
        malformedLines(lines);
    }

    /** Further malformed lines of a file that was read. */
    public void malformedLines(List<Malformed> lines) {
        malformed += lines.size();
        lines.forEach(line -> print("malformed lines", "  malformed line " + line));
    }

    /** The same file has other items too. */
    public void alsoRead(int count, String what) {
        if (count > 0) {
            read.count(what, count);
        }
    }

    /** A file cannot be imported, so the import fails. */
    public void refusedFile(String reason) {
        refused++;
        progress.println("tavro: " + reason);
    }

    /** A file in a folder cannot be imported. The import does not fail, since the user did not name the file. */
    public void skippedFile(String reason) {
        skipped.count("an unusable file in a folder");
        print("skipped files", "  " + reason);
    }

    /** An item of a file does not belong in these lists. The import does not fail. */
    public void skipped(String reason) {
        skipped.count(reason);
    }

    /** An item should have become a record, or part of one, and did not. */
    public void notImported(Object place, String reason) {
        notImported.count(reason);
        print(reason, "  not imported " + place + ": " + reason);
    }

    /** A value was dropped because the record has no field for it. */
    public void dropped(String value) {
        dropped.count(value);
    }

    /** A record was stored without a reference to a satellite. */
    public void withoutSatellite(String reason) {
        withoutSatellite.count(reason);
    }

    /** A transponder of this delivery system was stored. */
    public void imported(String deliverySystem) {
        imported.count(deliverySystem);
    }

    /** A satellite was stored with its dish settings. */
    public void switched() {
        switched++;
    }

    /** Another command is changing lists; this one waits until it has finished. */
    public void waiting() {
        progress.println("  waiting for another command that changes lists …");
    }

    /** One more of {@code all} items was processed. */
    public void step(int all, String what) {
        done++;
        if (done % PROGRESS_EVERY == 0) {
            progress.printf("  %d of %d %s%n", done, all, what);
        }
    }

    /** The following steps are about other items. */
    public void beginSteps() {
        done = 0;
    }

    private void print(String reason, String line) {
        int lines = printed.merge(reason, 1, Integer::sum);
        if (lines <= LINES_PER_REASON) {
            progress.println(line);
        } else if (lines == LINES_PER_REASON + 1) {
            progress.println("  … more of these (" + reason + ") are counted in the summary");
        }
    }

    /** Returns the counts of the list called {@code name}, which holds {@code size} records. */
    public ListCounts list(String name, IntSupplier size) {
        return lists.computeIfAbsent(name, key -> new ListCounts(key, size));
    }

    /** Returns whether everything was imported. */
    public boolean complete() {
        return malformed == 0 && refused == 0 && notImported.counts().isEmpty();
    }

    /** Returns why no file could be used. */
    public String whyNothing() {
        return refused > 0
                ? Text.count(refused, "file") + " cannot be used; see the messages above"
                : "no file is in a known format; " + Format.KNOWN;
    }

    /** Returns whether any file could be used. */
    public boolean anyFile() {
        return files > 0;
    }

    /** Returns the number of malformed lines. */
    public int malformed() {
        return malformed;
    }

    /** Items that were not imported, by reason. */
    public Map<String, Integer> notImported() {
        return notImported.counts();
    }

    /** Dropped values, by what they are. */
    public Map<String, Integer> dropped() {
        return dropped.counts();
    }

    /** Skipped items, by reason. */
    public Map<String, Integer> skipped() {
        return skipped.counts();
    }

    /** Stored transponders, by delivery system. */
    public Map<String, Integer> imported() {
        return imported.counts();
    }

    /** Records without a satellite, by reason. */
    public Map<String, Integer> withoutSatellite() {
        return withoutSatellite.counts();
    }

    /** Returns what cannot be imported, as in "2 malformed lines, 1 entry without a record". */
    public String problems() {
        List<String> problems = new ArrayList<>();
        if (refused > 0) {
            problems.add(Text.count(refused, "unusable file"));
        }
        if (malformed > 0) {
            problems.add(Text.count(malformed, "malformed line"));
        }
        int entries = notImported.counts().values().stream().mapToInt(Integer::intValue).sum();
        if (entries > 0) {
            problems.add(entries + (entries == 1 ? " entry" : " entries") + " without a record");
        }
        return String.join(", ", problems);
    }

    /** Prints the summary of an import that stored nothing: what was read, and why it was not imported. */
    public void printProblems(PrintStream out) {
        printRead(out);
        skipped.print(out);
        notImported.print(out);
    }

    private void printRead(PrintStream out) {
        List<String> counts = new ArrayList<>();
        read.counts().forEach((what, number) -> counts.add(Text.count(number, what)));
        out.printf("%s: %s; %s%n", Text.count(files, "file"),
                counts.isEmpty() ? "nothing to import" : String.join(", ", counts),
                Text.count(malformed, "malformed line"));
    }

    /** Prints the summary: what was read, what happened to it, and how many records the lists hold now. */
    public void print(PrintStream out) {
        printRead(out);
        for (Tally tally : List.of(imported, skipped, notImported, dropped, withoutSatellite)) {
            tally.print(out);
        }
        if (switched > 0) {
            out.printf("%s with dish settings%n", Text.count(switched, "satellite"));
        }
        lists.values().forEach(out::println);
    }
}
