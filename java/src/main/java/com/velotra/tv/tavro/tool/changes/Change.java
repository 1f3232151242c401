package com.velotra.tv.tavro.tool.changes;

import com.velotra.tv.tavro.services.channellist.ChannelListException;
import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.Access;
import com.velotra.tv.tavro.tool.storage.Storage;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.util.ArrayList;
import java.util.List;
import java.util.Optional;
import java.util.function.Function;
import java.util.function.Supplier;

/**
 * A command that changes lists of the storage directory, all or nothing. Other commands that change lists wait
 * meanwhile. Every list is saved before its first change, so that the command can be undone: when it throws, at once;
 * otherwise by {@code ./tavro undo}, also when the process was killed. A command that leaves all versions as they were
 * leaves nothing to undo.
 */
public final class Change {
    private static final String READ_ONLY = "TAVRO_READ_ONLY"; // see docs/host-platform.md

    private static Change current; // guarded by ChangeLock

    private final UndoHistory history;
    private final Supplier<String> command;
    private final List<SavedList> read = new ArrayList<>(); // with the versions that were read
    private UndoEntry entry; // null until the first list is saved

    private Change(UndoHistory history, Supplier<String> command) {
        this.history = history;
        this.command = command;
    }

    /**
     * Runs {@code body}. If it throws, every list that it has changed is restored. Within the body of another change,
     * {@code body} becomes part of that.
     *
     * @param command what the user called, for the list of changes that can be undone
     */
    public static <T> T make(String command, Function<Change, T> body) {
        return make(() -> command, body);
    }

    /** The same with a command that {@code body} knows when it saves the first list. */
    static <T> T make(Supplier<String> command, Function<Change, T> body) {
        Access.readWrite();
        String readOnly = System.getenv(READ_ONLY);
        if (readOnly != null && !readOnly.isEmpty() && !readOnly.equals("0")) {
            throw new Failure("lists cannot be changed while " + READ_ONLY + " is set; unset it");
        }
        Runnable waiting = () -> System.err.println("  waiting for another command that changes lists …");
        ChangeLock lock = ChangeLock.take(Storage.directory(), waiting);
        try {
            return current == null ? makeLocked(command, body) : body.apply(current);
        } finally {
            lock.release();
        }
    }

    private static <T> T makeLocked(Supplier<String> command, Function<Change, T> body) {
        UndoHistory history = UndoHistory.of(Storage.directory());
        history.unfinished().ifPresent(entry -> System.err.println("  '" + Printable.of(entry.command())
                + "' did not finish; ./tavro undo " + entry.number() + " restores the lists that it changed"));
        Change change = new Change(history, command);
        current = change;
        try {
            T result = body.apply(change);
            change.finish();
            return result;
        } catch (RuntimeException | Error e) {
            change.rollBack(e);
            throw e;
        } finally {
            current = null;
        }
    }

    /**
     * Saves a list, or that there is none, before a native changes it. Call it before each native that changes.
     *
     * @throws Failure if it cannot be saved, or if another program has changed the list since {@link #read}
     */
    public void save(Kind kind, int listId) {
        saved(kind, listId);
    }

    /**
     * Returns the records of a list that is about to be changed. {@link #save} and {@link #replace} then fail if
     * another program has changed it in the meantime.
     *
     * @throws Failure if the list does not exist
     */
    public RecordList read(Kind kind, int listId) {
        if (find(read, kind, listId).isEmpty()) {
            read.add(NativeLists.version(kind, listId));
        }
        return StoredLists.read(kind, listId);
    }

    /**
     * Replaces the records of a list, and creates the list if there is none: saves it, has the native load a list file,
     * and compares every byte afterwards.
     *
     * @throws Failure if it fails, or if another program has changed the list since {@link #read}
     */
    public void replace(RecordList list) {
        SavedList saved = saved(list.kind(), list.listId());
        NativeLists.load(saved, list, entry.directory());
    }

    /** Makes a list what it was before the command of {@code from}. Returns whether it was something else. */
    boolean restore(UndoEntry from, SavedList list) {
        if (NativeLists.version(list).equals(list.before())) {
            return false;
        }
        save(list.kind(), list.listId());
        NativeLists.restore(from, list, entry.directory());
        return true;
    }

    /** Saves a list unless it was saved before. */
    private SavedList saved(Kind kind, int listId) {
        Optional<SavedList> before = entry == null ? Optional.empty() : find(entry.lists(), kind, listId);
        if (before.isPresent()) {
            return before.get();
        }
        if (entry == null) {
            entry = history.create(command.get());
        }
        SavedList list = NativeLists.save(kind, listId, entry.directory());
        find(read, kind, listId).filter(seen -> !seen.before().equals(list.before())).ifPresent(seen -> {
            throw new Failure("another program has changed " + list + " in the meantime; try again");
        });
        List<SavedList> lists = new ArrayList<>(entry.lists());
        lists.add(list);
        entry = entry.withLists(false, lists);
        entry.write();
        return list;
    }

    private static Optional<SavedList> find(List<SavedList> lists, Kind kind, int listId) {
        return lists.stream().filter(list -> list.kind() == kind && list.listId() == listId).findFirst();
    }

    /** Keeps the entry if something has changed. */
    private void finish() {
        if (entry == null) {
            return;
        }
        List<SavedList> lists = entry.lists().stream().map(list -> list.withAfter(NativeLists.version(list)))
                .filter(SavedList::changed).toList();
        if (lists.isEmpty()) {
            entry.delete();
            return;
        }
        entry.withLists(true, lists).write();
        history.prune();
    }

    /** Restores the lists that were changed. If one cannot be restored, the entry stays, and a message says so. */
    private void rollBack(Throwable cause) {
        if (entry == null) {
            return;
        }
        try {
            for (SavedList list : entry.lists()) {
                if (!NativeLists.version(list).equals(list.before())) {
                    NativeLists.restore(entry, list, entry.directory());
                }
            }
            entry.delete();
        } catch (Failure | ChannelListException e) {
            cause.addSuppressed(e);
            System.err.println("tavro: the lists could not be restored: " + e.getMessage()
                    + "; they are saved: run ./tavro undo " + entry.number() + " when this is mended");
        }
    }
}
