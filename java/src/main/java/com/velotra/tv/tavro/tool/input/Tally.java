package com.velotra.tv.tavro.tool.input;

import java.io.PrintStream;
import java.util.Collections;
import java.util.Map;
import java.util.TreeMap;

/** How often something came up in an import, by what it was. */
public final class Tally {
    private final String heading;
    private final Map<String, Integer> counts = new TreeMap<>();

    /** @param heading what the tally is about, as its summary begins */
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

    /** What came up, with how often. */
    public Map<String, Integer> counts() {
        return Collections.unmodifiableMap(counts);
    }

    /** Prints the heading and a line for each thing that came up; nothing when nothing did. */
    public void print(PrintStream out) {
        if (!counts.isEmpty()) {
            out.println(heading);
            counts.forEach((what, number) -> out.printf("  %6d  %s%n", number, what));
        }
    }
}
