package com.velotra.tv.tavro.tool.editing;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.tool.changes.Change;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Text;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.util.ArrayList;
import java.util.HashSet;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Set;

/** Changes of single records. Each method returns the summary for the user, and changes nothing in a dry run. */
public final class SingleRecords {
    private SingleRecords() {}

    /** Removes records. */
    public static List<String> remove(Kind kind, List<RecordRange> ranges, String command, boolean dryRun) {
        if (dryRun) {
            return removed(kind, Selection.of(ranges, id -> StoredLists.read(kind, id)), false);
        }
        return Change.make(command, change -> {
            Selection records = Selection.of(ranges, id -> change.read(kind, id));
            for (int list : records.lists()) {
                change.save(kind, list);
                records.in(list).forEach(kind.lists()::remove);
                kind.lists().close(list);
            }
            return removed(kind, records, true);
        });
    }

    private static List<String> removed(Kind kind, Selection records, boolean done) {
        List<String> lines = new ArrayList<>();
        for (int list : records.lists()) {
            int number = records.in(list).size();
            int left = StoredLists.read(kind, list).size() - (done ? 0 : number);
            lines.add(WholeLists.of(kind, list) + ": " + Text.count(number, kind.noun()) + " removed, " + left
                    + " left");
        }
        return lines;
    }

    /**
     * Copies records to list {@code to}, under their ids.
     *
     * @param replace whether to replace records of that list
     * @throws Failure if an id is taken and {@code replace} is false, or two records have the same id
     */
    public static String copy(Kind kind, List<RecordRange> ranges, int to, boolean replace, String command,
            boolean dryRun) {
        Selection records = Selection.of(ranges, id -> StoredLists.read(kind, id));
        needDifferentIds(records, kind);
        return dryRun ? copy(null, kind, records, to, replace)
                : Change.make(command, change -> copy(change, kind, records, to, replace));
    }

    private static String copy(Change change, Kind kind, Selection records, int to, boolean replace) {
        RecordList target = change == null ? StoredLists.read(kind, to) : change.read(kind, to);
        Set<RecordId> replaced = new LinkedHashSet<>(records.all());
        replaced.removeIf(id -> target.byId(id.recordId()).isEmpty());
        if (!replaced.isEmpty() && !replace) {
            RecordId taken = replaced.iterator().next();
            throw new Failure(WholeLists.of(kind, to) + " already has a record " + taken.recordId()
                    + "; replace it with --replace, or add a copy under a new id: ./tavro add " + to + " --copy "
                    + taken);
        }
        if (change != null) {
            change.save(kind, to);
            for (RecordId id : records.all()) {
                if (replaced.contains(id)) {
                    kind.lists().update(to, id);
                } else {
                    kind.lists().add(to, id);
                }
            }
            records.lists().forEach(kind.lists()::close);
            kind.lists().close(to);
        }
        return WholeLists.of(kind, to) + ": " + (records.size() - replaced.size()) + " added, " + replaced.size()
                + " replaced";
    }

    private static void needDifferentIds(Selection records, Kind kind) {
        Set<Integer> ids = new HashSet<>();
        for (RecordId id : records.all()) {
            if (!ids.add(id.recordId())) {
                throw new Failure("two of the " + kind.noun() + "s have the record id " + id.recordId()
                        + "; copy them one after the other");
            }
        }
    }
}
