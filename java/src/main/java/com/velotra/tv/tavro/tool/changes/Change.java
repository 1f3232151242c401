package com.velotra.tv.tavro.tool.changes;

import com.velotra.tv.tavro.services.channellist.ChannelListException;
import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.ListFile;
import com.velotra.tv.tavro.tool.storage.Storage;
import java.util.ArrayList;
import java.util.List;
import java.util.function.Function;

/**
 * A command that changes lists of the storage directory, wholly or not at all. Other commands that change lists wait
 * meanwhile. Every list is saved before its first change, so that the command can be undone: when it throws, at once;
 * otherwise by {@code ./tavro undo}, also when the process was killed. A command that leaves all versions as they were
 * leaves nothing to undo.
 */
public final class Change {
    private static Change current; // guarded by ChangeLock

    private final UndoHistory history;
    private UndoEntry entry; // null until the first list is saved
    private final String command;
    private final List<SavedList> touched = new ArrayList<>(); // the lists that may have been changed

    private Change(UndoHistory history, String command) {
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
        Runnable waiting = () -> System.err.println("  waiting for another command that changes lists …");
        ChangeLock lock = ChangeLock.take(Storage.directory(), waiting);
        try {
            return current == null ? makeLocked(command, body) : body.apply(current);
        } finally {
            lock.release();
        }
    }

    private static <T> T makeLocked(String command, Function<Change, T> body) {
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

    /** Saves a list, or that there is none, before a native changes it. Call it before each native that changes. */
    public void save(Kind kind, int listId) {
        touch(saved(kind, listId));
    }

    /**
     * Saves a list and returns its records. {@link #replace} then fails if another program has changed the list since.
     *
     * @throws Failure if there is no such list
     */
    public RecordList read(Kind kind, int listId) {
        SavedList list = saved(kind, listId);
        if (!list.existed()) {
            throw new Failure("no " + list + " in " + Storage.directory());
        }
        return touched.contains(list) ? NativeLists.read(list) : ListFile.read(entry.file(list));
    }

    /**
     * Replaces the records of a list, and creates the list if there is none: saves it, has the native load a list file,
     * and compares every byte afterwards.
     *
     * @throws Failure if it fails, or if another program has changed the list since it was saved
     */
    public void replace(RecordList list) {
        SavedList saved = saved(list.kind(), list.listId());
        if (!touched.contains(saved) && !NativeLists.version(saved).equals(saved.before())) {
            throw new Failure("another program has changed " + saved + " in the meantime; try again");
        }
        touch(saved);
        NativeLists.load(saved, list, entry.directory());
    }

    /** Makes a list what it was before the command of {@code from}. */
    void restore(UndoEntry from, SavedList list) {
        save(list.kind(), list.listId());
        NativeLists.restore(from, list, entry.directory());
    }

    private void touch(SavedList list) {
        if (!touched.contains(list)) {
            touched.add(list);
        }
    }

    /** Saves a list unless it was saved before. */
    private SavedList saved(Kind kind, int listId) {
        if (entry != null) {
            for (SavedList list : entry.lists()) {
                if (list.is(kind, listId)) {
                    return list;
                }
            }
        }
        if (entry == null) {
            entry = history.create(command);
        }
        SavedList list = NativeLists.save(kind, listId, entry.directory());
        List<SavedList> lists = new ArrayList<>(entry.lists());
        lists.add(list);
        entry = entry.withLists(false, lists);
        entry.write();
        return list;
    }

    /** Keeps the entry if something has changed. */
    private void finish() {
        if (entry == null) {
            return;
        }
        List<SavedList> lists = entry.lists().stream()
                .map(list -> list.withAfter(NativeLists.version(list)))
                .filter(list -> touched.stream().anyMatch(other -> other.is(list.kind(), list.listId())))
                .filter(SavedList::changed)
                .toList();
        if (lists.isEmpty()) {
            entry.delete();
            return;
        }
        entry.withLists(true, lists).write();
        history.prune();
    }

    /** Restores the lists that were changed. If one cannot be restored, the entry stays, and {@code cause} says so. */
    private void rollBack(Throwable cause) {
        if (entry == null) {
            return;
        }
        try {
            for (SavedList list : touched) {
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
