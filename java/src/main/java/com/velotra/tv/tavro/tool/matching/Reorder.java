package com.velotra.tv.tavro.tool.matching;

import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.util.ArrayList;
import java.util.List;
import java.util.Set;
import java.util.stream.IntStream;

/**
 * A list that has taken its order and values of the user from a {@link Guide}. It has the same records as before: those
 * that the guide does not name follow after the others, in their former order.
 *
 * @param list the records
 * @param unmatched the records that the guide does not name, as before
 * @param unmatchedEntries the entries of the guide for which there is no record
 */
public record Reorder(RecordList list, List<Record> unmatched, List<Integer> unmatchedEntries) {
    /**
     * Takes parts from a guide.
     *
     * @throws IllegalArgumentException if an entry does not fit its record; the message says why
     */
    public static Reorder of(Side before, Guide guide, Set<Part> parts) {
        RecordList list = before.list();
        Pairing pairing = guide.pair(before);
        List<Integer> order = new ArrayList<>();
        if (parts.contains(Part.ORDER)) {
            IntStream.range(0, guide.size()).map(pairing::fromOf).filter(i -> i >= 0).forEach(order::add);
            IntStream.range(0, list.size()).filter(i -> pairing.toOf(i) < 0).forEach(order::add);
        } else {
            IntStream.range(0, list.size()).forEach(order::add);
        }
        List<Record> records = order.stream()
                .map(i -> pairing.toOf(i) < 0 ? list.get(i) : changed(list.get(i), guide, pairing.toOf(i), parts))
                .toList();
        return new Reorder(
                RecordList.of(list.kind(), list.listId(), list.name(), records),
                IntStream.range(0, list.size()).filter(i -> pairing.toOf(i) < 0).mapToObj(list::get).toList(),
                IntStream.range(0, guide.size()).filter(i -> pairing.fromOf(i) < 0).boxed().toList());
    }

    private static Record changed(Record record, Guide guide, int entry, Set<Part> parts) {
        byte[] bytes = record.bytes();
        parts.forEach(part -> guide.apply(part, entry, record, bytes));
        return Record.of(record.kind(), bytes);
    }
}
