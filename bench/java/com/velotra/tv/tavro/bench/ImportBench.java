package com.velotra.tv.tavro.bench;

import java.io.File;
import java.io.IOException;
import java.lang.ProcessBuilder.Redirect;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import java.util.stream.Stream;

/**
 * Compares an import of a tree of scan tables, from start to exit of the command, with plain SQLite adding the same
 * rows.
 *
 * <pre>ImportBench OPTION... -- IMPORT_FLOOR COMMAND...</pre>
 *
 * COMMAND imports the tree into TAVRO_HOME; IMPORT_FLOOR is the program of that name. When this program starts,
 * TAVRO_HOME must name an empty directory; each import gets its own subdirectory.
 */
public final class ImportBench {
    private static final double TARGET = 1.5;
    private static final Pattern SUMMARY = Pattern.compile(
            "^transport stream list \\d+: (\\d+) added, (?:.* (\\d+) repeated)?");

    private final Options options;
    private final Path home;
    private final Path log;
    private final String floor;
    private final List<String> command;
    private int imports;
    private long transponders;
    private long storedRows;

    private ImportBench(Options options, Path home, List<String> command) {
        this.options = options;
        this.home = home;
        log = home.resolve("output");
        floor = command.get(0);
        this.command = command.subList(1, command.size());
    }

    /** Runs the selected benchmarks. */
    public static void main(String[] arguments) throws Exception {
        int end = Arrays.asList(arguments).indexOf("--");
        Options options = Options.parse(Arrays.copyOf(arguments, end));
        List<String> command = List.of(arguments).subList(end + 1, arguments.length);
        new ImportBench(options, Path.of(System.getenv("TAVRO_HOME")), command).run();
    }

    private void run() throws Exception {
        Contest contest = new Contest("import/scan_tables", "")
                .entrant("command", times -> importTree())
                .clockedEntrant("sqlite_stored_rows", TARGET, times -> addRows())
                .clockedEntrant("sqlite_row_per_transponder", TARGET, times -> addRows(Long.toString(transponders)));
        List<String> names = contest.names().stream().filter(options::chooses).toList();
        if (options.listOnly()) {
            names.forEach(System.out::println);
        } else if (!names.isEmpty()) {
            Results results = new Results("import");
            List<Result> measured = contest.runFixed(options.rounds(7, 1), 1, 1);
            results.note("transponders", transponders);
            results.note("stored_rows", storedRows);
            results.head(System.out, "import/");
            results.add(measured, System.out);
            System.out.printf("%d transponders in the files, %d rows stored%n", transponders, storedRows);
            if (options.json().isPresent()) {
                results.write(options.json().get());
            }
        }
    }

    private Path importHome() {
        return home.resolve("import-" + imports);
    }

    private void importTree() throws IOException, InterruptedException {
        imports++;
        transponders = 0;
        for (String line : output(command, importHome())) {
            Matcher summary = SUMMARY.matcher(line);
            if (summary.find()) {
                transponders += Long.parseLong(summary.group(1));
                transponders += summary.group(2) == null ? 0 : Long.parseLong(summary.group(2));
            }
        }
        if (transponders == 0) {
            throw new IOException(
                    "cannot find the number of added records in the import's output:\n" + Files.readString(log));
        }
    }

    /** Adds the rows of the last import; returns the nanoseconds. */
    private long addRows(String... count) throws IOException, InterruptedException {
        Path made = Files.createDirectory(home.resolve("floor"));
        List<String> words = new ArrayList<>(List.of(
                floor, importHome().resolve("lists.db").toString(), made.resolve("lists.db").toString()));
        words.addAll(List.of(count));
        String[] numbers = output(words, home).get(0).split(" ");
        delete(made);
        if (count.length == 0) {
            storedRows = Long.parseLong(numbers[0]);
        }
        return Long.parseLong(numbers[1]);
    }

    private static void delete(Path directory) throws IOException {
        try (Stream<Path> files = Files.list(directory)) {
            for (Path file : files.toList()) {
                Files.delete(file);
            }
        }
        Files.delete(directory);
    }

    /** Returns a command's standard output. Throws if its exit code is not 0. */
    private List<String> output(List<String> words, Path directory) throws IOException, InterruptedException {
        ProcessBuilder builder = new ProcessBuilder(words);
        builder.environment().put("TAVRO_HOME", directory.toString());
        Path errors = home.resolve("errors");
        int status = builder.redirectInput(Redirect.from(new File("/dev/null")))
                .redirectOutput(log.toFile())
                .redirectError(errors.toFile())
                .start()
                .waitFor();
        if (status != 0) {
            throw new IOException(String.join(" ", words) + " failed with exit code " + status + ":\n"
                    + Files.readString(errors));
        }
        return Files.readAllLines(log);
    }
}
