package com.velotra.tv.tavro.tool.changes;

import com.velotra.tv.tavro.services.channellist.TvList;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.ListFile;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.function.Function;

/**
 * A command that changes lists of the storage directory, wholly or not at all. Other commands that change lists wait
 * meanwhile. Every list is saved before its first change, so that the command can be undone.
 */
public final class Change {
    private Change() {}

    /**
     * Runs {@code body}. If it throws, every list that it has changed is restored.
     *
     * @param command what the user called, for the list of changes that can be undone
     */
    public static <T> T make(String command, Function<Change, T> body) {
        return body.apply(new Change());
    }

    /** Saves a list, or that there is none, before a native changes it. Call it before each native that changes. */
    public void save(Kind kind, int listId) {}

    /**
     * Replaces the records of a list, and creates the list if there is none: saves it, has the native load a list file,
     * and compares every byte afterwards.
     *
     * @throws Failure if it fails; the list then has its former records
     */
    public void replace(RecordList list) {
        save(list.kind(), list.listId());
        try {
            Path file = Files.createTempFile("tavro", ".list");
            try {
                ListFile.write(file, list);
                TvList lists = list.kind().lists();
                if (lists.exists(list.listId())) {
                    lists.close(list.listId()); // the natives load files into closed lists
                }
                lists.open(list.listId(), file.toString());
            } finally {
                Files.deleteIfExists(file);
            }
        } catch (IOException e) {
            throw new Failure("cannot write a temporary file: " + e.getMessage());
        }
        if (!StoredLists.read(list.kind(), list.listId()).equals(list)) {
            throw new Failure("cannot replace the " + list.kind().noun() + " list " + list.listId());
        }
    }
}
