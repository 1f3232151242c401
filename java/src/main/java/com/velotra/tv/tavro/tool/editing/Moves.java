package com.velotra.tv.tavro.tool.editing;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.tool.changes.Change;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Text;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.util.List;
import java.util.Map;
import java.util.Optional;

/**
 * What to do with the order and the channel numbers of records.
 *
 * @param place where to put them; empty to leave them where they are
 * @param number the channel number of the first of them; the others get the following ones
 * @param renumber the channel number of the first service of the list; all others get the following ones
 */
public record Moves(Optional<ListOrder.Place> place, Optional<Integer> number, Optional<Integer> renumber) {
    /**
     * Moves records of one list. Returns the summary for the user, and changes nothing in a dry run.
     *
     * @throws Failure if a record, the place or a number does not exist or is taken; then nothing is changed
     */
    public String move(Kind kind, List<RecordRange> ranges, String command, boolean dryRun) {
        int listId = ranges.get(0).listId();
        if (ranges.stream().anyMatch(range -> range.listId() != listId)) {
            throw new Failure("the records to move are in several lists; move the records of each list separately");
        }
        if ((number.isPresent() || renumber.isPresent()) && kind != Kind.SERVICES) {
            throw new Failure("only services have channel numbers");
        }
        return dryRun ? move(null, StoredLists.read(kind, listId), ranges)
                : Change.make(command, change -> move(change, change.read(kind, listId), ranges));
    }

    private String move(Change change, RecordList list, List<RecordRange> ranges) {
        List<RecordId> ids = Selection.of(ranges, any -> list).in(list.listId());
        RecordList moved = place.map(where -> ListOrder.moved(list, ids, where)).orElse(list);
        StringBuilder summary = new StringBuilder(WholeLists.of(list.kind(), list.listId())).append(": ");
        if (place.isPresent()) {
            int position = moved.indexOf(moved.byId(ids.get(0).recordId()).orElseThrow()) + 1;
            summary.append(Text.count(ids.size(), list.kind().noun())).append(" moved to position ").append(position);
        }
        if (change != null && !moved.equals(list)) {
            change.replace(moved);
        }
        number.ifPresent(from -> renumber(change, moved, Numbering.consecutive(moved, ids, from), summary));
        renumber.ifPresent(from -> renumber(change, moved, Numbering.all(moved, from), summary));
        return summary.toString();
    }

    private static void renumber(Change change, RecordList list, Map<RecordId, Integer> numbers,
            StringBuilder summary) {
        List<Integer> given = List.copyOf(numbers.values());
        summary.append(summary.charAt(summary.length() - 1) == ' ' ? "" : ", ");
        if (given.isEmpty()) {
            summary.append("no services to number");
            return;
        }
        summary.append(given.size() == 1 ? "number " + given.get(0)
                : "numbers " + given.get(0) + " to " + given.get(given.size() - 1));
        boolean same = list.stream().allMatch(service -> numbers.getOrDefault(
                new RecordId(list.listId(), service.id()), Numbering.of(service)) == Numbering.of(service));
        if (change != null && !same) {
            change.save(list.kind(), list.listId());
            Numbering.set(list, numbers);
            list.kind().lists().close(list.listId());
        }
    }
}
