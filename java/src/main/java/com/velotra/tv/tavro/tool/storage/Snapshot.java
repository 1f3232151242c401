package com.velotra.tv.tavro.tool.storage;

import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.time.Instant;
import java.util.Arrays;
import java.util.List;
import java.util.Optional;
import java.util.Set;
import java.util.concurrent.ConcurrentHashMap;

/**
 * The lists of any storage directory at one moment, read without the channel list library: for directories other than
 * the one that the library uses, and for the bytes of networks and satellites, which the natives return as objects.
 *
 * <p>It opens no file for writing and creates none. Close it soon: until then, other processes cannot shorten their
 * write-ahead log. Only one thread may use it at a time.
 */
public final class Snapshot implements AutoCloseable {
    private static final Set<Snapshot> OPEN = ConcurrentHashMap.newKeySet();

    private final Path directory;
    private long handle; // 0 once it is closed

    private Snapshot(Path directory, long handle) {
        this.directory = directory;
        this.handle = handle;
    }

    /**
     * Opens the lists of a storage directory for reading. A directory without a list database has no lists.
     *
     * @throws Failure if the directory or its database cannot be read or is damaged
     */
    public static Snapshot open(Path directory) {
        Storage.problem(directory).ifPresent(problem -> {
            throw new Failure(problem);
        });
        Snapshot snapshot = new Snapshot(directory, ToolLibrary.openSnapshot(ToolLibrary.bytes(directory)));
        OPEN.add(snapshot);
        return snapshot;
    }

    /** Returns whether a snapshot of this directory is open in this process. */
    static boolean isOpenFor(Path directory) {
        return OPEN.stream().anyMatch(snapshot -> {
            try {
                return Files.isSameFile(snapshot.directory, directory);
            } catch (IOException e) {
                return false; // one of them does not exist
            }
        });
    }

    /**
     * Returns all lists, by kind and id.
     *
     * @throws Failure if the database is damaged
     */
    public List<ListEntry> lists() {
        return entries(0, Integer.MAX_VALUE);
    }

    /**
     * Returns what {@link #lists} has about one list; empty if it does not exist.
     *
     * @throws Failure if the database is damaged
     */
    public Optional<ListEntry> entry(Kind kind, int listId) {
        int number = kind.number() << Short.SIZE | listId;
        return entries(number, number).stream().findFirst();
    }

    /**
     * Returns a list with its records; empty if it does not exist.
     *
     * @throws Failure if the database or one of the records is damaged
     */
    public Optional<RecordList> list(Kind kind, int listId) {
        return Optional.ofNullable(ToolLibrary.list(handle(), kind.number(), listId)).map(Snapshot::recordList);
    }

    @Override
    public void close() {
        if (handle != 0) {
            ToolLibrary.closeSnapshot(handle);
            handle = 0;
            OPEN.remove(this);
        }
    }

    private List<ListEntry> entries(int first, int last) {
        return Arrays.stream(ToolLibrary.lists(handle(), first, last))
                .map(list -> new ListEntry(kind(list), list.listId(), name(list), list.records(), list.version(),
                        list.changed() < 0 ? Optional.empty() : Optional.of(Instant.ofEpochMilli(list.changed()))))
                .toList();
    }

    private long handle() {
        if (handle == 0) {
            throw new IllegalStateException("this snapshot is closed");
        }
        return handle;
    }

    /** Returns a list that was read with its bytes. */
    static RecordList recordList(RawList list) {
        return RecordList.of(kind(list), list.listId(), name(list), list.bytes());
    }

    private static Kind kind(RawList list) {
        return Arrays.stream(Kind.values()).filter(kind -> kind.number() == list.kind()).findFirst().orElseThrow();
    }

    private static String name(RawList list) {
        return new String(list.name(), StandardCharsets.UTF_8);
    }
}
