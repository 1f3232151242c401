package com.velotra.tv.tavro.services.channellist;

import java.util.Collections;
import java.util.LinkedHashSet;
import java.util.Set;

/** A bag of optional values, each under its key: which of them are there. */
public abstract class KeyedValues {
    private final Set<String> keys = new LinkedHashSet<>();

    KeyedValues() {}

    /** The keys of the values that were set, in the order in which they were set. */
    public Set<String> keys() {
        return Collections.unmodifiableSet(keys);
    }

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
