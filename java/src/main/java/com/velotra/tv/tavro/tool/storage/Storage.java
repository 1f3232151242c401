package com.velotra.tv.tavro.tool.storage;

import com.velotra.tv.tavro.tool.input.Failure;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Optional;

/** The storage directory of the lists, found in the same way as by the workstation's platform. */
public final class Storage {
    /** Bytes. With less space, the database cannot grow. */
    private static final long LEAST_SPACE = 1 << 20;

    private Storage() {}

    /** Returns the directory that the environment names. */
    public static Path directory() {
        String home = System.getenv("TAVRO_HOME");
        if (home != null && !home.isEmpty()) {
            return Path.of(home);
        }
        String state = System.getenv("XDG_STATE_HOME");
        if (state != null && !state.isEmpty()) {
            return Path.of(state, "tavro");
        }
        String user = System.getenv("HOME"); // deliberate: not user.home, because the platform reads the environment
        if (user == null || user.isEmpty()) {
            throw new Failure("no directory for lists: set TAVRO_HOME or HOME");
        }
        return Path.of(user, ".local", "state", "tavro");
    }

    /** Returns why a change could not be stored, as far as it can be found out. */
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
            // The directory does not exist; the platform has logged why it could not create it.
        }
        return "see the log lines of TavroHost, if any; another program may be changing the list";
    }

    /** Returns whether a directory has a list database. */
    public static boolean hasLists(Path directory) {
        return Files.exists(directory.resolve("lists.db"));
    }

    /** Returns why a storage directory cannot be read; nothing if it can. Creates nothing. */
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
