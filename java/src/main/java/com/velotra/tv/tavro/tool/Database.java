package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Sqlite3;
import java.nio.file.Path;
import java.util.Optional;

/** Looks into the list database beside the library: the natives report a list that cannot be read as empty. */
final class Database {
    private static final int RECORDS_PER_LIST = 1 << 16; // record numbers that a list takes up

    private Database() {}

    /**
     * Makes sure that the database of a storage directory is sound.
     *
     * @throws Failure naming the database, what is wrong with it and what to do
     */
    static void check(Path directory) {
        ask(directory, "");
    }

    /**
     * Makes sure that a list is empty when the library says so.
     *
     * @throws Failure when the database is damaged or the list holds records
     */
    static void checkEmpty(Path directory, Kind kind, int listId) {
        long first = (long) kind.number * RECORDS_PER_LIST * RECORDS_PER_LIST + (long) listId * RECORDS_PER_LIST;
        String count = ask(directory, String.format(
                "SELECT count(*) FROM records WHERE number BETWEEN %d AND %d;", first, first + RECORDS_PER_LIST - 1));
        if (!count.equals("0")) {
            throw new Failure(kind.one + " list " + listId + " in " + directory + " holds " + count
                    + " records that cannot be read; the log line of TavroHost says why");
        }
    }

    /**
     * Makes sure that a list that the library does not open is not there.
     *
     * @throws Failure when it is there
     */
    static void checkMissing(Path directory, Kind kind, int listId) {
        String count = ask(directory, String.format("SELECT count(*) FROM lists WHERE number = %d AND name IS NOT NULL;",
                (long) kind.number * RECORDS_PER_LIST + listId));
        if (!count.equals("0")) {
            throw new Failure(kind.one + " list " + listId + " in " + directory + " cannot be opened; the log line of TavroHost says why");
        }
    }

    /** Runs a check and then {@code sql}. Returns what {@code sql} prints. */
    private static String ask(Path directory, String sql) {
        Path database = directory.resolve("lists.db");
        String output = Sqlite3.run(database, "PRAGMA quick_check(1);\n" + sql);
        if (!output.lines().findFirst().equals(Optional.of("ok"))) {
            throw Sqlite3.failure(database, output);
        }
        return output.substring("ok".length()).strip();
    }
}
