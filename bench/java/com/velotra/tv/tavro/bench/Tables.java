package com.velotra.tv.tavro.bench;

import com.velotra.tv.tavro.bench.BenchFile.Benchmark;
import java.util.ArrayList;
import java.util.Collections;
import java.util.List;
import java.util.Locale;
import java.util.OptionalDouble;
import java.util.function.DoubleFunction;

/** The results of the benchmark programs as Markdown tables. Ratios above their targets are bold. */
final class Tables {
    // Targets of the natives, as in native_bench; the results of the contests have their own targets.
    private static final double FLOOR_TARGET = 1.10;
    private static final double COPY_TARGET = 1.15;
    private static final double GROWTH_TARGET = 1.30;

    private Tables() {}

    /** The natives compared with the floor. */
    static String natives(BenchFile file) {
        List<String> rows = head("Operation", "Library", "p10 .. p90", "Floor", "p10 .. p90", "Ratio", "p10 .. p90",
                "To a copy",
                "Growth");
        for (Benchmark one : file.benchmarks) {
            rows.add(row(one.name, text(one.value("library_ns"), Times::text), spread(one, "library_ns", Times::text),
                    text(one.value("floor_ns"), Times::text), spread(one, "floor_ns", Times::text),
                    judged(one.value("ratio"), FLOOR_TARGET), spread(one, "ratio", Tables::ratio),
                    judged(one.value("copy_ratio"), COPY_TARGET), judged(one.value("growth"), GROWTH_TARGET)));
        }
        return String.join("", rows);
    }

    /** Contests: each entrant's time, and the ratio of the first entrant's time to it. */
    static String contests(BenchFile file) {
        List<String> rows = head("Benchmark", "Median", "p10 .. p90", "Ratio", "p10 .. p90", "Target");
        for (Benchmark one : file.benchmarks) {
            OptionalDouble target = one.value("target");
            rows.add(row(one.name, Times.text(one.nanoseconds()),
                    range(OptionalDouble.of(one.nanoseconds("p10")), OptionalDouble.of(one.nanoseconds("p90")),
                            Times::text),
                    judged(one.value("ratio"), target.orElse(Double.MAX_VALUE)),
                    range(one.value("p10", "ratio"), one.value("p90", "ratio"), Tables::ratio),
                    text(target, Tables::ratio)));
        }
        return String.join("", rows);
    }

    /** Times only, with their coefficients of variation. */
    static String times(BenchFile file) {
        List<String> rows = head("Benchmark", "Median", "Variation");
        for (Benchmark one : file.benchmarks) {
            OptionalDouble variation = one.has("cv") ? one.value("cv", "real_time") : OptionalDouble.empty();
            rows.add(row(one.name, Times.text(one.nanoseconds()),
                    text(variation, share -> String.format(Locale.ROOT, "%.0f %%", 100 * share))));
        }
        return String.join("", rows);
    }

    private static String spread(Benchmark one, String key, DoubleFunction<String> text) {
        return range(one.value(key + "_p10"), one.value(key + "_p90"), text);
    }

    private static String range(OptionalDouble from, OptionalDouble to, DoubleFunction<String> text) {
        return from.isEmpty() || to.isEmpty() ? "" : text(from, text) + " .. " + text(to, text);
    }

    private static String text(OptionalDouble value, DoubleFunction<String> text) {
        return value.isEmpty() ? "" : text.apply(value.getAsDouble());
    }

    private static String judged(OptionalDouble ratio, double target) {
        return text(ratio, value -> value > target ? "**" + ratio(value) + "**" : ratio(value));
    }

    private static String ratio(double value) {
        return String.format(Locale.ROOT, "%.2f", value);
    }

    private static List<String> head(String... cells) {
        List<String> rows = new ArrayList<>();
        rows.add("| " + String.join(" | ", cells) + " |\n");
        rows.add("|---|" + String.join("", Collections.nCopies(cells.length - 1, "---:|")) + "\n");
        return rows;
    }

    private static String row(String name, String... cells) {
        return "| `" + name + "` | " + String.join(" | ", cells) + " |\n";
    }
}
