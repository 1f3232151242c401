package com.velotra.tv.tavro.services.channellist;

/**
 * What the list classes offer alike over their natives.
 *
 * <p>Lists are numbered from 1 to 65535, their records from 0 to 65534. Every method throws {@link IllegalArgumentException} for
 * an id out of range, before it does anything. Operations open a list that is not open; those that fail throw
 * {@link ChannelListException}.
 */
public abstract class TvList {
    private final String kind;

    /** @param kind what a list is called in messages, as in "service list" */
    TvList(String kind) {
        this.kind = kind;
    }

    /** Whether there is such a list. Nothing is created; a list that was open is closed. */
    public boolean exists(int listId) {
        return native_close(Ids.list(listId)) == 0;
    }

    /** Opens a list, creating it when there is none. */
    public void open(int listId) {
        check(native_open(Ids.list(listId)), "cannot open or create %s %d", kind, listId);
    }

    /** The same, loading the list from the file at {@code path}. */
    public void open(int listId, String path) {
        check(native_open(Ids.list(listId), path), "cannot open %s %d with the file '%s'", kind, listId, path);
    }

    /** Closes a list; its records stay. */
    public void close(int listId) {
        check(native_close(Ids.list(listId)), "cannot close %s %d: is there such a list?", kind, listId);
    }

    /** Removes all records of a list. */
    public void clean(int listId) {
        check(native_clean(Ids.list(listId)), "cannot clean %s %d: is there such a list?", kind, listId);
    }

    /** Removes a list with its records. */
    public void delete(int listId) {
        check(native_delete(Ids.list(listId)), "cannot delete %s %d: is there such a list?", kind, listId);
    }

    /** Replaces the records of list {@code to} by those of list {@code from}. */
    public void copy(int from, int to) {
        check(native_copy(Ids.list(from), Ids.list(to)), "cannot copy %s %d to %s %d: are there both?", kind, from, kind, to);
    }

    /** Writes a list to the file at {@code path}. */
    public void store(int listId, String path) {
        check(native_store(Ids.list(listId), path), "cannot store %s %d to the file '%s'", kind, listId, path);
    }

    /** Adds a copy of a record under the record id that it has. */
    public RecordId add(int listId, RecordId copyOf) {
        return added(nativeAdd(Ids.list(listId), Ids.text(copyOf)), "cannot copy the record %s to %s %d", copyOf, kind, listId);
    }

    /** Stores a record in list {@code listId}; that of a service or transport stream then points at the lists of that number. */
    public void update(int listId, RecordId id) {
        check(native_updateInfo(Ids.list(listId), Ids.text(id)), "cannot store the record %s in %s %d", id, kind, listId);
    }

    /** Removes a record. */
    public void remove(RecordId id) {
        check(nativeRemove(Ids.text(id)), "cannot remove the record %s of a %s: is there such a record?", id, kind);
    }

    /** Removes the record with the record id of {@code id} from list {@code listId}. */
    public void remove(int listId, RecordId id) {
        check(
                nativeRemoveByRecId(Ids.list(listId), Ids.text(id)),
                "cannot remove the record %d of %s %d", id.recordId(), kind, listId);
    }

    /** The same list class, with the library loaded and its manager made. */
    static <T extends TvList> T ready(T list) {
        NativeLibrary.load();
        list.nativeSetup();
        return list;
    }

    static void check(int status, String message, Object... arguments) {
        if (status != 0) {
            throw new ChannelListException(String.format(message, arguments), status);
        }
    }

    static RecordId added(String identifier, String message, Object... arguments) {
        if (identifier.isEmpty()) {
            throw new ChannelListException(String.format(message, arguments), 0);
        }
        return RecordId.parse(identifier);
    }

    static <T> T read(T answer, String message, Object... arguments) {
        if (answer == null) {
            throw new ChannelListException(String.format(message, arguments), 0);
        }
        return answer;
    }

    static byte[] orEmpty(byte[] records) {
        return records == null ? new byte[0] : records;
    }

    // The natives that these methods call; each list class has its own.

    /** Answers the address of the manager's slot, cut to an int: never 0, and no status. */
    abstract int nativeSetup();

    abstract int native_open(int mwdbId);

    abstract int native_open(int mwdbId, String path);

    abstract int native_close(int mwdbId);

    abstract int native_clean(int mwdbId);

    abstract int native_delete(int mwdbId);

    abstract int native_copy(int sourceId, int destinationId);

    abstract int native_store(int mwdbId, String path);

    abstract int native_updateInfo(int mwdbId, String identifier);

    abstract String nativeAdd(int mwdbId, String identifier);

    abstract int nativeRemove(String identifier);

    abstract int nativeRemoveByRecId(int mwdbId, String identifier);
}
