package com.velotra.tv.tavro.tool.changes;

import com.velotra.tv.tavro.tool.records.Kind;
import java.util.OptionalLong;

/**
 * A list as it was before a command changed it.
 *
 * @param kind its kind
 * @param listId its id
 * @param before its version when it was saved; empty if there was no such list
 * @param after its version after the command; empty if the list does not exist then, or if the command has not finished
 */
public record SavedList(Kind kind, int listId, OptionalLong before, OptionalLong after) {
    /** Returns whether there was such a list. */
    public boolean existed() {
        return before.isPresent();
    }

    /** Returns whether the command changed the list. */
    boolean changed() {
        return !before.equals(after);
    }

    SavedList withAfter(OptionalLong version) {
        return new SavedList(kind, listId, before, version);
    }

    /** The name of its list file in the entry's directory. */
    String fileName() {
        return kind.code() + "-" + listId + ".list";
    }

    /** Returns the words for messages, such as "service list 3". */
    @Override
    public String toString() {
        return kind.noun() + " list " + listId;
    }
}
