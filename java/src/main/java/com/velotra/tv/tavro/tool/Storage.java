package com.velotra.tv.tavro.tool;

import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Optional;

/** The directory that lists live in, as the workstation's platform finds it. */
final class Storage {
    private Storage() {}

    /** The directory that the environment names. */
    static Path directory() {
        String home = System.getenv("TAVRO_HOME");
        if (home != null && !home.isEmpty()) {
            return Path.of(home);
        }
        String state = System.getenv("XDG_STATE_HOME");
        return (state != null && !state.isEmpty() ? Path.of(state) : Path.of(System.getProperty("user.home"), ".local", "state"))
                .resolve("tavro");
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
                .map(r -> "the demo keeps its hands off the storage directory " + home + ", which " + r
                        + "; run ./tavro demo, or set TAVRO_HOME to a new directory below " + folder);
    }

    /** Why lists cannot be read from a directory; nothing when they can. Nothing is created. */
    static Optional<String> problem(Path directory) {
        String reason = null;
        if (!Files.exists(directory)) {
            reason = "there is no such directory";
        } else if (!Files.isDirectory(directory)) {
            reason = "it is not a directory";
        } else if (!Files.isReadable(directory) || !Files.isExecutable(directory)) {
            reason = "you may not read it";
        } else if (!Files.isWritable(directory)) {
            reason = "you may not write to it, which locking a list needs";
        }
        return Optional.ofNullable(reason)
                .map(r -> "cannot read the storage directory " + directory + ": " + r + "; set TAVRO_HOME to the one that holds your lists");
    }
}
