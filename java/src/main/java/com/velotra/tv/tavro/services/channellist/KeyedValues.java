package com.velotra.tv.tavro.services.channellist;

import java.util.Collections;
import java.util.LinkedHashSet;
import java.util.Set;

/**
 * The values of one record, each of them optional and under a key.
 *
 * <p>Setting a value marks its key, also when the value is null. When an object is handed in, the natives read the
 * fields of the keys that are marked and leave all other values of the record as they are. Numbers are cut to
 * the width of their field. A null text or identifier changes nothing. When an object is handed out, the keys say which
 * values the natives have set.
 *
 * <p>Setters return nothing or the object itself, and getters return the value that was set, or 0 or null. Keys and
 * field names belong to the contract of the natives, odd spellings included. Objects are not safe for use by several
 * threads at once.
 */
public abstract class KeyedValues {
    private final Set<String> keys = new LinkedHashSet<>();

    KeyedValues() {}

    /** Returns the keys of the values that were set, in the order in which they were set. */
    public final Set<String> keys() {
        return Collections.unmodifiableSet(keys);
    }

    /**
     * Returns the record that the values belong to; null if no identifier was set.
     *
     * @throws IllegalArgumentException if the identifier that was set is malformed
     */
    public final RecordId id() {
        return identifier() == null ? null : RecordId.parse(identifier());
    }

    /** The text form of the record identifier that was set, or null. */
    abstract String identifier();

    final void mark(String key) {
        keys.add(key);
    }

    final void copyKeys(KeyedValues from) {
        keys.clear();
        keys.addAll(from.keys);
    }

    final boolean hasKey(String key) {
        return keys.contains(key);
    }
}
