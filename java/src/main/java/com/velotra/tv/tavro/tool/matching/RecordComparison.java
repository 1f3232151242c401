package com.velotra.tv.tavro.tool.matching;

import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.HexFormat;
import java.util.List;
import java.util.Set;

/** Compares two records of a kind field by field. */
final class RecordComparison {
    private static final HexFormat HEX = HexFormat.of();

    private final Set<String> ignored;

    RecordComparison(Set<String> ignored) {
        this.ignored = ignored;
    }

    /** Returns the values that differ, fields first and by offset, then bytes without a name. */
    List<FieldChange> of(Record from, Record to) {
        if (from.equals(to)) {
            return List.of();
        }
        byte[] old = from.bytes();
        byte[] now = to.bytes();
        boolean[] named = new boolean[old.length];
        List<FieldChange> changes = new ArrayList<>();
        for (Field field : Layout.of(from.kind()).fields()) {
            boolean inFrom = field.in(from);
            boolean inTo = field.in(to);
            if (inFrom || inTo) {
                int end = field.offset() + field.width();
                Arrays.fill(named, field.offset(), end, true);
                boolean same = inFrom && inTo && Arrays.equals(old, field.offset(), end, now, field.offset(), end);
                if (!same && !ignored.contains(field.name())) {
                    changes.add(FieldChange.of(field, from, to));
                }
            }
        }
        if (!ignored.contains(Comparison.UNNAMED_BYTES)) {
            addUnnamed(old, now, named, changes);
        }
        return changes;
    }

    private static void addUnnamed(byte[] old, byte[] now, boolean[] named, List<FieldChange> changes) {
        for (int start = 0; start < old.length; start++) {
            int end = start;
            while (end < old.length && !named[end] && old[end] != now[end]) {
                end++;
            }
            if (end > start) {
                String from = HEX.formatHex(old, start, end);
                String to = HEX.formatHex(now, start, end);
                changes.add(new FieldChange(Comparison.UNNAMED_BYTES,
                        "unnamed bytes from " + start, start + ":" + from, start + ":" + to, from, to));
                start = end;
            }
        }
    }
}
