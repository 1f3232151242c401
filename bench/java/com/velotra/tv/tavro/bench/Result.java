package com.velotra.tv.tavro.bench;

import java.util.OptionalDouble;

/**
 * What was measured of one benchmark.
 *
 * @param name its name
 * @param iterations operations in a round
 * @param nanoseconds time of one operation, round by round
 * @param ratio how many times as long the first entrant of the same contest took, round by round; null for that one
 *         itself
 * @param target what the ratio should not exceed
 */
public record Result(String name, int iterations, Samples nanoseconds, Samples ratio, OptionalDouble target) {}
