package com.velotra.tv.tavro.tool.comparing;

import com.velotra.tv.tavro.tool.comparing.Operand.Directory;
import com.velotra.tv.tavro.tool.comparing.Operand.Records;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.matching.Comparison;
import com.velotra.tv.tavro.tool.matching.Side;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.ListEntry;
import com.velotra.tv.tavro.tool.storage.Snapshot;
import java.util.ArrayList;
import java.util.List;
import java.util.Optional;
import java.util.Set;
import java.util.function.Predicate;

/**
 * The differences between two operands.
 *
 * @param from description of the first one
 * @param to description of the second one
 * @param directories whether they are storage directories
 * @param lists the lists that are in both; otherwise the two lists
 * @param removed the lists that are only in the first directory
 * @param added the lists that are only in the second directory
 */
public record Differences(String from, String to, boolean directories, List<ListDifference> lists,
        List<ListEntry> removed, List<ListEntry> added) {

    /**
     * Compares two operands.
     *
     * @param reader has read them
     * @param kind of the lists of storage directories; all if empty
     * @param ignored what not to compare; see {@link Comparison#of}
     * @throws Failure if they cannot be compared, or cannot be read
     */
    public static Differences between(
            Operand from, Operand to, OperandReader reader, Optional<Kind> kind, Set<String> ignored) {
        if (from instanceof Directory one && to instanceof Directory other) {
            return ofDirectories(one, other, reader, kind, ignored);
        }
        if (from instanceof Records one && to instanceof Records other) {
            return new Differences(one.description(), other.description(), false,
                    List.of(ofRecords(one, other, ignored)), List.of(), List.of());
        }
        throw cannotCompare(from.description(), to.description());
    }

    private static Failure cannotCompare(String one, String other) {
        return new Failure("cannot compare " + one + " with " + other
                + ": compare two lists of the same kind, two records or two storage directories");
    }

    private static ListDifference ofRecords(Records from, Records to, Set<String> ignored) {
        RecordList one = from.side().list();
        RecordList other = to.side().list();
        boolean bothSingle = from.single() && to.single();
        if (one.kind() != other.kind() || !bothSingle && (isOne(from) || isOne(to))) {
            throw cannotCompare(from.description(), to.description());
        }
        return new ListDifference(one, other, bothSingle
                ? Comparison.ofRecords(from.side(), to.side(), ignored)
                : Comparison.of(from.side(), to.side(), ignored));
    }

    /** Whether the user named a record of a list. A file of one record may also stand for a list. */
    private static boolean isOne(Records records) {
        return records.single() && records.side().list().listId() != 0;
    }

    private static Differences ofDirectories(
            Directory from, Directory to, OperandReader reader, Optional<Kind> kind, Set<String> ignored) {
        Predicate<ListEntry> wanted = list -> kind.isEmpty() || kind.get() == list.kind();
        try (Snapshot one = Snapshot.open(from.directory()); Snapshot other = Snapshot.open(to.directory())) {
            List<ListEntry> before = one.lists().stream().filter(wanted).toList();
            List<ListEntry> after = other.lists().stream().filter(wanted).toList();
            List<ListDifference> lists = new ArrayList<>();
            for (ListEntry list : before) {
                if (isIn(after, list)) {
                    Side old = new Side(one.list(list.kind(), list.listId()).orElseThrow(),
                            reader.companions(from.directory()));
                    Side now = new Side(other.list(list.kind(), list.listId()).orElseThrow(),
                            reader.companions(to.directory()));
                    lists.add(new ListDifference(old.list(), now.list(), Comparison.of(old, now, ignored)));
                }
            }
            return new Differences(from.description(), to.description(), true, lists,
                    before.stream().filter(list -> !isIn(after, list)).toList(),
                    after.stream().filter(list -> !isIn(before, list)).toList());
        }
    }

    private static boolean isIn(List<ListEntry> lists, ListEntry wanted) {
        return lists.stream().anyMatch(list -> list.kind() == wanted.kind() && list.listId() == wanted.listId());
    }

    /** Returns whether there are none. */
    public boolean isEmpty() {
        return removed.isEmpty() && added.isEmpty() && lists.stream().allMatch(list -> list.comparison().isEmpty());
    }
}
