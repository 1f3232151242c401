package com.velotra.tv.tavro.services.channellist;

import java.util.List;
import java.util.Objects;
import java.util.concurrent.ThreadLocalRandom;
import java.util.function.IntSupplier;
import java.util.function.Supplier;

/**
 * Operations that all four list classes share.
 *
 * <p><b>Ids.</b> List ids are 1 to 65535, record ids 0 to 65534. Every method throws {@link IllegalArgumentException}
 * for an id out of range and {@link NullPointerException} for a null argument, before it calls a native.
 *
 * <p><b>Lists.</b> An operation opens a list that is not open. Of the lists of their kind, only {@link #open(int)},
 * {@link #open(int, String)} and {@link #load} create one. An operation that fails throws {@link ChannelListException}.
 *
 * <p><b>Threads.</b> All methods may be called from any thread. Each holds the lock of its list kind until it returns;
 * there is one lock per kind, for all lists of the kind, because the natives share the table of open lists.
 * {@link VltTvChannelList#byTransportStream} also holds the lock of transport streams and
 * {@link VltTvChannelList#byNetwork} the lock of networks: both open and close lists of those kinds. Locks are always
 * taken in the order of {@link ListKind}. The locks do not make several calls one step, and they do not keep other
 * processes out. Objects that are handed in must not be changed during the call, and an overridden
 * {@code isContainsKey} must not call a list class.
 */
public abstract class TvList {
    static final String SEE_LOG = "see the log for the reason";
    static final String IS_THERE_A_LIST = "is there such a list? If so, see the log";
    static final String IS_THERE_ROOM = "is there such a list, and does it have a free record id? If so, see the log";
    static final String IS_THERE_A_RECORD = "is there such a record? If so, see the log";

    private final ListKind kind;

    TvList(ListKind kind) {
        this.kind = kind;
    }

    /** Returns the kind of the lists. */
    public final ListKind kind() {
        return kind;
    }

    /** Returns whether the list exists. Creates nothing, and closes the list if it was open. */
    public boolean exists(int listId) {
        Ids.list(listId);
        return locked(() -> native_close(listId) == 0);
    }

    /**
     * Opens a list, and creates it if there is none. Does nothing to a list that is open.
     *
     * @throws ChannelListException if a service list can be neither opened nor created; the natives do not report it
     *     for other kinds
     */
    public void open(int listId) {
        Ids.list(listId);
        checkList(() -> native_open(listId), listId, "open or create", "", SEE_LOG);
    }

    /**
     * Opens a list, and creates it if there is none, and has the native load the file at {@code path} into it. The
     * native loads nothing into a list that is open, except into an open service list without records, and it does not
     * report whether the file was loaded: use {@link #load} instead, unless a list that is open must stay as it is.
     *
     * @throws ChannelListException if the path is empty, or the list cannot be opened
     */
    public void open(int listId, String path) {
        Ids.list(listId);
        Objects.requireNonNull(path, "path");
        checkList(() -> native_open(listId, path), listId, "open", file("with", path), SEE_LOG);
    }

    /**
     * Replaces the records of a list by those in the file at {@code path}, and creates the list if there is none. A
     * list file without records leaves the list empty. Afterwards the list is open.
     *
     * <p>If the file cannot be loaded, the list keeps its records, a list that did not exist still does not, and the
     * path that an earlier load gave to the service lists is forgotten.
     *
     * <p>The natives report success either way. This method therefore adds a record named "load probe" with a number,
     * lets the native load the file, and looks whether that record is gone. Three consequences:
     * <ul>
     *   <li>A list that has no free record id cannot be loaded and is left alone: clean or delete it first.
     *   <li>Other processes see the additional record for a moment, and a process that is killed at that moment leaves
     *       it in the list. If another process removes it at that moment, a failed load goes unnoticed.
     *   <li>A service list whose path contains "scan_" counts as loaded when the native took the scan cache instead of
     *       the file.
     * </ul>
     *
     * @throws ChannelListException if the file is missing, unreadable, damaged or not a list of this kind, or if the
     *     list has no free record id
     */
    public void load(int listId, String path) {
        Ids.list(listId);
        Objects.requireNonNull(path, "path");
        String probeName = "load probe " + Long.toHexString(ThreadLocalRandom.current().nextLong());
        locked(() -> {
            replaceByFile(listId, path, probeName);
            return null;
        });
    }

    /** Loads a list, with a record of that name as the probe. The caller holds the lock. */
    final void replaceByFile(int listId, String path, String probeName) {
        String what = "load " + list(listId) + file("from", path);
        boolean existed = native_close(listId) == 0;
        native_open(listId);
        String probe = addNamed(listId, probeName);
        if (probe.isEmpty()) {
            if (!existed) {
                native_delete(listId);
            }
            throw ChannelListException.ofList(kind, listId, 0, what,
                    "the list accepts no further record, which this needs; clean or delete it first, or see the log");
        }
        native_close(listId); // the natives load files into closed lists
        int status = native_open(listId, path);
        if (!probeName.equals(nameOf(probe))) {
            return;
        }
        forgetPath();
        int undone = existed ? nativeRemove(probe) : native_delete(listId);
        throw ChannelListException.ofList(kind, listId, status, what,
                "is it there, readable and the file of a " + kind.listName() + "? The list "
                        + (undone == 0 ? "was left as it was" : "now has a record '" + probeName
                                + "' that could not be removed"));
    }

    /** Closes a list. Its records stay. Opens it first if it is not open, which does no harm. */
    public void close(int listId) {
        Ids.list(listId);
        checkList(() -> native_close(listId), listId, "close", "", IS_THERE_A_LIST);
    }

    /** Removes all records of a list. The list stays. */
    public void clean(int listId) {
        Ids.list(listId);
        checkList(() -> native_clean(listId), listId, "clean", "", IS_THERE_A_LIST);
    }

    /** Deletes a list with its records. */
    public void delete(int listId) {
        Ids.list(listId);
        checkList(() -> native_delete(listId), listId, "delete", "", IS_THERE_A_LIST);
    }

    /**
     * Replaces the records of list {@code to} by the records of list {@code from}.
     *
     * @throws ChannelListException if either list does not exist or the copy fails; it names list {@code to}
     */
    public void copy(int from, int to) {
        Ids.list(from);
        Ids.list(to);
        int status = locked(() -> native_copy(from, to));
        if (status != 0) {
            throw ChannelListException.ofList(
                    kind, to, status, "copy " + list(from) + " to " + list(to),
                    "are there both lists? If so, see the log");
        }
    }

    /**
     * Writes a list to the file at {@code path}, which is replaced if it exists. The list stays as it is.
     *
     * @throws ChannelListException if the list does not exist, the path is empty or the file cannot be written
     */
    public void store(int listId, String path) {
        Ids.list(listId);
        Objects.requireNonNull(path, "path");
        checkList(() -> native_store(listId, path), listId, "store", file("to", path),
                "is there such a list, and may the file be written? If so, see the log");
    }

    /**
     * Adds a copy of a record to list {@code listId}, under the record id that it has. If the id is taken there, the
     * record with that id is replaced, except in a service list, where the call fails.
     *
     * @return the identifier of the copy
     * @throws ChannelListException if the record or the list does not exist, or if the id is taken in a service list
     */
    public RecordId add(int listId, RecordId copyOf) {
        Ids.list(listId);
        String text = Ids.text(copyOf);
        return added(() -> nativeAdd(listId, text), listId, "copy " + record(copyOf) + " to list " + listId,
                "are there the record and the list" + (kind == ListKind.SERVICE
                        ? ", and is the record id free in the list" : "") + "? If so, see the log");
    }

    /**
     * Replaces the record of list {@code listId} that has the record id of {@code id} by the record {@code id}. A
     * service or transport stream then refers to the companion lists with the id {@code listId}.
     *
     * @throws ChannelListException if either record does not exist; it names the record of list {@code listId}
     */
    public void update(int listId, RecordId id) {
        Ids.list(listId);
        String text = Ids.text(id);
        RecordId replaced = new RecordId(listId, id.recordId());
        checkRecord(() -> native_updateInfo(listId, text), replaced,
                "replace " + record(replaced) + " by " + record(id), "are there both records? If so, see the log");
    }

    /**
     * Removes a record.
     *
     * @throws ChannelListException if there is no such record
     */
    public void remove(RecordId id) {
        String text = Ids.text(id);
        checkRecord(() -> {
            openForRemoval(text);
            return nativeRemove(text);
        }, id, "remove " + record(id), IS_THERE_A_RECORD);
    }

    /**
     * Removes the record of list {@code listId} whose record id is that of {@code id}. The list part of {@code id} is
     * ignored.
     *
     * @throws ChannelListException if there is no such record
     */
    public void remove(int listId, RecordId id) {
        Ids.list(listId);
        String text = Ids.text(id);
        RecordId removed = new RecordId(listId, id.recordId());
        checkRecord(() -> {
            openForRemoval(removed.toString());
            return nativeRemoveByRecId(listId, text);
        }, removed, "remove " + record(removed), IS_THERE_A_RECORD);
    }

    /** The same list class, with the library loaded and its manager made. */
    static <T extends TvList> T ready(T list) {
        NativeLibrary.load();
        list.nativeSetup();
        return list;
    }

    // How the list classes call natives. Every native call of the public methods goes through locked.

    final <T> T locked(Supplier<T> call, ListKind... others) {
        return kind.exclusively(call, others);
    }

    /** Makes a call that concerns one list, and throws an exception if its status is not 0. */
    private void checkList(IntSupplier call, int listId, String verb, String object, String remedy) {
        int status = locked(call::getAsInt);
        if (status != 0) {
            throw ChannelListException.ofList(kind, listId, status, verb + " " + list(listId) + object, remedy);
        }
    }

    /** Makes a call that concerns one record, and throws an exception if its status is not 0. */
    final void checkRecord(IntSupplier call, RecordId id, String action, String remedy) {
        int status = locked(call::getAsInt);
        if (status != 0) {
            throw ChannelListException.ofRecord(kind, id, status, action, remedy);
        }
    }

    /** Makes an update of one record by an object that may carry its identifier. */
    final void checkUpdate(IntSupplier call, int listId, RecordId carried) {
        RecordId id = new RecordId(listId, carried == null ? 0 : carried.recordId());
        checkRecord(call, id, "update " + record(id), IS_THERE_A_RECORD);
    }

    /** Makes an update of many records; {@code listId} is null when they may belong to several lists. */
    final void checkUpdates(IntSupplier call, Integer listId, int count) {
        int status = locked(call::getAsInt);
        if (status != 0) {
            String where = listId == null ? "" : " of list " + listId;
            throw ChannelListException.ofList(kind, listId, status, "update " + count + " " + kind.recordName()
                    + (count == 1 ? "" : "s") + where,
                    "those before the first that failed are updated; are there all the records? If so, see the log");
        }
    }

    /** Makes a call that adds a record, and throws an exception if it returns no identifier. */
    private RecordId added(Supplier<String> call, int listId, String action, String remedy) {
        String identifier = locked(call);
        if (identifier.isEmpty()) {
            throw ChannelListException.ofList(kind, listId, 0, action, remedy);
        }
        return RecordId.parse(identifier);
    }

    /** Makes a call that adds a record made of an object. */
    final RecordId added(Supplier<String> call, int listId) {
        return added(call, listId, "add a " + kind.recordName() + " to list " + listId, IS_THERE_ROOM);
    }

    /** Makes a call that returns the bytes of records, or null when there are none. */
    final byte[] bytes(Supplier<byte[]> call, ListKind... others) {
        byte[] records = locked(call, others);
        return records == null ? new byte[0] : records;
    }

    /** Makes a call that returns the records of a list as objects, or null when one cannot be read. */
    final <T> List<T> objects(Supplier<List<T>> call, int listId) {
        List<T> objects = locked(call);
        if (objects == null) {
            throw ChannelListException.ofList(kind, listId, 0, "read " + list(listId), SEE_LOG);
        }
        return objects;
    }

    private String list(int listId) {
        return kind.listName() + " " + listId;
    }

    private String record(RecordId id) {
        return kind.recordName() + " " + id;
    }

    private static String file(String preposition, String path) {
        return " " + preposition + " the file '" + path + "'";
    }

    // What differs between the kinds.

    /** Adds a record with a name and returns its identifier, or an empty text. The caller holds the lock. */
    abstract String addNamed(int listId, String name);

    /** The name of a record, or null when there is no such record. The caller holds the lock. */
    abstract String nameOf(String identifier);

    /** Opens a list whose native removes from open lists only. The caller holds the lock. */
    void openForRemoval(String identifier) {}

    /** Makes the native side forget a path that could not be loaded. The caller holds the lock. */
    void forgetPath() {}

    // The natives that these methods call; each list class has its own.

    /** Returns the address of the manager's slot, cut to an int: never 0, and not a status. */
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
