package com.velotra.tv.tavro.tool.storage;

import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.nio.file.Path;
import java.util.HexFormat;
import java.util.List;
import java.util.Optional;
import java.util.stream.Collectors;

/**
 * The lists of a storage directory, read without the natives and without changing anything: for directories other than
 * the one that the library uses, and for the bytes of networks and satellites, which the natives return as objects.
 */
public final class Snapshot implements AutoCloseable {
    private static final int IDS_PER_KIND = 1 << 16;

    private final Path directory;

    private Snapshot(Path directory) {
        this.directory = directory;
    }

    /**
     * Opens the lists of a storage directory for reading. A directory without a list database has no lists.
     *
     * @throws Failure if the directory or its database cannot be read
     */
    public static Snapshot open(Path directory) {
        Storage.problem(directory).ifPresent(problem -> {
            throw new Failure(problem);
        });
        return new Snapshot(directory);
    }

    /** Returns all lists, by kind and id. */
    public List<ListEntry> lists() {
        if (!Storage.hasLists(directory)) {
            return List.of();
        }
        return query("SELECT number, version, (SELECT count(*) FROM records WHERE records.number BETWEEN "
                + "lists.number * 65536 AND lists.number * 65536 + 65535), name FROM lists WHERE name IS NOT NULL "
                + "ORDER BY number;").lines().map(line -> {
                    String[] row = line.split("\\|", 4);
                    int number = Integer.parseInt(row[0]);
                    return new ListEntry(Kind.values()[number / IDS_PER_KIND - 1], number % IDS_PER_KIND, row[3],
                            Integer.parseInt(row[2]), Long.parseLong(row[1]), Optional.empty());
                }).toList();
    }

    /** Returns a list; empty if there is none. */
    public Optional<RecordList> list(Kind kind, int listId) {
        long number = (long) kind.number() * IDS_PER_KIND + listId;
        return lists().stream().filter(list -> list.kind() == kind && list.listId() == listId).findFirst().map(list ->
                RecordList.of(kind, listId, list.name(), HexFormat.of().parseHex(query(
                        "SELECT hex(bytes) FROM records WHERE number BETWEEN " + number * IDS_PER_KIND + " AND "
                        + (number * IDS_PER_KIND + IDS_PER_KIND - 1) + " ORDER BY position;")
                        .lines().collect(Collectors.joining()))));
    }

    private String query(String sql) {
        return Sqlite3.run(directory.resolve("lists.db"), sql);
    }

    @Override
    public void close() {}
}
