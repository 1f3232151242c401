package com.velotra.tv.tavro.bench;

import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.OptionalDouble;

/**
 * Compares several implementations ("entrants") of one operation. Each round measures all of them in turn, so that the
 * machine's load affects them equally. The first entrant is compared with every other one, round by round.
 */
public final class Contest {
    /** Performs an operation a number of times. */
    public interface Action {
        void run(int times) throws Exception;
    }

    /** Performs an operation a number of times and returns the nanoseconds that it took. */
    public interface Clocked {
        long run(int times) throws Exception;
    }

    private record Entrant(String name, OptionalDouble target, Clocked action) {}

    private static final long NANOSECONDS = 1_000_000_000;

    private final String operation;
    private final String suffix;
    private final List<Entrant> entrants = new ArrayList<>();

    /**
     * @param operation name of the operation, such as "peers/add_one"
     * @param suffix end of the benchmark names, such as "/1000" for a list of that size; may be empty
     */
    public Contest(String operation, String suffix) {
        this.operation = operation;
        this.suffix = suffix;
    }

    /** Adds an entrant. The first one is compared with all others. */
    public Contest entrant(String name, Action action) {
        return add(name, OptionalDouble.empty(), clocked(action));
    }

    /** Adds an entrant. The first entrant should not take more than {@code target} times as long. */
    public Contest entrant(String name, double target, Action action) {
        return add(name, OptionalDouble.of(target), clocked(action));
    }

    /** Adds an entrant that measures its own time. */
    public Contest clockedEntrant(String name, double target, Clocked action) {
        return add(name, OptionalDouble.of(target), action);
    }

    private Contest add(String name, OptionalDouble target, Clocked action) {
        entrants.add(new Entrant(name, target, action));
        return this;
    }

    private static Clocked clocked(Action action) {
        return times -> {
            long start = System.nanoTime();
            action.run(times);
            return System.nanoTime() - start;
        };
    }

    /** The benchmarks' names. */
    public List<String> names() {
        return entrants.stream().map(this::name).toList();
    }

    private String name(Entrant entrant) {
        return operation + '/' + entrant.name() + suffix;
    }

    /** Runs rounds of {@code times} operations, after an unmeasured warm-up round. */
    public List<Result> runFixed(int rounds, int warmUp, int times) throws Exception {
        int[] batches = new int[entrants.size()];
        Arrays.fill(batches, times);
        for (Entrant entrant : entrants) {
            entrant.action().run(warmUp);
        }
        return measure(rounds, batches);
    }

    /** Warms each entrant up for {@code warmUp} seconds, then runs rounds of about {@code seconds} per entrant. */
    public List<Result> runTimed(int rounds, double warmUp, double seconds) throws Exception {
        int[] batches = new int[entrants.size()];
        for (int i = 0; i < batches.length; i++) {
            batches[i] = batch(entrants.get(i).action(), warmUp, seconds);
        }
        return measure(rounds, batches);
    }

    /** Warms an action up and returns how many times it runs in {@code seconds}. */
    private static int batch(Clocked action, double warmUp, double seconds) throws Exception {
        long end = System.nanoTime() + (long) (warmUp * NANOSECONDS);
        int times = 1;
        while (true) {
            double each = (double) action.run(times) / times;
            int next = (int) Math.max(1, Math.min(seconds * NANOSECONDS / each, 10_000_000));
            if (System.nanoTime() >= end) {
                return next;
            }
            times = Math.min(next, 2 * times);
        }
    }

    private List<Result> measure(int rounds, int... batches) throws Exception {
        double[][] times = new double[batches.length][rounds];
        for (int round = 0; round < rounds; round++) {
            for (int turn = 0; turn < batches.length; turn++) {
                int i = (turn + round) % batches.length; // each goes first in turn
                System.gc(); // so that no entrant pays for the garbage of another
                times[i][round] = (double) entrants.get(i).action().run(batches[i]) / batches[i];
            }
        }
        List<Result> results = new ArrayList<>();
        Samples first = new Samples(times[0]);
        for (int i = 0; i < batches.length; i++) {
            Entrant entrant = entrants.get(i);
            Samples own = new Samples(times[i]);
            Samples ratio = i == 0 ? null : first.over(own);
            results.add(new Result(name(entrant), batches[i], own, ratio, entrant.target()));
        }
        return results;
    }
}
