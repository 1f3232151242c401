package com.velotra.tv.tavro.tool.input;

import java.util.HashSet;
import java.util.Set;
import java.util.function.IntSupplier;

/** What an import did to one list: records added, changed and left as they were. */
public final class ListCounts {
    private final String name;
    private final IntSupplier size;
    private final Set<Integer> updated = new HashSet<>();
    private final Set<Integer> changed = new HashSet<>();
    private int added;
    private int repeated;

    /**
     * @param name what the list is called in the summary, as in "satellite list 13"
     * @param size gives how many records the list holds; -1 when it cannot be read
     */
    public ListCounts(String name, IntSupplier size) {
        this.name = name;
        this.size = size;
    }

    /** Counts a record that was not there before. */
    public void added() {
        added++;
    }

    /** Counts a record that was there before this import and was stored again. */
    public void updated(int recordId, boolean isChanged) {
        updated.add(recordId);
        if (isChanged) {
            changed.add(recordId);
        }
    }

    /** Counts one more description of a record that this import has stored already. */
    public void repeated() {
        repeated++;
    }

    /** One line with the counts, and how many records the list holds now. */
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
            holds = -1; // the storage failed, which has been reported
        }
        return holds < added + updated.size() ? "its records cannot be counted now"
                : "it holds " + Text.count(holds, "record");
    }
}
