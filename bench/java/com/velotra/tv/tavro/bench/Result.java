package com.velotra.tv.tavro.bench;

import java.util.OptionalDouble;

/**
 * The result of one benchmark.
 *
 * @param name the benchmark's name
 * @param iterations operations per round
 * @param nanoseconds time per operation, for each round
 * @param ratio time of the contest's first entrant divided by this entrant's time, for each round; null for the first
 *         entrant
 * @param target upper limit for the ratio
 */
public record Result(String name, int iterations, Samples nanoseconds, Samples ratio, OptionalDouble target) {}
