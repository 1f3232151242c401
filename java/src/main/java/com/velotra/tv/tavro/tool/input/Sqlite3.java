package com.velotra.tv.tavro.tool.input;

import com.velotra.tv.tavro.services.channellist.Printable;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;

/** Debian's sqlite3 program over the list database: for what the library has no native. */
public final class Sqlite3 {
    /** Milliseconds; as long as the platform waits for another process. */
    private static final int BUSY_TIMEOUT = 10_000;

    private Sqlite3() {}

    /**
     * Runs statements, up to the first that fails. Returns what they print.
     *
     * @throws Failure with what the program says when a statement fails
     */
    public static String run(Path database, String statements) {
        try {
            // From a file: a program that ends early would break a pipe.
            Path input = Files.createTempFile("tavro", ".sql");
            try {
                Files.writeString(input, statements);
                return run(database, input);
            } finally {
                Files.delete(input);
            }
        } catch (IOException e) {
            throw new Failure("cannot run sqlite3 over " + database + ": " + Source.reason(e));
        }
    }

    private static String run(Path database, Path input) throws IOException {
        Process sqlite = new ProcessBuilder("sqlite3", "-bail", "-cmd", ".timeout " + BUSY_TIMEOUT, database.toString())
                .redirectInput(input.toFile())
                .redirectErrorStream(true)
                .start();
        String output = new String(sqlite.getInputStream().readAllBytes(), StandardCharsets.UTF_8).strip();
        try {
            if (sqlite.waitFor() == 0) {
                return output;
            }
        } catch (InterruptedException e) {
            Thread.currentThread().interrupt();
        }
        throw failure(database, output);
    }

    /** Why a database cannot be used, from what sqlite3 or a check of it said, and what to do. */
    public static Failure failure(Path database, String said) {
        String reason = said.lines()
                .filter(line -> !line.startsWith("***")) // a check's heading
                .findFirst()
                .orElse("sqlite3 was stopped")
                .replaceFirst("^.* near line \\d+: ", "");
        String remedy = said.contains("locked")
                ? "another process has been writing to it for too long; end that process"
                : "move it away to start without lists, or set TAVRO_HOME to another directory";
        return new Failure("the list database " + database + " cannot be used: " + Text.fit(Printable.of(reason), 120) + "; " + remedy);
    }
}
