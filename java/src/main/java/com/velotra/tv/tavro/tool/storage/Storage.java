package com.velotra.tv.tavro.tool.storage;

import com.velotra.tv.tavro.tool.input.Failure;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Optional;

/** The directory that lists live in, as the workstation's platform finds it. */
public final class Storage {
    // bytes: a file system with less has no room for the database's next pages
    private static final long LEAST_SPACE = 1 << 20;

    private Storage() {}

    /** The directory that the environment names. */
    public static Path directory() {
        String home = System.getenv("TAVRO_HOME");
        if (home != null && !home.isEmpty()) {
            return Path.of(home);
        }
        String state = System.getenv("XDG_STATE_HOME");
        if (state != null && !state.isEmpty()) {
            return Path.of(state, "tavro");
        }
        String user = System.getenv("HOME"); // the platform asks the environment too
        if (user == null || user.isEmpty()) {
            throw new Failure("there is no home directory to keep lists in; set TAVRO_HOME or HOME");
        }
        return Path.of(user, ".local", "state", "tavro");
    }

    /** Why the storage does not take changes, as far as that can be seen from here. */
    public static String whyItFails() {
        Path directory = directory();
        for (Path path : List.of(directory, directory.resolve("lists.db"))) {
            if (Files.exists(path) && !Files.isWritable(path)) {
                return path + " is not writable";
            }
        }
        try {
            if (Files.getFileStore(directory).getUsableSpace() < LEAST_SPACE) {
                return "no space left on the file system of " + directory + "; free some space";
            }
        } catch (IOException e) {
            // There is no such directory, and the platform has said why it could not make one.
        }
        return "the log lines of TavroHost, if there are any, say why; another program may be changing the list";
    }

    /** Whether a directory holds lists already. */
    public static boolean hasLists(Path directory) {
        return Files.exists(directory.resolve("lists.db"));
    }

    /** Why lists cannot be kept in a directory, as far as that can be seen from here. Nothing is created. */
    public static Optional<String> problem(Path directory) {
        String reason = null;
        if (!Files.exists(directory)) {
            reason = "no such directory";
        } else if (!Files.isDirectory(directory)) {
            reason = "it is not a directory";
        } else if (!Files.isReadable(directory) || !Files.isExecutable(directory)) {
            reason = "permission denied";
        }
        return Optional.ofNullable(reason)
                .map(r -> "cannot read the storage directory " + directory + ": " + r
                        + "; set TAVRO_HOME to the one that holds your lists");
    }
}
