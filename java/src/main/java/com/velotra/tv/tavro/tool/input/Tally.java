package com.velotra.tv.tavro.tool.input;

import java.io.PrintStream;
import java.util.Collections;
import java.util.Map;
import java.util.TreeMap;

/** Counts occurrences in an import, by what they are. */
public final class Tally {
    private final String heading;
    private final Map<String, Integer> counts = new TreeMap<>();

    /** @param heading of the counts in the summary */
    public Tally(String heading) {
        this.heading = heading;
    }

    /** Counts one more. */
    public void count(String what) {
        count(what, 1);
    }

    /** Counts {@code number} more. */
    public void count(String what, int number) {
        counts.merge(what, number, Integer::sum);
    }

    /** Returns the counts. */
    public Map<String, Integer> counts() {
        return Collections.unmodifiableMap(counts);
    }

    /** Prints the heading and one line per count; nothing if there are no counts. */
    public void print(PrintStream out) {
        if (!counts.isEmpty()) {
            out.println(heading);
            counts.forEach((what, number) -> out.printf("  %6d  %s%n", number, what));
        }
    }
}
