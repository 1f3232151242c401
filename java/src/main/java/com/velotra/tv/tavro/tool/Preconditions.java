package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.storage.ListEntry;
import com.velotra.tv.tavro.tool.storage.Snapshot;
import com.velotra.tv.tavro.tool.storage.Storage;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.nio.file.Path;
import java.util.function.Supplier;

/** Checks before a command uses the library. A failed check throws {@link Failure}, whose message says what to do. */
final class Preconditions {
    private Preconditions() {}

    /** Calls the library. A library that cannot be loaded is a failure, not a bug. */
    static <T> T withLibrary(Supplier<T> body) {
        try {
            return body.get();
        } catch (UnsatisfiedLinkError e) {
            throw new Failure(e.getMessage());
        }
    }

    /** Checks that the storage directory can be read. */
    static void needDirectory(Path directory) {
        Storage.problem(directory).ifPresent(problem -> {
            throw new Failure(problem);
        });
    }

    /** Checks that a list exists. Creates nothing. */
    static void needList(Kind kind, int listId) {
        Path directory = Storage.directory();
        needDirectory(directory);
        try (Snapshot snapshot = Snapshot.open(directory)) {
            if (snapshot.entry(kind, listId).isEmpty()) {
                throw StoredLists.missing(kind, listId, directory, snapshot.lists());
            }
        }
        if (!withLibrary(kind::lists).exists(listId)) {
            throw new Failure(kind.noun() + " list " + listId + " in " + directory
                    + " cannot be opened; see the log line of TavroHost");
        }
    }

    /** Checks that a list which the natives return without records is empty. They also do so if it cannot be read. */
    static void needEmpty(Kind kind, int listId) {
        Path directory = Storage.directory();
        try (Snapshot snapshot = Snapshot.open(directory)) {
            int records = snapshot.entry(kind, listId).map(ListEntry::records).orElse(0);
            if (records > 0) {
                throw new Failure(kind.noun() + " list " + listId + " in " + directory + " has " + records
                        + " records that cannot be read; see the log line of TavroHost");
            }
        }
    }

    /** Checks that the records of a list can be read. The natives report a record that cannot be read as missing. */
    static void needReadable(Kind kind, int listId) {
        try (Snapshot snapshot = Snapshot.open(Storage.directory())) {
            snapshot.list(kind, listId);
        }
    }
}
