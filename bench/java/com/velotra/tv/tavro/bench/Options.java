package com.velotra.tv.tavro.bench;

import java.nio.file.Path;
import java.util.Optional;
import java.util.regex.Pattern;

/**
 * The options of a benchmark program, named like Google Benchmark's options where those exist.
 *
 * @param filter which benchmarks to run
 * @param without whether the filter excludes the benchmarks that match
 * @param listOnly print the names instead of running anything
 * @param quick few and short rounds
 * @param repetitions number of rounds, or 0 for the program's default
 * @param json file for the results as JSON
 */
public record Options(Pattern filter, boolean without, boolean listOnly, boolean quick, int repetitions,
        Optional<Path> json) {
    private static final String FILTER = "--benchmark_filter=";
    private static final String REPETITIONS = "--benchmark_repetitions=";
    private static final String OUT = "--benchmark_out=";

    /**
     * Parses options.
     *
     * @throws IllegalArgumentException for an unknown option
     */
    public static Options parse(String... arguments) {
        Options options = new Options(Pattern.compile(""), false, false, false, 0, Optional.empty());
        for (String argument : arguments) {
            options = options.with(argument);
        }
        return options;
    }

    private Options with(String argument) {
        if (argument.startsWith(FILTER)) {
            String text = argument.substring(FILTER.length());
            boolean negative = text.startsWith("-");
            Pattern pattern = Pattern.compile(negative ? text.substring(1) : text);
            return new Options(pattern, negative, listOnly, quick, repetitions, json);
        } else if (argument.startsWith(REPETITIONS)) {
            int rounds = Integer.parseInt(argument.substring(REPETITIONS.length()));
            return new Options(filter, without, listOnly, quick, rounds, json);
        } else if (argument.startsWith(OUT)) {
            Path file = Path.of(argument.substring(OUT.length()));
            return new Options(filter, without, listOnly, quick, repetitions, Optional.of(file));
        }
        return switch (argument) {
            case "--benchmark_list_tests" -> new Options(filter, without, true, quick, repetitions, json);
            case "--quick" -> new Options(filter, without, listOnly, true, repetitions, json);
            default -> throw new IllegalArgumentException("unknown option '" + argument + "'");
        };
    }

    /** Returns whether the filter selects the benchmark of that name. */
    public boolean chooses(String name) {
        return filter.matcher(name).find() != without;
    }

    /** Returns the number of rounds. */
    public int rounds(int full, int few) {
        if (repetitions > 0) {
            return repetitions;
        }
        return quick ? few : full;
    }
}
