package com.velotra.tv.tavro.tool.input;

import java.util.Collection;
import java.util.Comparator;

/** Finds what a user may have meant by a mistyped word. */
public final class Similar {
    private static final int MOST_EDITS = 2;

    private Similar() {}

    /** Returns "; did you mean 'X'?" if a candidate is close to the word, and otherwise an empty text. */
    public static String suggestion(String word, Collection<String> candidates) {
        return candidates.stream()
                .filter(candidate -> isClose(word, candidate))
                .min(Comparator.comparingInt((String candidate) -> edits(word, candidate)).thenComparing(c -> c))
                .map(candidate -> "; did you mean '" + candidate + "'?")
                .orElse("");
    }

    private static boolean isClose(String word, String candidate) {
        return Math.abs(word.length() - candidate.length()) <= MOST_EDITS
                && edits(word, candidate) <= Math.min(MOST_EDITS, (word.length() + 1) / 3);
    }

    /** The number of letters to add, remove, change or swap with their neighbor. */
    private static int edits(String a, String b) {
        int[][] edits = new int[a.length() + 1][b.length() + 1];
        for (int i = 0; i <= a.length(); i++) {
            for (int j = 0; j <= b.length(); j++) {
                edits[i][j] = i == 0 || j == 0 ? i + j : fewest(edits, a, b, i, j);
            }
        }
        return edits[a.length()][b.length()];
    }

    private static int fewest(int[][] edits, String a, String b, int i, int j) {
        int change = a.charAt(i - 1) == b.charAt(j - 1) ? 0 : 1;
        int fewest = Math.min(edits[i - 1][j - 1] + change, Math.min(edits[i - 1][j], edits[i][j - 1]) + 1);
        boolean swapped = i > 1 && j > 1 && a.charAt(i - 1) == b.charAt(j - 2) && a.charAt(i - 2) == b.charAt(j - 1);
        return swapped ? Math.min(fewest, edits[i - 2][j - 2] + 1) : fewest;
    }
}
