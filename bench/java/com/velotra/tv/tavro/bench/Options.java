package com.velotra.tv.tavro.bench;

import java.nio.file.Path;
import java.util.Optional;
import java.util.regex.Pattern;

/**
 * The options of a benchmark program, spelled as Google Benchmark's where it has them.
 *
 * @param filter which benchmarks to run
 * @param without whether the filter names those not to run
 * @param listOnly print the names instead of running anything
 * @param quick few and short rounds, for a first impression
 * @param repetitions rounds, or 0 for the program's own number
 * @param json where the results are written as JSON
 */
public record Options(Pattern filter, boolean without, boolean listOnly, boolean quick, int repetitions,
        Optional<Path> json) {
    private static final String FILTER = "--benchmark_filter=";
    private static final String REPETITIONS = "--benchmark_repetitions=";
    private static final String OUT = "--benchmark_out=";

    /**
     * Reads options, which come before other arguments.
     *
     * @throws IllegalArgumentException when there is an unknown option
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

    /** Whether the benchmark of that name is to be run. */
    public boolean chooses(String name) {
        return filter.matcher(name).find() != without;
    }

    /** How many rounds to run. */
    public int rounds(int full, int few) {
        if (repetitions > 0) {
            return repetitions;
        }
        return quick ? few : full;
    }
}
