package com.velotra.tv.tavro.tool.changes;

import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.storage.Storage;
import java.nio.file.Path;
import java.util.List;
import java.util.OptionalInt;

/** Restores the lists that a command changed. This is itself a change, and can be undone. */
public final class Undo {
    private Undo() {}

    /**
     * What was done.
     *
     * @param entry the command that was undone
     * @param restored those of its lists that were something else than before it
     */
    public record Done(UndoEntry entry, List<SavedList> restored) {}

    /**
     * Undoes a command.
     *
     * @param number of the command; empty for the last one
     * @throws Failure if the command does not exist; if without a number, another program has changed a list since; or
     *     if a list cannot be restored: then all lists stay as they are
     */
    public static Done undo(OptionalInt number) {
        Path directory = Storage.directory();
        find(UndoHistory.of(directory).entries(), number, directory); // without making a storage directory
        // The command that is undone is known once the lock is held.
        UndoEntry[] undone = new UndoEntry[1];
        return Change.make(() -> "undo " + undone[0].number(), change -> {
            UndoEntry entry = find(UndoHistory.of(directory).entries(), number, directory);
            undone[0] = entry;
            if (number.isEmpty()) {
                entry.lists().forEach(list -> needUnchanged(entry, list));
            }
            return new Done(entry, entry.lists().stream().filter(list -> change.restore(entry, list)).toList());
        });
    }

    private static UndoEntry find(List<UndoEntry> entries, OptionalInt number, Path directory) {
        if (entries.isEmpty()) {
            throw new Failure("nothing to undo in " + directory);
        }
        UndoEntry last = entries.get(entries.size() - 1);
        int wanted = number.orElse(last.number());
        return entries.stream().filter(entry -> entry.number() == wanted).findFirst().orElseThrow(() -> new Failure(
                "there is no change " + wanted + " to undo; see ./tavro undo --list"));
    }

    private static void needUnchanged(UndoEntry entry, SavedList list) {
        if (entry.finished() && !NativeLists.version(list).equals(list.after())) {
            throw new Failure("another program has changed " + list + " since '" + entry.command()
                    + "'; ./tavro undo " + entry.number() + " restores it nevertheless");
        }
    }
}
