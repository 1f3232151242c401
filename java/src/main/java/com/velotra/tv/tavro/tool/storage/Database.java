package com.velotra.tv.tavro.tool.storage;

import com.velotra.tv.tavro.tool.input.Failure;
import java.nio.file.Path;
import java.util.List;
import java.util.Optional;

/**
 * Reads the list database without the library, because the natives report a list that cannot be read as empty. Each
 * method checks first that the database is sound.
 */
public final class Database {
    private static final int IDS_PER_KIND = 1 << 16; // list ids of a kind, and record ids of a list

    private Database() {}

    /**
     * Checks that the database of a storage directory is sound.
     *
     * @throws Failure naming the database, what is wrong with it and what to do
     */
    public static void check(Path directory) {
        query(directory, "");
    }

    /**
     * Returns the number of records in a list.
     *
     * @param kind the list's kind as the database numbers it
     * @throws Failure as {@link #check}
     */
    public static int records(Path directory, int kind, int listId) {
        long first = listNumber(kind, listId) * IDS_PER_KIND;
        long last = first + IDS_PER_KIND - 1;
        return count(directory, String.format("records WHERE number BETWEEN %d AND %d", first, last));
    }

    /**
     * Returns the ids of the lists of a kind, in ascending order.
     *
     * @param kind the kind as the database numbers it
     * @throws Failure as {@link #check}
     */
    public static List<Integer> lists(Path directory, int kind) {
        String numbers = query(directory, String.format(
                "SELECT number FROM lists WHERE number BETWEEN %d AND %d AND name IS NOT NULL ORDER BY number;",
                listNumber(kind, 0), listNumber(kind, IDS_PER_KIND - 1)));
        return numbers.lines().map(number -> (int) (Long.parseLong(number) % IDS_PER_KIND)).toList();
    }

    private static long listNumber(int kind, int listId) {
        return (long) kind * IDS_PER_KIND + listId;
    }

    private static int count(Path directory, String rows) {
        return Integer.parseInt(query(directory, "SELECT count(*) FROM " + rows + ";"));
    }

    /** Checks the database and then runs {@code sql}. Returns the output of {@code sql}. */
    private static String query(Path directory, String sql) {
        Path database = directory.resolve("lists.db");
        String output = Sqlite3.run(database, "PRAGMA quick_check(1);\n" + sql);
        if (!output.lines().findFirst().equals(Optional.of("ok"))) {
            throw Sqlite3.failure(database, output);
        }
        return output.substring("ok".length()).strip();
    }
}
