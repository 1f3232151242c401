package com.velotra.tv.tavro.tool.editing;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.util.ArrayList;
import java.util.HashSet;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.function.IntFunction;

/** The records that the user named, which exist, by list, in the order in which they were named, each once. */
public final class Selection {
    private final Map<Integer, List<RecordId>> ids = new LinkedHashMap<>();

    private Selection() {}

    /**
     * Finds records. Within a range they are in list order.
     *
     * @param lists returns a list by its id
     * @throws Failure if a record does not exist, or a range has none
     */
    public static Selection of(List<RecordRange> ranges, IntFunction<RecordList> lists) {
        Selection selection = new Selection();
        Map<Integer, RecordList> read = new LinkedHashMap<>();
        Set<RecordId> named = new HashSet<>();
        for (RecordRange range : ranges) {
            RecordList list = read.computeIfAbsent(range.listId(), lists::apply);
            boolean found = false;
            for (Record record : list) {
                if (range.contains(record.id())) {
                    found = true;
                    RecordId id = new RecordId(range.listId(), record.id());
                    if (named.add(id)) {
                        selection.ids.computeIfAbsent(range.listId(), any -> new ArrayList<>()).add(id);
                    }
                }
            }
            if (!found) {
                throw new Failure(
                        list.kind().noun() + " list " + range.listId() + " has no " + range.words());
            }
        }
        return selection;
    }

    /** Returns the lists, in the order in which they were named first. */
    public Set<Integer> lists() {
        return ids.keySet();
    }

    /** Returns the records of a list. */
    public List<RecordId> in(int listId) {
        return ids.getOrDefault(listId, List.of());
    }

    /** Returns all records, list by list. */
    public List<RecordId> all() {
        return ids.values().stream().flatMap(List::stream).toList();
    }

    public int size() {
        return ids.values().stream().mapToInt(List::size).sum();
    }
}
