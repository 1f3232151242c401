package com.velotra.tv.tavro.bench;

import java.util.Arrays;

/** Measured values, one per round. */
public final class Samples {
    private final double[] values;

    /** Takes the values in the order of the rounds. */
    public Samples(double... values) {
        this.values = values.clone();
    }

    /** Round by round, how many times {@code other} this is. */
    public Samples over(Samples other) {
        double[] ratios = new double[values.length];
        for (int round = 0; round < ratios.length; round++) {
            ratios[round] = values[round] / other.values[round];
        }
        return new Samples(ratios);
    }

    /** The value below which {@code share} of all values are, interpolated: 0.5 gives the median. */
    public double quantile(double share) {
        double[] sorted = values.clone();
        Arrays.sort(sorted);
        double place = share * (sorted.length - 1);
        int below = (int) place;
        int above = Math.min(below + 1, sorted.length - 1);
        return sorted[below] + (place - below) * (sorted[above] - sorted[below]);
    }

    /** How many there are. */
    public int count() {
        return values.length;
    }
}
