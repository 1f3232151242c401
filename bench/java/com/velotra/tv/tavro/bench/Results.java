package com.velotra.tv.tavro.bench;

import com.google.gson.GsonBuilder;
import com.google.gson.JsonArray;
import com.google.gson.JsonObject;
import java.io.IOException;
import java.io.PrintStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.time.ZonedDateTime;
import java.time.format.DateTimeFormatter;
import java.time.temporal.ChronoUnit;
import java.util.ArrayList;
import java.util.List;
import java.util.Locale;

/** Results as a table, and as JSON in Google Benchmark's format, with three aggregates for each benchmark. */
public final class Results {
    private static final String ROW = "%-42s %10s  %-21s %6s  %-13s %6s%n";

    private final List<Result> results = new ArrayList<>();
    private final JsonObject context = new JsonObject();

    /** @param program name of the benchmark program */
    public Results(String program) {
        ZonedDateTime now = ZonedDateTime.now().truncatedTo(ChronoUnit.SECONDS);
        context.addProperty("date", now.format(DateTimeFormatter.ISO_OFFSET_DATE_TIME));
        context.addProperty("program", program);
        context.addProperty("num_cpus", Runtime.getRuntime().availableProcessors());
        context.addProperty("java", System.getProperty("java.vm.name") + ' '
                + System.getProperty("java.runtime.version"));
        context.addProperty("heap_bytes", Runtime.getRuntime().maxMemory());
    }

    /** Adds a value to the JSON's context. */
    public void note(String key, Number value) {
        context.addProperty(key, value);
    }

    /** Prints the header of the table. */
    public void head(PrintStream out, String compared) {
        out.printf(ROW, "Benchmark", "median", "p10 .. p90", compared, "p10 .. p90", "target");
    }

    /** Adds results and prints their rows. */
    public void add(List<Result> more, PrintStream out) {
        results.addAll(more);
        for (Result result : more) {
            Samples time = result.nanoseconds();
            Samples ratio = result.ratio();
            String target = result.target().isEmpty() ? "" : format("%.2f", result.target().getAsDouble());
            boolean missed = ratio != null && result.target().isPresent()
                    && ratio.quantile(0.5) > result.target().getAsDouble();
            out.printf(ROW, result.name(), Times.text(time.quantile(0.5)),
                    Times.text(time.quantile(0.1)) + " .. " + Times.text(time.quantile(0.9)),
                    ratio == null ? "" : format("%.2f", ratio.quantile(0.5)),
                    ratio == null ? "" : format("%.2f .. %.2f", ratio.quantile(0.1), ratio.quantile(0.9)),
                    target + (missed ? " missed" : ""));
        }
        out.flush();
    }

    private static String format(String format, Object... values) {
        return String.format(Locale.ROOT, format, values);
    }

    /** Writes all results. */
    public void write(Path file) throws IOException {
        JsonArray benchmarks = new JsonArray();
        for (Result result : results) {
            benchmarks.add(aggregate(result, "median", 0.5));
            benchmarks.add(aggregate(result, "p10", 0.1));
            benchmarks.add(aggregate(result, "p90", 0.9));
        }
        JsonObject all = new JsonObject();
        all.add("context", context);
        all.add("benchmarks", benchmarks);
        Files.writeString(file, new GsonBuilder().setPrettyPrinting().create().toJson(all) + '\n');
    }

    private static JsonObject aggregate(Result result, String name, double share) {
        JsonObject entry = new JsonObject();
        entry.addProperty("name", result.name() + '_' + name);
        entry.addProperty("run_name", result.name());
        entry.addProperty("run_type", "aggregate");
        entry.addProperty("repetitions", result.nanoseconds().count());
        entry.addProperty("aggregate_name", name);
        entry.addProperty("aggregate_unit", "time");
        entry.addProperty("iterations", result.iterations());
        entry.addProperty("real_time", rounded(result.nanoseconds().quantile(share)));
        entry.addProperty("time_unit", "ns");
        if (result.ratio() != null) {
            entry.addProperty("ratio", rounded(result.ratio().quantile(share)));
        }
        result.target().ifPresent(target -> entry.addProperty("target", target));
        return entry;
    }

    private static double rounded(double value) {
        return Math.round(value * 1000) / 1000.0;
    }
}
