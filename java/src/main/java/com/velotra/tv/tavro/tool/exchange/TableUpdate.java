package com.velotra.tv.tavro.tool.exchange;

import com.velotra.tv.tavro.tool.exchange.ListTable.Row;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Malformed;
import com.velotra.tv.tavro.tool.input.Place;
import com.velotra.tv.tavro.tool.input.Text;
import com.velotra.tv.tavro.tool.matching.FreeIds;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.BitSet;
import java.util.List;
import java.util.Optional;

/**
 * Applies the rows of a table to a list. The records of the rows come first, in the order of the rows; the other
 * records of the list follow, or are removed. Nothing is stored here.
 */
final class TableUpdate {
    /** The largest record id. */
    private static final int LAST_ID = 0xFFFE;

    private final ListTable table;
    private final RecordList before;
    private final Kind kind;
    private final Field recordId;
    private final List<Record> records = new ArrayList<>();
    private final List<Malformed> problems = new ArrayList<>();
    private final String[] rowOfId = new String[LAST_ID + 1];
    private final BitSet used = new BitSet(); // record ids
    private final List<Integer> withoutId = new ArrayList<>(); // places in records
    private int added;
    private int changed;
    private int changedFields;
    private int removed;
    private int unchanged;
    private boolean reordered;
    private RecordList after;

    private TableUpdate(RecordList before, ListTable table) {
        this.before = before;
        this.table = table;
        kind = before.kind();
        recordId = Layout.of(kind).field(Columns.RECORD_ID).orElseThrow();
    }

    /**
     * Makes an update.
     *
     * @param before the list as it is; without records if there is none
     * @param removeOthers whether records without a row are removed
     */
    static TableUpdate of(RecordList before, ListTable table, boolean removeOthers) {
        TableUpdate update = new TableUpdate(before, table);
        update.takeRows();
        update.takeOthers(removeOthers);
        update.giveIds();
        update.after = RecordList.of(before.kind(), before.listId(), before.name(), update.records);
        update.reordered = update.isReordered();
        return update;
    }

    /** Returns the list with the rows. Rows with problems are left out; the records that they name are unchanged. */
    RecordList after() {
        return after;
    }

    /** Returns whether the list differs from before. */
    boolean changes() {
        return added + changed + removed > 0 || reordered;
    }

    /** Returns what is wrong with the rows. */
    List<Malformed> problems() {
        return problems;
    }

    private void takeRows() {
        RowReader reader = new RowReader(kind, table.columns());
        int idColumn = table.columns().indexOf(Columns.RECORD_ID);
        Record empty = Record.of(kind, new byte[kind.recordBytes()]);
        for (Row row : table.rows()) {
            String idText = idColumn < row.values().size() ? row.values().get(idColumn) : null;
            boolean hasId = idText != null && !idText.isEmpty();
            int id = hasId ? id(idText, row) : 0;
            if (id < 0) {
                continue;
            }
            Optional<Record> known = hasId ? before.byId(id) : Optional.empty();
            row.problem().ifPresent(problem -> problem(row, problem));
            int found = problems.size();
            Record record = reader.read(known.orElse(empty), row.values(),
                    (column, problem) -> problem(row, "column " + column + ": " + problem));
            if (row.problem().isPresent() || problems.size() > found) {
                known.ifPresent(this::keep);
            } else if (known.isPresent()) {
                count(known.get(), record);
                records.add(record);
            } else {
                added++;
                if (!hasId) {
                    withoutId.add(records.size());
                }
                records.add(record);
            }
        }
    }

    /** Returns the record id of a row, which no other row may have; -1 if it is wrong. */
    private int id(String text, Row row) {
        byte[] bytes = new byte[kind.recordBytes()];
        try {
            recordId.parse(text, bytes);
        } catch (IllegalArgumentException e) {
            problem(row, "column " + Columns.RECORD_ID + ": " + e.getMessage());
            return -1;
        }
        int id = Record.of(kind, bytes).id();
        if (id > LAST_ID) {
            problem(row, "column " + Columns.RECORD_ID + ": " + id + " cannot be the id of a record");
            return -1;
        }
        if (used.get(id)) {
            problem(row, "column " + Columns.RECORD_ID + ": " + id + " is also in " + rowOfId[id]);
            return -1;
        }
        used.set(id);
        rowOfId[id] = row.name().orElse("line " + row.line());
        return id;
    }

    private void problem(Row row, String problem) {
        problems.add(new Malformed(
                new Place(table.source(), row.line()), row.name().map(name -> name + ": ").orElse("") + problem));
    }

    private void keep(Record record) {
        unchanged++;
        records.add(record);
    }

    private void count(Record old, Record record) {
        if (old.equals(record)) {
            unchanged++;
            return;
        }
        changed++;
        Layout layout = Layout.of(kind);
        for (Field field : layout.fields()) {
            boolean same = field.in(old) == field.in(record) && (!field.in(old) || Arrays.equals(
                    old.bytes(field.offset(), field.width()), record.bytes(field.offset(), field.width())));
            changedFields += same ? 0 : 1;
        }
        changedFields += layout.rest(old).equals(layout.rest(record)) ? 0 : 1;
    }

    private void takeOthers(boolean remove) {
        for (Record record : before) {
            if (used.get(record.id())) {
                continue;
            }
            if (remove && problems.isEmpty()) { // the record may be the one of a bad row
                removed++;
            } else {
                used.set(record.id());
                keep(record);
            }
        }
    }

    /** Gives record ids to new records, as the natives do. */
    private void giveIds() {
        FreeIds ids = new FreeIds(before, used);
        try {
            for (int place : withoutId) {
                records.set(place, records.get(place).with(recordId, Integer.toString(ids.take())));
            }
        } catch (Failure full) {
            problems.add(new Malformed(new Place(table.source(), 1), full.getMessage()));
        }
    }

    private boolean isReordered() {
        int last = -1;
        int[] placeOfId = new int[LAST_ID + 2];
        for (int i = 0; i < after.size(); i++) {
            placeOfId[after.get(i).id()] = i + 1;
        }
        for (Record record : before) {
            int place = placeOfId[record.id()];
            if (place != 0 && place < last) {
                return true;
            }
            last = Math.max(last, place);
        }
        return false;
    }

    /** Returns the summary, such as "service list 1: 1 added, 2 changed (5 fields), 0 removed, 7 unchanged". */
    @Override
    public String toString() {
        return kind.noun() + " list " + before.listId() + ": " + added + " added, " + changed + " changed"
                + (changed == 0 ? "" : " (" + Text.count(changedFields, "field") + ")") + ", " + removed + " removed, "
                + unchanged + " unchanged" + (reordered ? ", in another order" : "");
    }
}
