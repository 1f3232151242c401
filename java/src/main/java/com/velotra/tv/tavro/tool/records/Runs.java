package com.velotra.tv.tavro.tool.records;

import java.util.ArrayList;
import java.util.Comparator;
import java.util.List;
import java.util.Optional;

/** Divides a record into runs of bytes. */
final class Runs {
    private Runs() {}

    static List<Layout.Run> of(Kind kind, Record record, List<Field> fields, List<Layout.Reserved> reserved,
            Optional<Layout.View> view) {
        List<Layout.Run> known = new ArrayList<>();
        for (Field field : fields) {
            known.add(new Layout.Run(field.offset(), field.width(), Optional.of(field), field.path(record)));
        }
        for (Layout.Reserved bytes : reserved) {
            if (bytes.views().isEmpty()) {
                known.add(run(bytes, bytes.member()));
            } else if (view.isPresent() && bytes.views().contains(view.get())) {
                known.add(run(bytes, view.get().member() + '.' + bytes.member()));
            }
        }
        known.sort(Comparator.comparingInt(Layout.Run::offset));
        return filled(known, kind.recordBytes());
    }

    private static Layout.Run run(Layout.Reserved bytes, String path) {
        return new Layout.Run(bytes.offset(), bytes.width(), Optional.empty(), path);
    }

    /** Adds the bytes between the runs: those of an unknown view. */
    private static List<Layout.Run> filled(List<Layout.Run> known, int recordBytes) {
        List<Layout.Run> all = new ArrayList<>();
        int end = 0;
        for (Layout.Run run : known) {
            if (run.offset() > end) {
                all.add(new Layout.Run(end, run.offset() - end, Optional.empty(), ""));
            }
            all.add(run);
            end = run.offset() + run.width();
        }
        if (end < recordBytes) {
            all.add(new Layout.Run(end, recordBytes - end, Optional.empty(), ""));
        }
        return List.copyOf(all);
    }
}
