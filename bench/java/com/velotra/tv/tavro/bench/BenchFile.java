package com.velotra.tv.tavro.bench;

import com.google.gson.JsonElement;
import com.google.gson.JsonObject;
import com.google.gson.JsonParseException;
import com.google.gson.JsonParser;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.OptionalDouble;

/** The results of one program, in the form of Google Benchmark's JSON. */
final class BenchFile {
    /** One benchmark: its single run, or the aggregates of its repetitions by their names. */
    static final class Benchmark {
        final String name;
        private final Map<String, JsonObject> entries = new LinkedHashMap<>();

        private Benchmark(String name) {
            this.name = name;
        }

        /**
         * The name without the number of records at its end: {@code read:1000} and {@code read/1000} give {@code read}.
         */
        String family() {
            return name.replaceAll("[:/]\\d+$", "");
        }

        /** The number of records at the end of the name; nothing when there is none. */
        OptionalDouble records() {
            String digits = name.substring(family().length());
            return digits.isEmpty() ? OptionalDouble.empty()
                    : OptionalDouble.of(Double.parseDouble(digits.substring(1)));
        }

        /** Median time in nanoseconds. */
        double nanoseconds() {
            return nanoseconds("median");
        }

        /** Time of an aggregate in nanoseconds; without aggregates, the time of the run. */
        double nanoseconds(String aggregate) {
            JsonObject entry = entry(aggregate);
            return Times.nanoseconds(entry.get("real_time").getAsDouble(), entry.get("time_unit").getAsString());
        }

        boolean has(String aggregate) {
            return entries.containsKey(aggregate);
        }

        /** A further value of an aggregate; nothing when it is not there. */
        OptionalDouble value(String aggregate, String key) {
            JsonElement value = entry(aggregate).get(key);
            return value == null ? OptionalDouble.empty() : OptionalDouble.of(value.getAsDouble());
        }

        /** The same of the median. */
        OptionalDouble value(String key) {
            return value("median", key);
        }

        private JsonObject entry(String aggregate) {
            JsonObject entry = entries.getOrDefault(aggregate, entries.get("median"));
            return entry != null ? entry : entries.values().iterator().next();
        }
    }

    final JsonObject context;
    final List<Benchmark> benchmarks;

    private BenchFile(JsonObject context, List<Benchmark> benchmarks) {
        this.context = context;
        this.benchmarks = benchmarks;
    }

    /**
     * Reads a file.
     *
     * @throws IOException when it cannot be read, or is not such a file, with a message that names it
     */
    static BenchFile read(Path file) throws IOException {
        Map<String, Benchmark> found = new LinkedHashMap<>();
        try {
            JsonObject all = JsonParser.parseString(Files.readString(file)).getAsJsonObject();
            for (JsonElement element : all.getAsJsonArray("benchmarks")) {
                JsonObject entry = element.getAsJsonObject();
                // What Google Benchmark adds to the names of benchmarks with settings of their own.
                String name = entry.get("run_name").getAsString()
                        .replaceAll("/(iterations:\\d+|repeats:\\d+|manual_time|real_time)", "");
                boolean single = entry.get("run_type").getAsString().equals("iteration");
                Benchmark benchmark = found.computeIfAbsent(name, Benchmark::new);
                benchmark.entries.put(single ? "iteration" : entry.get("aggregate_name").getAsString(), entry);
                benchmark.nanoseconds(); // there is a time
            }
            return new BenchFile(all.getAsJsonObject("context"), new ArrayList<>(found.values()));
        } catch (NoSuchFileException e) {
            throw new IOException(
                    "there is no file '" + file + "'; ./tavro bench --json=" + file.getParent() + " makes it", e);
        } catch (JsonParseException | ClassCastException | IllegalStateException | IllegalArgumentException
                | NullPointerException e) {
            throw new IOException("'" + file + "' does not hold results of benchmarks as JSON: " + e.getMessage(), e);
        }
    }
}
