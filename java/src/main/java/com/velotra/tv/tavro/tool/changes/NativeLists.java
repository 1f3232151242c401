package com.velotra.tv.tavro.tool.changes;

import com.velotra.tv.tavro.services.channellist.ChannelListException;
import com.velotra.tv.tavro.services.channellist.TvList;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.ListFile;
import com.velotra.tv.tavro.tool.storage.Snapshot;
import com.velotra.tv.tavro.tool.storage.Storage;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Arrays;
import java.util.OptionalLong;

/** Saves and restores lists through the natives. The caller holds the lock for changes. */
final class NativeLists {
    private NativeLists() {}

    /** Returns the version of a list; empty if the list does not exist. */
    static OptionalLong version(SavedList list) {
        try (Snapshot snapshot = Snapshot.open(Storage.directory())) {
            return snapshot.entry(list.kind(), list.listId()).map(now -> OptionalLong.of(now.version()))
                    .orElseGet(OptionalLong::empty);
        }
    }

    /** Returns a list with its version, without storing it. */
    static SavedList version(Kind kind, int listId) {
        SavedList list = new SavedList(kind, listId, OptionalLong.empty(), OptionalLong.empty());
        return new SavedList(kind, listId, version(list), OptionalLong.empty());
    }

    /**
     * Stores a list into {@code directory}, if there is one.
     *
     * @throws Failure if it cannot be stored
     */
    static SavedList save(Kind kind, int listId, Path directory) {
        // The version is read first: if another program changes the list now, the later comparison notices it.
        SavedList list = version(kind, listId);
        if (list.existed()) {
            try {
                kind.lists().store(listId, directory.resolve(list.fileName()).toString());
            } catch (ChannelListException e) {
                throw new Failure("cannot save " + list + " before the change: " + e.problem() + "; "
                        + Storage.whyItFails() + "; nothing was changed");
            }
        }
        return list;
    }

    /** Gives a list the records of {@code content}. {@code directory} is for a temporary file. */
    static void load(SavedList list, RecordList content, Path directory) {
        Path file = temporary(list, directory);
        try {
            ListFile.write(file, content);
            loadAndCompare(list, file, content);
        } finally {
            delete(file);
        }
    }

    /** Makes a list what it was before the command of {@code from}. {@code directory} is for a temporary file. */
    static void restore(UndoEntry from, SavedList list, Path directory) {
        TvList lists = list.kind().lists();
        if (!list.existed()) {
            if (lists.exists(list.listId())) {
                lists.delete(list.listId());
            }
            return;
        }
        RecordList content = ListFile.read(from.file(list));
        // A link needs no space on a full file system.
        Path file = temporary(list, directory);
        try {
            Files.createLink(file, from.file(list));
            loadAndCompare(list, file, content);
        } catch (IOException | UnsupportedOperationException e) {
            load(list, content, directory);
        } finally {
            delete(file);
        }
    }

    /**
     * The name of a file that is deleted after the load. deliberate: no file stays at a path that a service list was
     * loaded from, because filters of services would have it loaded into lists of other kinds. So each list has a name
     * of its own, too.
     */
    private static Path temporary(SavedList list, Path directory) {
        return directory.resolve(list.fileName() + ".load");
    }

    private static void loadAndCompare(SavedList list, Path file, RecordList content) {
        // deliberate: not TvList.load, which needs a free record id; the comparison shows whether the file was loaded.
        TvList lists = list.kind().lists();
        lists.exists(list.listId()); // closes it: the natives load files into closed lists
        lists.open(list.listId(), file.toString());
        boolean loaded = lists.exists(list.listId())
                && Arrays.equals(StoredLists.read(list.kind(), list.listId()).bytes(), content.bytes());
        if (!loaded) {
            throw new Failure("cannot replace the records of " + list + "; " + Storage.whyItFails());
        }
        lists.close(list.listId());
    }

    private static void delete(Path file) {
        try {
            Files.deleteIfExists(file);
        } catch (IOException e) {
            throw new Failure("cannot remove " + file + ": " + Source.reason(e));
        }
    }
}
