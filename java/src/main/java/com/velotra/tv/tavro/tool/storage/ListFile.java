package com.velotra.tv.tavro.tool.storage;

import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.HexFormat;
import java.util.stream.Collectors;

/** List files, as the natives store and load them. */
public final class ListFile {
    private ListFile() {}

    /** Returns whether a file looks like a list file: a SQLite database with the application id of list files. */
    public static boolean isOne(Path file) {
        return Files.isRegularFile(file) && Sqlite3.run(file, "PRAGMA application_id;").equals("1417038918");
    }

    /**
     * Reads a list file. The list id and the name are those of the list that was stored.
     *
     * @throws Failure if it cannot be read, is not a list file or is damaged
     */
    public static RecordList read(Path file) {
        String[] list = Sqlite3.run(file, "SELECT kind, list_id, name FROM list;").split("\\|", 3);
        Kind kind = Kind.values()[Integer.parseInt(list[0]) - 1];
        return RecordList.of(kind, Integer.parseInt(list[1]), list[2], HexFormat.of().parseHex(
                Sqlite3.run(file, "SELECT hex(bytes) FROM records ORDER BY position;")
                        .lines().collect(Collectors.joining())));
    }

    /**
     * Writes a list file and replaces the old one.
     *
     * @throws Failure if it cannot be written
     */
    public static void write(Path file, RecordList list) {
        try {
            Files.deleteIfExists(file);
        } catch (IOException e) {
            throw new Failure("cannot write " + file);
        }
        StringBuilder sql = new StringBuilder("PRAGMA journal_mode = OFF; PRAGMA application_id = 1417038918; "
                + "PRAGMA user_version = 1; BEGIN; CREATE TABLE list (kind INTEGER NOT NULL, kind_name TEXT NOT NULL, "
                + "list_id INTEGER NOT NULL, name TEXT NOT NULL); CREATE TABLE records (record_id INTEGER PRIMARY KEY, "
                + "position INTEGER NOT NULL, bytes BLOB NOT NULL); INSERT INTO list VALUES (")
                .append(list.kind().number()).append(",'").append(list.kind().code()).append("',")
                .append(list.listId()).append(",'").append(list.name()).append("');\n");
        int position = 1;
        for (Record record : list) {
            sql.append("INSERT INTO records VALUES (").append(record.id()).append(',').append(position++).append(",X'")
                    .append(HexFormat.of().formatHex(record.bytes())).append("');\n");
        }
        Sqlite3.run(file, sql.append("COMMIT;").toString());
    }
}
