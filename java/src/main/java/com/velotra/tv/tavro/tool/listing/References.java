package com.velotra.tv.tavro.tool.listing;

import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.Snapshot;
import com.velotra.tv.tavro.tool.storage.Storage;
import java.util.HashMap;
import java.util.Map;
import java.util.Optional;
import java.util.function.BiFunction;

/**
 * Finds the records that records refer to. A list is read when it is first needed, and once.
 *
 * <p>Not for use by several threads.
 */
public final class References implements AutoCloseable {
    private final BiFunction<Kind, Integer, Optional<RecordList>> lists;
    private final Map<Integer, Optional<RecordList>> read = new HashMap<>();
    private Snapshot snapshot; // of the storage directory in use, once a list is needed

    private References(BiFunction<Kind, Integer, Optional<RecordList>> lists) {
        this.lists = lists;
    }

    /** References within the lists that {@code lists} finds by their kind and id. */
    public static References in(BiFunction<Kind, Integer, Optional<RecordList>> lists) {
        return new References(lists);
    }

    /** References within the storage directory that the library uses. */
    public static References inStorage() {
        return new References(null);
    }

    /** Returns a list; empty if there is none. */
    public Optional<RecordList> list(Kind kind, int listId) {
        int key = kind.number() << 16 | listId;
        Optional<RecordList> list = read.get(key);
        if (list == null) {
            list = find(kind, listId);
            read.put(key, list);
        }
        return list;
    }

    private Optional<RecordList> find(Kind kind, int listId) {
        if (lists != null) {
            return lists.apply(kind, listId);
        }
        if (snapshot == null) {
            snapshot = Snapshot.open(Storage.directory());
        }
        return snapshot.list(kind, listId);
    }

    /** Returns a record; null if there is none, and for list 0, which stands for no record. */
    public Record record(Kind kind, long listId, long recordId) {
        return listId == 0 ? null
                : list(kind, (int) listId).flatMap(list -> list.byId((int) recordId)).orElse(null);
    }

    @Override
    public void close() {
        if (snapshot != null) {
            snapshot.close();
            snapshot = null;
        }
    }
}
