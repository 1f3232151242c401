package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.input.Source;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Optional;

/** The directory that lists live in, as the workstation's platform finds it. */
final class Storage {
    private static final long LEAST_SPACE = 1 << 20; // bytes: a file system with less has no room for the database's next pages

    private Storage() {}

    /** The directory that the environment names. */
    static Path directory() {
        String home = System.getenv("TAVRO_HOME");
        if (home != null && !home.isEmpty()) {
            return Path.of(home);
        }
        String state = System.getenv("XDG_STATE_HOME");
        String user = System.getenv("HOME"); // the platform asks the environment too
        return (state != null && !state.isEmpty() ? Path.of(state) : Path.of(user == null ? "" : user, ".local", "state"))
                .resolve("tavro");
    }

    /** Why the storage does not take changes, as far as that can be seen from here. */
    static String whyItFails() {
        Path directory = directory();
        for (Path path : List.of(directory, directory.resolve("lists.db"))) {
            if (Files.exists(path) && !Files.isWritable(path)) {
                return "permission denied for " + path;
            }
        }
        try {
            if (Files.getFileStore(directory).getUsableSpace() < LEAST_SPACE) {
                return "no space left on the file system of " + directory + "; free some space";
            }
        } catch (IOException e) {
            return "cannot look at " + directory + ": " + Source.reason(e);
        }
        return "the log lines of TavroHost, if there are any, say why; another program may be changing the list";
    }

    /** Whether a directory holds lists already. */
    static boolean hasLists(Path directory) {
        return Files.exists(directory.resolve("lists.db"));
    }

    /** Why the demo must not run over the storage directory; nothing when it is empty and below {@code work}. */
    static Optional<String> demoProblem(Path work) {
        Path home = directory().toAbsolutePath().normalize();
        Path folder = work.toAbsolutePath().normalize();
        String[] content = home.toFile().list();
        String reason = null;
        if (home.equals(folder) || !home.startsWith(folder)) {
            reason = "is not below " + folder;
        } else if (Files.exists(home) && (content == null || content.length > 0)) {
            reason = "is not an empty directory";
        }
        return Optional.ofNullable(reason)
                .map(r -> "refusing to run the demo: storage directory " + home + " " + r
                        + "; run ./tavro demo, or set TAVRO_HOME to a new directory below " + folder);
    }

    /** Why lists cannot be read from a directory; nothing when they can. Nothing is created. */
    static Optional<String> problem(Path directory) {
        String reason = null;
        if (!Files.exists(directory)) {
            reason = "no such directory";
        } else if (!Files.isDirectory(directory)) {
            reason = "it is not a directory";
        } else if (!Files.isReadable(directory) || !Files.isExecutable(directory)) {
            reason = "permission denied";
        } else if (!Files.isWritable(directory)) {
            reason = "it is not writable, and locking a list writes to it";
        }
        return Optional.ofNullable(reason)
                .map(r -> "cannot read the storage directory " + directory + ": " + r + "; set TAVRO_HOME to the one that holds your lists");
    }
}
