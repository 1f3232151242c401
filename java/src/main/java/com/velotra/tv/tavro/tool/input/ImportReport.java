package com.velotra.tv.tavro.tool.input;

import java.io.PrintStream;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.function.IntSupplier;

/** What an import does: reports problems and progress while it runs, and prints a summary at its end. */
public final class ImportReport {
    private static final int PROGRESS_EVERY = 1000;
    private static final int LINES_PER_REASON = 10;

    private final PrintStream progress;
    private final Tally read = new Tally("Read:");
    private final Tally imported = new Tally("Transport streams stored, by delivery system:");
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

    /** @param progress takes a line for everything that is not imported, and for every thousand records */
    public ImportReport(PrintStream progress) {
        this.progress = progress;
    }

    /** A file was read: {@code count} things of the kind {@code what} are in it, and some lines cannot be read. */
    public void read(int count, String what, List<Malformed> lines) {
        files++;
        malformed += lines.size();
        alsoRead(count, what);
        lines.forEach(line -> print("malformed lines", "  left out " + line));
    }

    /** More things were in the same file. */
    public void alsoRead(int count, String what) {
        if (count > 0) {
            read.count(what, count);
        }
    }

    /** A file cannot be imported; it fails the import. */
    public void refusedFile(String reason) {
        refused++;
        progress.println("tavro: " + reason);
    }

    /** A file in a folder cannot be imported; it is passed over, since nobody named it. */
    public void skippedFile(String reason) {
        skipped.count("a file in a folder that cannot be used");
        print("skipped files", "  " + reason);
    }

    /** Something in a file is not for these lists; that is not a failure. */
    public void skipped(String reason) {
        skipped.count(reason);
    }

    /** Something that should have become a record, or part of one, did not. */
    public void notImported(Object place, String reason) {
        notImported.count(reason);
        print(reason, "  not imported " + place + ": " + reason);
    }

    /** A value was dropped. */
    public void dropped(String value) {
        dropped.count(value);
    }

    /** A record was stored that refers to no satellite. */
    public void withoutSatellite(String reason) {
        withoutSatellite.count(reason);
    }

    /** A transponder of that delivery system was stored. */
    public void imported(String deliverySystem) {
        imported.count(deliverySystem);
    }

    /** A satellite was stored with its dish settings. */
    public void switched() {
        switched++;
    }

    /** Another import is storing; this one goes on when it has finished. */
    public void waiting() {
        progress.println("  waiting for another import to finish …");
    }

    /** One more of {@code all} things was taken. */
    public void step(int all, String what) {
        done++;
        if (done % PROGRESS_EVERY == 0) {
            progress.printf("  %d of %d %s%n", done, all, what);
        }
    }

    /** The next steps are about other things. */
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

    /** The counts of the list that is called {@code name} and holds {@code size} records, begun now or before. */
    public ListCounts list(String name, IntSupplier size) {
        return lists.computeIfAbsent(name, key -> new ListCounts(key, size));
    }

    /** Whether everything that should be imported was. */
    public boolean complete() {
        return malformed == 0 && refused == 0 && notImported.counts().isEmpty();
    }

    /** Why no file could be used. */
    public String whyNothing() {
        return refused > 0
                ? Text.count(refused, "file") + " cannot be used, for the reasons above"
                : "no file is in a known format; " + Format.KNOWN;
    }

    /** Whether any file could be used. */
    public boolean anyFile() {
        return files > 0;
    }

    /** Lines that could not be read. */
    public int malformed() {
        return malformed;
    }

    /** Things that are not imported, by reason. */
    public Map<String, Integer> notImported() {
        return notImported.counts();
    }

    /** Values that were dropped, by what they are. */
    public Map<String, Integer> dropped() {
        return dropped.counts();
    }

    /** What was passed over, by reason. */
    public Map<String, Integer> skipped() {
        return skipped.counts();
    }

    /** Transponders that became records, by delivery system. */
    public Map<String, Integer> imported() {
        return imported.counts();
    }

    /** Records that refer to no satellite, by reason. */
    public Map<String, Integer> withoutSatellite() {
        return withoutSatellite.counts();
    }

    /** Prints the summary: what was read, what became of it, and what the lists hold now. */
    public void print(PrintStream out) {
        List<String> counts = new ArrayList<>();
        read.counts().forEach((what, number) -> counts.add(Text.count(number, what)));
        out.printf("%s: %s; %s%n", Text.count(files, "file"),
                counts.isEmpty() ? "nothing to import" : String.join(", ", counts),
                Text.count(malformed, "malformed line"));
        for (Tally tally : List.of(imported, skipped, notImported, dropped, withoutSatellite)) {
            tally.print(out);
        }
        if (switched > 0) {
            out.printf("%s with dish settings%n", Text.count(switched, "satellite"));
        }
        lists.values().forEach(out::println);
    }
}
