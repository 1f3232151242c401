package com.velotra.tv.tavro.services.channellist;

import java.util.ArrayList;
import java.util.List;

/**
 * What distinguishes one sequence from another, in the colors of a {@code diff} block:
 *
 * <pre>
 *       …                                  as in the other sequence
 *     ! x_nwl_get_rec(0x30001, 5) = -5     this call has another result
 *     - x_nwl_lock(0x30001)                only in the other sequence
 *     + E -: Invalid param.                only here
 * </pre>
 *
 * <p>What the other sequence has at its end, and this one lacks, is not listed.
 */
final class SequenceDifference {
    private static final int MOST_MISSING = 3;

    private final List<String> other;
    private final List<String> lines;
    private final int most;
    private final List<String> text = new ArrayList<>();
    private int different;

    /** Compares sequences by keys, of which each line has one. Of each change at most so many lines are written. */
    SequenceDifference(List<String> other, List<String> otherKeys, List<String> lines, List<String> keys, int most) {
        this.other = other;
        this.lines = lines;
        this.most = most;
        int[][] common = common(otherKeys, keys);
        int i = 0;
        int j = 0;
        while (i < other.size() || j < lines.size()) {
            int firstMissing = i;
            int firstAdded = j;
            while (i < other.size() && j < lines.size() && otherKeys.get(i).equals(keys.get(j))) {
                i++;
                j++;
            }
            if (i > firstMissing) {
                text.add("  …");
                continue;
            }
            while ((i < other.size() || j < lines.size())
                    && !(i < other.size() && j < lines.size() && otherKeys.get(i).equals(keys.get(j)))) {
                if (j == lines.size() || i < other.size() && common[i + 1][j] >= common[i][j + 1]) {
                    i++;
                } else {
                    j++;
                }
            }
            addChange(firstMissing, i, firstAdded, j);
        }
    }

    /** The lines of the block. */
    List<String> text() {
        return List.copyOf(text);
    }

    /** How many lines are only in one of the sequences. */
    int different() {
        return different;
    }

    private void addChange(int missing, int missingEnd, int added, int addedEnd) {
        different += missingEnd - missing + addedEnd - added;
        int from = missing;
        List<String> here = new ArrayList<>();
        for (int j = added; j < addedEnd; j++) {
            int before = from;
            while (before < missingEnd && !isSameCall(other.get(before), lines.get(j))) {
                before++;
            }
            if (before < missingEnd) {
                addMissing(here, from, before);
                here.add("! " + lines.get(j));
                from = before + 1;
            } else {
                here.add("+ " + lines.get(j));
            }
        }
        // Nothing of the rest follows, which is clear unless the last line stands for a part of the other sequence.
        if (addedEnd < lines.size() || here.isEmpty()) {
            addMissing(here, from, missingEnd);
        }
        if (text.equals(List.of("  …")) && !here.isEmpty() && !here.get(0).startsWith("+")) {
            text.clear(); // the line shows where it is
        }
        text.addAll(here.size() <= most ? here : here.subList(0, most - 1));
        if (here.size() > most) {
            text.add("+ … and " + (here.size() - most + 1) + " more lines");
        }
    }

    private void addMissing(List<String> here, int from, int end) {
        List<String> calls = other.subList(from, end).stream().filter(line -> !line.startsWith("D ")).toList();
        if (calls.isEmpty() && end > from) {
            here.add("- " + other.get(from));
        } else if (calls.size() <= MOST_MISSING) {
            calls.forEach(line -> here.add("- " + line));
        } else {
            here.add("- " + calls.get(0) + " … " + calls.get(calls.size() - 1));
        }
    }

    /** Whether two lines are one middleware call or log line with different values, or are both JNI work. */
    private static boolean isSameCall(String before, String now) {
        return call(before).equals(call(now));
    }

    private static String call(String line) {
        if (line.startsWith("JNI: ")) {
            return "JNI";
        }
        return line.replaceFirst("\\(.*", "(").replaceFirst("(= |: (?=[^\\[])).*", "").replaceAll("\\d+", "n");
    }

    /** For each pair of positions, how many lines the rests have in common. */
    private static int[][] common(List<String> first, List<String> second) {
        int[][] common = new int[first.size() + 1][second.size() + 1];
        for (int i = first.size() - 1; i >= 0; i--) {
            for (int j = second.size() - 1; j >= 0; j--) {
                common[i][j] = first.get(i).equals(second.get(j)) ? common[i + 1][j + 1] + 1
                        : Math.max(common[i + 1][j], common[i][j + 1]);
            }
        }
        return common;
    }
}
