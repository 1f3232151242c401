package com.velotra.tv.tavro.bench;

import com.google.gson.JsonElement;
import com.velotra.tv.tavro.bench.BenchFile.Benchmark;
import java.io.IOException;
import java.nio.file.DirectoryStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.LinkedHashMap;
import java.util.Map;
import java.util.OptionalDouble;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/**
 * Puts the results of {@code ./tavro bench --json} into a document, as tables and plots.
 *
 * <pre>Document RESULTS TEMPLATE TARGET</pre>
 *
 * RESULTS is the folder with the JSON files, TEMPLATE a document with sections to fill, TARGET the folder for the new
 * document and its plots, which go to the subfolder {@code performance}. A section begins with {@code <!-- NAME -->}
 * and ends with {@code <!-- end -->}.
 */
public final class Document {
    private static final String PLOTS = "performance";
    private static final Pattern SECTION = Pattern.compile("(<!-- (\\w+) -->\n).*?(<!-- end -->)", Pattern.DOTALL);
    private static final int LEAST_SIZES = 3;

    private final Map<String, String> sections = new LinkedHashMap<>();
    private final Map<String, Plot> plots = new LinkedHashMap<>();

    private Document(Path results) throws IOException {
        BenchFile natives = BenchFile.read(results.resolve("native.json"));
        BenchFile peers = BenchFile.read(results.resolve("peers.json"));
        BenchFile host = BenchFile.read(results.resolve("host.json"));
        BenchFile imports = BenchFile.read(results.resolve("import.json"));
        sections.put("machine", machine(natives, peers));
        sections.put("natives", Tables.natives(natives) + nativePlots(natives));
        sections.put("peers", Tables.contests(peers) + peerPlots(peers));
        sections.put("host", Tables.times(host));
        sections.put("import", rows(imports) + Tables.contests(imports));
    }

    /** Makes the document. On failure prints a message and exits with 1. */
    public static void main(String[] arguments) {
        try {
            new Document(Path.of(arguments[0])).write(Path.of(arguments[1]), Path.of(arguments[2]));
        } catch (IOException e) {
            System.err.println("performance: " + e.getMessage());
            System.exit(1);
        }
    }

    private static String machine(BenchFile natives, BenchFile peers) {
        return String.format("Measured on %s on a machine with %s CPUs of %s MHz, with %s.%n",
                word(peers, "date").replaceAll("T.*", ""),
                word(natives, "num_cpus"), word(natives, "mhz_per_cpu"), word(peers, "java"));
    }

    private static String rows(BenchFile imports) {
        return String.format("The files have %s transponders; the import stored %s records.%n%n",
                word(imports, "transponders"), word(imports, "stored_rows"));
    }

    private static String word(BenchFile file, String key) {
        JsonElement value = file.context.get(key);
        return value == null ? "?" : value.getAsString();
    }

    /** Makes a plot for each operation that was measured with several list sizes. */
    private String nativePlots(BenchFile file) {
        Map<String, Plot> found = new LinkedHashMap<>();
        for (Benchmark one : file.benchmarks) {
            double records = one.records().orElse(0);
            if (records > 0) {
                Plot plot = found.computeIfAbsent(one.family(),
                        family -> new Plot(family + ", per record", "time per record"));
                point(plot, "library", records, one.value("library_ns"));
                point(plot, "floor", records, one.value("floor_ns"));
                point(plot, "plain copy", records, one.value("copy_ns"));
            }
        }
        return drawn("native", found);
    }

    /** Makes a plot for each operation, with a line for each entrant. */
    private String peerPlots(BenchFile file) {
        Map<String, Plot> found = new LinkedHashMap<>();
        for (Benchmark one : file.benchmarks) {
            double records = one.records().orElse(0);
            if (records > 0) {
                int name = one.family().lastIndexOf('/') + 1;
                String operation = one.family().substring(0, name - 1);
                Plot plot = found.computeIfAbsent(operation, key -> new Plot(key + ", per record", "time per record"));
                point(plot, one.family().substring(name).replace('_', ' '), records,
                        OptionalDouble.of(one.nanoseconds()));
            }
        }
        return drawn("", found);
    }

    private static void point(Plot plot, String series, double records, OptionalDouble nanoseconds) {
        if (nanoseconds.isPresent()) {
            plot.add(series, records, nanoseconds.getAsDouble() / records);
        }
    }

    /** Keeps the plots with enough points for a line, and returns the Markdown that shows them. */
    private String drawn(String prefix, Map<String, Plot> found) {
        StringBuilder text = new StringBuilder();
        found.forEach((family, plot) -> {
            if (plot.sizes() >= LEAST_SIZES) {
                String file = (prefix + '-' + family).replaceAll("[^a-z0-9]+", "-").replaceAll("^-", "") + ".svg";
                plots.put(file, plot);
                text.append("\n![").append(family).append(": time per record against records](").append(PLOTS)
                        .append('/')
                        .append(file).append(")\n");
            }
        });
        return text.toString();
    }

    private void write(Path template, Path target) throws IOException {
        Matcher section = SECTION.matcher(Files.readString(template));
        StringBuilder text = new StringBuilder();
        Map<String, String> missing = new LinkedHashMap<>(sections);
        while (section.find()) {
            String content = missing.remove(section.group(2));
            if (content == null) {
                throw new IOException(
                        "'" + template + "' has an unknown or duplicate section '" + section.group(2) + "'");
            }
            section.appendReplacement(text, Matcher.quoteReplacement(section.group(1) + content + section.group(3)));
        }
        section.appendTail(text);
        if (!missing.isEmpty()) {
            throw new IOException("'" + template + "' has no sections " + missing.keySet()
                    + "; a section begins with <!-- NAME --> and ends with <!-- end -->");
        }
        Path folder = Files.createDirectories(target.resolve(PLOTS));
        try (DirectoryStream<Path> earlier = Files.newDirectoryStream(folder, "*.svg")) {
            for (Path plot : earlier) {
                Files.delete(plot);
            }
        }
        for (Map.Entry<String, Plot> plot : plots.entrySet()) {
            Files.writeString(folder.resolve(plot.getKey()), plot.getValue().svg());
        }
        Files.writeString(target.resolve(template.getFileName()), text);
    }
}
