package com.velotra.tv.tavro.tool.matching;

import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.Optional;
import java.util.Set;

/**
 * An edited list with what a rescan found: matched records take the values of the broadcast and keep those of the user
 * ({@link UserValues} says which) and their order, new records follow at the end, and records that the rescan did not
 * find stay or go.
 *
 * @param list the records
 * @param added the new records, as they are in {@code list}
 * @param missing the records that the rescan did not find, in the order of the edited list
 * @param cleared how many references of added records were cleared because the edited list has no such record, by the
 *     kind that they refer to
 * @param takenNumbers the added services whose channel number another service of the edited list has
 */
public record Merge(RecordList list, List<Record> added, List<Record> missing, Map<Kind, Integer> cleared,
        List<Record> takenNumbers) {
    private static final Field LCN = Fields.of(Kind.SERVICES, "lcn");

    /**
     * Merges a rescan into an edited list of the same kind.
     *
     * @param taken parts that are taken from the rescan although they belong to the user, unless the record says that
     *     the user edited them
     * @param removeMissing whether records that the rescan did not find go
     * @throws Failure if more records are new than the list has free record ids
     */
    public static Merge of(Side edited, Side rescan, Set<Part> taken, boolean removeMissing) {
        RecordList before = edited.list();
        Pairing pairing = Matching.of(edited, rescan);
        UserValues values = new UserValues(before.kind(), taken);
        Links links = new Links(edited, rescan);
        List<Record> records = new ArrayList<>();
        List<Record> missing = new ArrayList<>();
        for (int i = 0; i < before.size(); i++) {
            Record record = before.get(i);
            if (pairing.toOf(i) >= 0) {
                Record found = rescan.list().get(pairing.toOf(i));
                records.add(links.adapt(values.merged(record, found), Optional.of(record), found));
                continue;
            }
            missing.add(record);
            if (!removeMissing) {
                records.add(record);
            }
        }
        List<Record> added = added(before, rescan.list(), pairing, values, links);
        List<Record> takenNumbers = takenNumbers(records, added);
        records.addAll(added);
        return new Merge(RecordList.of(before.kind(), before.listId(), before.name(), records), added, missing,
                links.cleared(), takenNumbers);
    }

    private static List<Record> added(
            RecordList before, RecordList rescan, Pairing pairing, UserValues values, Links links) {
        FreeIds ids = new FreeIds(before);
        List<Record> added = new ArrayList<>();
        for (int i = 0; i < rescan.size(); i++) {
            if (pairing.fromOf(i) < 0) {
                Record found = rescan.get(i);
                Record record = values.added(found, rescan.listId(), before.listId(), ids.take(found.id()));
                added.add(links.adapt(record, Optional.empty(), found));
            }
        }
        return added;
    }

    private static List<Record> takenNumbers(List<Record> records, List<Record> added) {
        Map<Long, Record> byNumber = new HashMap<>();
        records.stream().filter(Merge::hasNumber).forEach(record -> byNumber.put(LCN.number(record), record));
        return added.stream().filter(Merge::hasNumber).filter(record -> byNumber.containsKey(LCN.number(record)))
                .toList();
    }

    private static boolean hasNumber(Record record) {
        return record.kind() == Kind.SERVICES && LCN.in(record) && LCN.number(record) != 0;
    }
}
