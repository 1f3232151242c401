package com.velotra.tv.tavro.tool.matching;

/** The pairs that need not move: the largest set of pairs that have the same order in both lists. */
final class KeptOrder {
    private KeptOrder() {}

    /**
     * Marks a longest increasing subsequence.
     *
     * @param places different numbers, or negative ones, which are not marked
     */
    static boolean[] of(int[] places) {
        int[] last = new int[places.length]; // by length - 1: index of the smallest place that ends such a sequence
        int[] before = new int[places.length];
        int longest = 0;
        for (int i = 0; i < places.length; i++) {
            if (places[i] < 0) {
                continue;
            }
            int length = longerThan(places, last, longest, places[i]);
            before[i] = length == 0 ? -1 : last[length - 1];
            last[length] = i;
            longest = Math.max(longest, length + 1);
        }
        boolean[] kept = new boolean[places.length];
        for (int i = longest == 0 ? -1 : last[longest - 1]; i >= 0; i = before[i]) {
            kept[i] = true;
        }
        return kept;
    }

    /** Returns the length of the longest sequence that ends below {@code place}. */
    private static int longerThan(int[] places, int[] last, int longest, int place) {
        int least = 0;
        int most = longest;
        while (least < most) {
            int middle = (least + most) >>> 1;
            if (places[last[middle]] < place) {
                least = middle + 1;
            } else {
                most = middle;
            }
        }
        return least;
    }
}
