package com.velotra.tv.tavro.tool.exchange;

import com.velotra.tv.tavro.tool.changes.Change;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.ImportReport;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.ListEntry;
import com.velotra.tv.tavro.tool.storage.Storage;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.nio.file.Files;
import java.util.ArrayList;
import java.util.HashSet;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.OptionalInt;
import java.util.Set;
import java.util.function.BiFunction;

/** Changes stored lists to the records in imported tables. */
public final class ListTablesImport {
    private record Key(Kind kind, int listId) {}

    private final List<ListTable> tables;
    private final OptionalInt target;
    private final boolean removeOthers;
    private final Map<Key, RecordList> after = new LinkedHashMap<>();
    private final Set<Key> toStore = new HashSet<>();
    private final List<TableUpdate> updates = new ArrayList<>();

    /**
     * Makes an import.
     *
     * @param target list that receives the records; empty for the list ids in the files
     * @param removeOthers whether records without a row are removed
     * @throws Failure if it is not clear which list a table belongs to
     */
    public ListTablesImport(List<ListTable> tables, OptionalInt target, boolean removeOthers) {
        this.tables = tables;
        this.target = target;
        this.removeOthers = removeOthers;
        Set<Key> keys = new HashSet<>();
        for (ListTable table : tables) {
            Key key = key(table);
            if (!keys.add(key)) {
                throw new Failure("the files have more than one list for " + key.kind.noun() + " list " + key.listId
                        + "; import one after the other");
            }
        }
    }

    private Key key(ListTable table) {
        if (target.isEmpty() && table.listId().isEmpty()) {
            throw new Failure("cannot import " + table.source() + ": it does not say which list it is; use --list ID");
        }
        return new Key(table.kind(), target.orElseGet(() -> table.listId().getAsInt()));
    }

    /**
     * Finds out what the tables change. Stores nothing.
     *
     * @param lists reads a list that exists
     */
    public void plan(ImportReport report, BiFunction<Kind, Integer, RecordList> lists) {
        List<ListEntry> stored = Files.exists(Storage.directory()) ? StoredLists.all() : List.of();
        for (ListTable table : tables) {
            Key key = key(table);
            boolean exists = stored.stream().anyMatch(list -> list.kind() == key.kind && list.listId() == key.listId);
            RecordList before = exists ? lists.apply(key.kind, key.listId)
                    : RecordList.of(key.kind, key.listId, "", List.of());
            TableUpdate update = TableUpdate.of(before, table, removeOthers);
            report.alsoRead(table.rows().size(), key.kind.noun());
            report.malformedLines(update.problems());
            updates.add(update);
            after.put(key, update.after());
            if (update.changes() || !exists) {
                toStore.add(key);
            }
        }
    }

    /** Stores the planned lists. */
    public void store(Change change) {
        after.forEach((key, list) -> {
            if (toStore.contains(key)) {
                change.replace(list);
            }
        });
    }

    /** Returns a line per list with what changes. */
    public List<String> summary() {
        List<String> lines = new ArrayList<>();
        updates.forEach(update -> lines.add(update.toString()));
        return lines;
    }
}
