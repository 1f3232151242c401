package com.velotra.tv.tavro.tool.editing;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.util.ArrayList;
import java.util.HashSet;
import java.util.List;
import java.util.Optional;
import java.util.Set;

/** The order of the records of a list. */
public final class ListOrder {
    private ListOrder() {}

    /** Where to put records among those that are not moved. */
    public interface Place {
        /** Returns the number of the other records that stay before the moved ones. */
        int among(RecordList list, List<Record> others);
    }

    public static Place first() {
        return (list, others) -> 0;
    }

    public static Place last() {
        return (list, others) -> others.size();
    }

    /** Counts from 1: the first of the moved records gets this position. */
    public static Place position(int position) {
        return (list, others) -> {
            if (position < 1 || position > others.size() + 1) {
                throw new Failure("position " + position + " is not in " + of(list)
                        + ": positions are from 1 to " + (others.size() + 1));
            }
            return position - 1;
        };
    }

    public static Place before(RecordId id) {
        return (list, others) -> indexOf(id, list, others);
    }

    public static Place after(RecordId id) {
        return (list, others) -> indexOf(id, list, others) + 1;
    }

    private static int indexOf(RecordId id, RecordList list, List<Record> others) {
        if (id.listId() != list.listId()) {
            throw new Failure("record " + id + " is in another list than the records to move");
        }
        Optional<Record> anchor = list.byId(id.recordId());
        if (anchor.isEmpty()) {
            throw new Failure(of(list) + " has no record " + id.recordId());
        }
        int index = others.indexOf(anchor.get());
        if (index < 0) {
            throw new Failure("record " + id + " is itself moved; name another record");
        }
        return index;
    }

    private static String of(RecordList list) {
        return WholeLists.of(list.kind(), list.listId());
    }

    /**
     * Returns the list with records moved to a place, one after the other in the order of {@code ids}.
     *
     * @throws Failure if the list does not have the place
     */
    static RecordList moved(RecordList list, List<RecordId> ids, Place place) {
        Set<Integer> named = new HashSet<>();
        List<Record> records = new ArrayList<>();
        for (RecordId id : ids) {
            named.add(id.recordId());
            records.add(list.byId(id.recordId()).orElseThrow());
        }
        List<Record> others = new ArrayList<>(list.stream().filter(record -> !named.contains(record.id())).toList());
        others.addAll(place.among(list, others), records);
        return RecordList.of(list.kind(), list.listId(), list.name(), others);
    }
}
