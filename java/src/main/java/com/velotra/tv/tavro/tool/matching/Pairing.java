package com.velotra.tv.tavro.tool.matching;

import java.util.Arrays;
import java.util.HashMap;
import java.util.Map;
import java.util.function.IntFunction;

/** Pairs of indices into two lists. Each index is in at most one pair. */
public final class Pairing {
    private static final int NONE = -1;

    private final int[] toOfFrom;
    private final int[] fromOfTo;

    Pairing(int fromSize, int toSize) {
        toOfFrom = new int[fromSize];
        fromOfTo = new int[toSize];
        Arrays.fill(toOfFrom, NONE);
        Arrays.fill(fromOfTo, NONE);
    }

    /**
     * Pairs indices whose keys are equal, among those without a partner. Duplicates of a key pair in their order. A
     * null key has no partner. Takes linear time.
     */
    void pair(IntFunction<Object> fromKey, IntFunction<Object> toKey) {
        Map<Object, Integer> first = new HashMap<>();
        int[] next = new int[fromOfTo.length];
        for (int to = fromOfTo.length - 1; to >= 0; to--) {
            Object key = fromOfTo[to] == NONE ? toKey.apply(to) : null;
            if (key != null) {
                Integer later = first.put(key, to);
                next[to] = later == null ? NONE : later;
            }
        }
        for (int from = 0; from < toOfFrom.length && !first.isEmpty(); from++) {
            Object key = toOfFrom[from] == NONE ? fromKey.apply(from) : null;
            int to = key == null ? NONE : first.getOrDefault(key, NONE);
            if (to != NONE) {
                first.put(key, next[to]);
                put(from, to);
            }
        }
    }

    void put(int from, int to) {
        toOfFrom[from] = to;
        fromOfTo[to] = from;
    }

    /** Returns the partner of an index of the first list, or a negative number. */
    public int toOf(int from) {
        return toOfFrom[from];
    }

    /** Returns the partner of an index of the second list, or a negative number. */
    public int fromOf(int to) {
        return fromOfTo[to];
    }
}
