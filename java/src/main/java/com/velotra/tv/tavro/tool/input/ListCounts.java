package com.velotra.tv.tavro.tool.input;

import java.util.HashMap;
import java.util.LinkedHashSet;
import java.util.Map;
import java.util.Objects;
import java.util.Set;
import java.util.function.Supplier;

/** What an import did to one list: records added, changed and left as they were. */
public final class ListCounts {
    private final String name;
    private final Supplier<Map<Integer, ?>> reader;
    private final Map<Integer, ?> before;
    private final Set<Integer> updated = new LinkedHashSet<>();
    private int added;
    private int repeated;

    /**
     * @param name what the list is called in the summary, as in "satellite list 13"
     * @param reader reads the list: something that is equal for equal records, by their record ids
     */
    public ListCounts(String name, Supplier<Map<Integer, ?>> reader) {
        this.name = name;
        this.reader = reader;
        before = new HashMap<>(reader.get());
    }

    /** Counts a record that was not there before. */
    public void added() {
        added++;
    }

    /** Counts a record that was there before this import and was stored again, whether or not that changed it. */
    public void updated(int recordId) {
        updated.add(recordId);
    }

    /** Counts one more description of a record that this import has stored already. */
    public void repeated() {
        repeated++;
    }

    /** How many records were added so far. */
    public int addedSoFar() {
        return added;
    }

    /** One line with the counts, and how many records the list holds now. */
    @Override
    public String toString() {
        Map<Integer, ?> now;
        try {
            now = reader.get();
        } catch (RuntimeException e) { // the storage failed, which has been reported
            return String.format("%s: %d added; it cannot be read now", name, added);
        }
        long unchanged = updated.stream().filter(id -> Objects.equals(before.get(id), now.get(id))).count();
        return String.format("%s: %d added, %d changed, %d unchanged%s; it holds %d records", name, added,
                updated.size() - unchanged, unchanged, repeated == 0 ? "" : ", " + repeated + " repeated in the files", now.size());
    }
}
