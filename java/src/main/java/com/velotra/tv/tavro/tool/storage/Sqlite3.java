package com.velotra.tv.tavro.tool.storage;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.input.Text;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;

/** Runs Debian's sqlite3 program on the list database, for what the library has no native for. */
public final class Sqlite3 {
    /** Milliseconds; the platform waits as long for another process. */
    private static final int BUSY_TIMEOUT = 10_000;

    private static final int REASON_COLUMNS = 120;

    private Sqlite3() {}

    /**
     * Runs statements until one fails. Returns their output.
     *
     * @throws Failure with the message of sqlite3 if a statement fails
     */
    public static String run(Path database, String statements) {
        try {
            // From a file, because a pipe would break if sqlite3 ends early.
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

    /** Returns the failure for a database that cannot be used, from the output of sqlite3 or of a check. */
    public static Failure failure(Path database, String output) {
        if (Files.isDirectory(database)) {
            return failure(database, "it is a directory", "move it away");
        }
        if (!Files.isReadable(database)) {
            return failure(database, "permission denied", "change its owner or permissions");
        }
        if (output.contains("locked")) {
            return failure(database, "it is locked", "end the other process that has been writing to it for too long");
        }
        String reason = output.lines()
                .filter(line -> !line.startsWith("***")) // heading of a check
                .findFirst()
                .orElse("sqlite3 was stopped")
                .replaceFirst("^.* near line \\d+: ", "");
        boolean damaged = output.matches("(?s).*(malformed|not a database|\\*\\*\\*).*");
        return failure(database, Text.fit(Printable.of(reason), REASON_COLUMNS),
                damaged ? "move it away to start with no lists" : "check the file and its directory");
    }

    private static Failure failure(Path database, String reason, String remedy) {
        return new Failure("the list database " + database + " cannot be used: " + reason + "; " + remedy
                + ", or set TAVRO_HOME to another directory");
    }
}
