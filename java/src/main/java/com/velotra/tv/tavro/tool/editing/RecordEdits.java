package com.velotra.tv.tavro.tool.editing;

import com.velotra.tv.tavro.services.channellist.KeyedValues;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.tool.changes.Change;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.matching.FreeIds;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Optional;

/** Sets values of records, and adds records, through the natives that take Java objects. */
public final class RecordEdits {
    private RecordEdits() {}

    /** A record before and after a command. */
    public record Edited(RecordId id, Record before, Record after) {
        /** Returns the fields that differ, by offset. */
        public List<Field> fields() {
            return Layout.of(after.kind()).fields(after).stream()
                    .filter(field -> !field.in(before) || !field.format(before).equals(field.format(after))).toList();
        }
    }

    /**
     * Sets values of records.
     *
     * @throws Failure if a record, key or field does not exist, or the library does not accept a value; then all
     *     records stay as they are
     */
    public static List<Edited> set(Kind kind, List<RecordRange> ranges, List<Assignment> values, String command) {
        return Change.make(command, change -> {
            Map<Integer, RecordList> lists = new LinkedHashMap<>();
            Selection records = Selection.of(ranges,
                    id -> lists.computeIfAbsent(id, one -> change.read(kind, one)));
            List<Edited> edited = new ArrayList<>();
            for (int list : records.lists()) {
                edited.addAll(set(change, lists.get(list), records.in(list), values));
            }
            return edited;
        });
    }

    private static List<Edited> set(Change change, RecordList list, List<RecordId> records, List<Assignment> values) {
        Map<RecordId, Edit> edits = new LinkedHashMap<>();
        for (RecordId id : records) {
            Record before = list.byId(id.recordId()).orElseThrow();
            KeyedValues object = NativeObjects.forRecord(list.kind(), id);
            Edit edit = Edit.of(list.kind().noun() + " " + id, before, object, values);
            if (!edit.changesNothing(before)) {
                edits.put(id, edit);
                change.save(list.kind(), list.listId());
                NativeObjects.update(list.listId(), object);
            }
        }
        RecordList after = StoredLists.read(list.kind(), list.listId());
        edits.forEach((id, edit) -> edit.check(after.byId(id.recordId()).orElseThrow()));
        list.kind().lists().close(list.listId());
        return records.stream().map(id -> new Edited(id, list.byId(id.recordId()).orElseThrow(),
                after.byId(id.recordId()).orElseThrow())).toList();
    }

    /**
     * Adds a record and returns its identifier.
     *
     * @param copyOf a record to copy; empty for a new one
     * @param create whether to create the list if there is none
     * @throws Failure if the list, a key or a field does not exist, if the list is full, or the library does not accept
     *     a value; then nothing is added
     */
    public static RecordId add(Kind kind, int listId, Optional<RecordId> copyOf, List<Assignment> values,
            boolean create, String command) {
        return Change.make(command, change -> {
            change.save(kind, listId);
            if (create) {
                kind.lists().open(listId);
            }
            RecordId id = copyOf.map(from -> addCopy(change, kind, listId, from))
                    .orElseGet(() -> addNew(kind, listId, values));
            if (copyOf.isPresent() && !values.isEmpty()) {
                set(change, StoredLists.read(kind, listId), List.of(id), values);
            }
            kind.lists().close(listId);
            return id;
        });
    }

    private static RecordId addNew(Kind kind, int listId, List<Assignment> values) {
        KeyedValues object = NativeObjects.empty(kind);
        Edit edit = Edit.of("the new " + kind.noun(), Record.of(kind, new byte[kind.recordBytes()]), object, values);
        new FreeIds(StoredLists.read(kind, listId)).take(); // the natives do not say that a list is full
        RecordId id = NativeObjects.add(listId, object);
        edit.check(StoredLists.read(kind, listId).byId(id.recordId()).orElseThrow());
        return id;
    }

    /** Adds the same bytes under a free record id: a native would take the id of the record that is copied. */
    private static RecordId addCopy(Change change, Kind kind, int listId, RecordId copyOf) {
        Record record = StoredLists.read(kind, copyOf.listId()).byId(copyOf.recordId())
                .orElseThrow(() -> new Failure(WholeLists.of(kind, copyOf.listId()) + " has no record "
                        + copyOf.recordId()));
        RecordList list = StoredLists.read(kind, listId);
        int id = new FreeIds(list).take();
        Field recordId = Layout.of(kind).fields().stream().filter(field -> field.offset() == kind.idOffset())
                .findFirst().orElseThrow();
        List<Record> records = new ArrayList<>(list);
        records.add(record.with(recordId, Integer.toString(id)));
        change.replace(RecordList.of(kind, listId, list.name(), records));
        return new RecordId(listId, id);
    }
}
