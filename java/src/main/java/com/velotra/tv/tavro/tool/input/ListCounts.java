package com.velotra.tv.tavro.tool.input;

import java.util.HashSet;
import java.util.Set;
import java.util.function.IntSupplier;

/** What an import did to one list: how many records it added, changed and left unchanged. */
public final class ListCounts {
    private final String name;
    private final IntSupplier size;
    private final Set<Integer> updated = new HashSet<>();
    private final Set<Integer> changed = new HashSet<>();
    private int added;
    private int repeated;

    /**
     * @param name of the list in the summary, such as "satellite list 13"
     * @param size returns the number of records in the list; -1 if it cannot be read
     */
    public ListCounts(String name, IntSupplier size) {
        this.name = name;
        this.size = size;
    }

    /** Counts a new record. */
    public void added() {
        added++;
    }

    /** Counts an update of a record that existed before this import. */
    public void updated(int recordId, boolean isChanged) {
        updated.add(recordId);
        if (isChanged) {
            changed.add(recordId);
        }
    }

    /** Counts a further description of a record that this import has already stored. */
    public void repeated() {
        repeated++;
    }

    /** Returns a line with the counts and the number of records in the list now. */
    @Override
    public String toString() {
        String repeatedText = repeated == 0 ? "" : ", " + repeated + " repeated in the files";
        return String.format("%s: %d added, %d changed, %d unchanged%s; %s", name, added, changed.size(),
                updated.size() - changed.size(), repeatedText, holds());
    }

    private String holds() {
        int holds;
        try {
            holds = size.getAsInt();
        } catch (RuntimeException e) {
            holds = -1; // the storage failed; that is reported elsewhere
        }
        return holds < added + updated.size() ? "its records cannot be counted"
                : "it holds " + Text.count(holds, "record");
    }
}
