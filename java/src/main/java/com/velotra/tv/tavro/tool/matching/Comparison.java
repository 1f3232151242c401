package com.velotra.tv.tavro.tool.matching;

import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;

/** The differences between two lists of the same kind, in the order of the second list. Immutable. */
public final class Comparison {
    /** Stands for the bytes that no field covers. */
    public static final String UNNAMED_BYTES = "unnamed_bytes";

    /** Stands for the order of the records. */
    public static final String ORDER = "order";

    private final List<Difference> differences;
    private final int equal;

    private Comparison(List<Difference> differences, int equal) {
        this.differences = List.copyOf(differences);
        this.equal = equal;
    }

    /**
     * Compares two lists.
     *
     * @param ignored names of fields to leave out, {@link #UNNAMED_BYTES} and {@link #ORDER}
     */
    public static Comparison of(Side from, Side to, Set<String> ignored) {
        return new Builder(from, to, ignored, Matching.of(from, to)).build();
    }

    /** Compares two lists of one record each, whatever their identities. */
    public static Comparison ofRecords(Side from, Side to, Set<String> ignored) {
        Pairing one = new Pairing(1, 1);
        one.put(0, 0);
        return new Builder(from, to, ignored, one).build();
    }

    /** Compares two states of one list, whose records have kept their record ids. */
    public static Comparison ofStates(RecordList before, RecordList after) {
        Pairing byId = new Pairing(before.size(), after.size());
        byId.pair(i -> before.get(i).id(), i -> after.get(i).id());
        return new Builder(
                new Side(before, Companions.none()), new Side(after, Companions.none()), Set.of(), byId).build();
    }

    public List<Difference> differences() {
        return differences;
    }

    /** Returns whether nothing differs except for what was ignored. */
    public boolean isEmpty() {
        return differences.isEmpty();
    }

    public int removed() {
        return (int) differences.stream().filter(Difference::removed).count();
    }

    public int added() {
        return (int) differences.stream().filter(Difference::added).count();
    }

    /** Returns the number of records with other values in both lists. */
    public int changed() {
        return (int) differences.stream().filter(Difference::changed).count();
    }

    /** Returns the number of records that have another order. Some of them may be changed, too. */
    public int moved() {
        return (int) differences.stream().filter(Difference::moved).count();
    }

    /** Returns the number of records that are in both lists, with the same values and order. */
    public int equal() {
        return equal;
    }

    /** Returns by the label of each field in how many records it differs. */
    public Map<String, Integer> byField() {
        Map<String, Integer> counts = new LinkedHashMap<>();
        for (Difference difference : differences) {
            difference.fields().stream()
                    .map(change -> change.name().equals(UNNAMED_BYTES) ? "unnamed bytes" : change.label())
                    .distinct()
                    .forEach(label -> counts.merge(label, 1, Integer::sum));
        }
        return counts;
    }

    private static final class Builder {
        private final List<Record> from;
        private final List<Record> to;
        private final Pairing pairing;
        private final RecordComparison records;
        private final boolean[] kept; // by index in the second list: the pair has kept its order
        private final List<Difference> differences = new ArrayList<>();
        private int equal;
        private int nextRemoved; // index in the first list

        Builder(Side from, Side to, Set<String> ignored, Pairing pairing) {
            this.from = from.list();
            this.to = to.list();
            this.pairing = pairing;
            records = new RecordComparison(ignored);
            int[] places = new int[this.to.size()];
            for (int i = 0; i < places.length; i++) {
                int partner = pairing.fromOf(i);
                places[i] = partner >= 0 && ignored.contains(ORDER) ? i : partner;
            }
            kept = KeptOrder.of(places);
        }

        Comparison build() {
            int[] before = removedBefore();
            for (int i = 0; i < to.size(); i++) {
                addRemoved(before[i]);
                int partner = pairing.fromOf(i);
                if (partner < 0) {
                    differences.add(new Difference(null, to.get(i), 0, i + 1, false, List.of()));
                } else {
                    addPair(partner, i);
                }
            }
            addRemoved(from.size());
            return new Comparison(differences, equal);
        }

        /**
         * Removed records stand where they were among the records that keep their order, and before added ones. Returns
         * by index in the second list which index of the first they end at.
         */
        private int[] removedBefore() {
            int[] before = new int[to.size()];
            int end = from.size();
            for (int i = before.length - 1; i >= 0; i--) {
                end = kept[i] ? pairing.fromOf(i) : end;
                before[i] = end;
            }
            return before;
        }

        private void addRemoved(int end) {
            for (; nextRemoved < end; nextRemoved++) {
                if (pairing.toOf(nextRemoved) < 0) {
                    differences.add(new Difference(
                            from.get(nextRemoved), null, nextRemoved + 1, 0, false, List.of()));
                }
            }
        }

        private void addPair(int partner, int i) {
            List<FieldChange> fields = records.of(from.get(partner), to.get(i));
            if (fields.isEmpty() && kept[i]) {
                equal++;
            } else {
                differences.add(new Difference(from.get(partner), to.get(i), partner + 1, i + 1, !kept[i], fields));
            }
        }
    }
}
