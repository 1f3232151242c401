package com.velotra.tv.tavro.bench;

import java.util.Arrays;

/** Measured values, one per round. */
public final class Samples {
    private final double[] values;

    /** @param values the values in the order of the rounds */
    public Samples(double... values) {
        this.values = values.clone();
    }

    /** Returns the ratio of this to {@code other} for each round. */
    public Samples over(Samples other) {
        double[] ratios = new double[values.length];
        for (int round = 0; round < ratios.length; round++) {
            ratios[round] = values[round] / other.values[round];
        }
        return new Samples(ratios);
    }

    /** Returns an interpolated quantile; 0.5 gives the median. */
    public double quantile(double share) {
        double[] sorted = values.clone();
        Arrays.sort(sorted);
        double place = share * (sorted.length - 1);
        int below = (int) place;
        int above = Math.min(below + 1, sorted.length - 1);
        return sorted[below] + (place - below) * (sorted[above] - sorted[below]);
    }

    /** Returns the number of values. */
    public int count() {
        return values.length;
    }
}
