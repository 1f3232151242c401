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

/** The results of one program, in Google Benchmark's JSON format. */
final class BenchFile {
    /** One benchmark: its single run, or the aggregates of its repetitions by name. */
    static final class Benchmark {
        final String name;
        private final Map<String, JsonObject> entries = new LinkedHashMap<>();

        private Benchmark(String name) {
            this.name = name;
        }

        /** The name without the number of records: {@code read} for {@code read:1000} and {@code read/1000}. */
        String family() {
            return name.replaceAll("[:/]\\d+$", "");
        }

        /** The number of records at the end of the name, if any. */
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

        /** Another value of an aggregate, if it exists. */
        OptionalDouble value(String aggregate, String key) {
            JsonElement value = entry(aggregate).get(key);
            return value == null ? OptionalDouble.empty() : OptionalDouble.of(value.getAsDouble());
        }

        /** Another value of the median, if it exists. */
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
     * @throws IOException if the file cannot be read or does not contain results
     */
    static BenchFile read(Path file) throws IOException {
        Map<String, Benchmark> found = new LinkedHashMap<>();
        try {
            JsonObject all = JsonParser.parseString(Files.readString(file)).getAsJsonObject();
            for (JsonElement element : all.getAsJsonArray("benchmarks")) {
                JsonObject entry = element.getAsJsonObject();
                // Remove the settings that Google Benchmark appends to names.
                String name = entry.get("run_name").getAsString()
                        .replaceAll("/(iterations:\\d+|repeats:\\d+|manual_time|real_time)", "");
                boolean single = entry.get("run_type").getAsString().equals("iteration");
                Benchmark benchmark = found.computeIfAbsent(name, Benchmark::new);
                benchmark.entries.put(single ? "iteration" : entry.get("aggregate_name").getAsString(), entry);
                benchmark.nanoseconds(); // throws if there is no time
            }
            return new BenchFile(all.getAsJsonObject("context"), new ArrayList<>(found.values()));
        } catch (NoSuchFileException e) {
            throw new IOException(
                    "file '" + file + "' not found; create it with ./tavro bench --json=" + file.getParent(), e);
        } catch (JsonParseException | ClassCastException | IllegalStateException | IllegalArgumentException
                | NullPointerException e) {
            throw new IOException("'" + file + "' does not contain benchmark results as JSON: " + e.getMessage(), e);
        }
    }
}
