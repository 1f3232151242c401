package com.velotra.tv.tavro.services.channellist;

import java.util.ArrayList;
import java.util.List;
import java.util.Map;

/**
 * The written part of {@code docs/natives.md}. A line {@code @example NATIVE: PATH} begins an example: the lines up to
 * {@code @end} explain the lines of that sequence, one each, and the two become a table.
 */
final class NativesIntroduction {
    private final List<String> source;

    NativesIntroduction(List<String> source) {
        this.source = source;
    }

    List<String> lines(Map<String, NativeSequence> sequences) {
        List<String> lines = new ArrayList<>();
        for (int i = 0; i < source.size(); i++) {
            if (source.get(i).startsWith("@example ")) {
                int end = source.subList(i, source.size()).indexOf("@end") + i;
                String path = source.get(i).substring("@example ".length());
                lines.addAll(table(path, sequences.get(path), source.subList(i + 1, end)));
                i = end;
            } else {
                lines.add(source.get(i));
            }
        }
        return lines;
    }

    private static List<String> table(String path, NativeSequence sequence, List<String> reasons) {
        if (sequence == null) {
            throw new AssertionError("there is no path " + path);
        }
        List<String> traced = new ArrayList<>(sequence.lines());
        sequence.outcome().forEach(line -> traced.add("=> " + line));
        if (traced.size() != reasons.size()) {
            throw new AssertionError("the example has " + reasons.size() + " explanations for " + traced.size()
                    + " lines:\n" + String.join("\n", traced));
        }
        List<String> lines = new ArrayList<>(List.of("| Sequence | Why |", "|---|---|"));
        for (int i = 0; i < traced.size(); i++) {
            lines.add("| `" + traced.get(i).replace("|", "\\|") + "` | " + reasons.get(i) + " |");
        }
        return lines;
    }
}
