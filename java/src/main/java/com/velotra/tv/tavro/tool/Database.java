package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.input.Text;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Path;

/** Looks into the list database beside the library, through Debian's sqlite3: the natives report a list that cannot be read as empty. */
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

    /** Runs a check and then {@code sql}. Returns what {@code sql} prints. */
    private static String ask(Path directory, String sql) {
        Path database = directory.resolve("lists.db");
        String output;
        try {
            Process sqlite = new ProcessBuilder("sqlite3", "-bail", "-cmd", ".timeout 3000", database.toString(),
                            "PRAGMA quick_check(1); " + sql)
                    .redirectErrorStream(true)
                    .start();
            sqlite.getOutputStream().close();
            output = new String(sqlite.getInputStream().readAllBytes(), StandardCharsets.UTF_8).strip();
            sqlite.waitFor();
        } catch (IOException e) {
            throw new Failure("cannot check " + database + ": " + Source.reason(e));
        } catch (InterruptedException e) {
            Thread.currentThread().interrupt();
            throw new Failure("interrupted while checking " + database);
        }
        String[] lines = output.split("\n", 2);
        if (!lines[0].equals("ok")) {
            String remedy = output.contains("locked")
                    ? "; another process has been writing to it for too long; end that process"
                    : "; move it away to start without lists, or set TAVRO_HOME to another directory";
            throw new Failure("the list database " + database + " cannot be read: " + Text.excerpt(lines[0]) + remedy);
        }
        return lines.length > 1 ? lines[1].strip() : "";
    }
}
