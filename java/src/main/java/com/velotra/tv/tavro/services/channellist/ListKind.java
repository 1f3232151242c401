package com.velotra.tv.tavro.services.channellist;

import java.util.EnumSet;
import java.util.concurrent.locks.ReentrantLock;
import java.util.function.Supplier;

/**
 * The four kinds of lists.
 *
 * <p>Each kind has one lock, which every call to its natives holds; see {@link TvList}.
 */
public enum ListKind {
    /** Service lists; the natives call them channel lists. */
    SERVICE("service"),
    /** Transport stream lists. */
    TRANSPORT_STREAM("transport stream"),
    /** Network lists. */
    NETWORK("network"),
    /** Satellite lists. */
    SATELLITE("satellite");

    private final String recordName;
    private final ReentrantLock lock = new ReentrantLock();

    ListKind(String recordName) {
        this.recordName = recordName;
    }

    /** Returns the name of a record in messages, such as "service". */
    public String recordName() {
        return recordName;
    }

    /** Returns the name of a list in messages, such as "service list". */
    public String listName() {
        return recordName + " list";
    }

    /**
     * Makes a call that uses the natives of this kind and of {@code others}, while no other thread uses them. Locks are
     * taken in the order in which the kinds are declared, so that two calls never wait for each other.
     */
    <T> T exclusively(Supplier<T> call, ListKind... others) {
        EnumSet<ListKind> kinds = EnumSet.of(this, others);
        kinds.forEach(kind -> kind.lock.lock());
        try {
            return call.get();
        } finally {
            kinds.forEach(kind -> kind.lock.unlock());
        }
    }
}
