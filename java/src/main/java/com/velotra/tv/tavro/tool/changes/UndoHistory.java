package com.velotra.tv.tavro.tool.changes;

import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Source;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.time.Instant;
import java.time.temporal.ChronoUnit;
import java.util.ArrayList;
import java.util.Comparator;
import java.util.List;
import java.util.Optional;
import java.util.stream.Stream;

/** The commands that can be undone: the directory "undo" of a storage directory, with one directory for each. */
public final class UndoHistory {
    /** How many commands are kept. */
    public static final int MOST = 20;

    private final Path directory;

    private UndoHistory(Path directory) {
        this.directory = directory;
    }

    /** Returns the history of a storage directory. Creates nothing. */
    public static UndoHistory of(Path storage) {
        return new UndoHistory(storage.toAbsolutePath().resolve("undo"));
    }

    /**
     * Returns the commands that can be undone, the oldest first.
     *
     * @throws Failure if the directory cannot be read or a manifest is damaged
     */
    public List<UndoEntry> entries() {
        List<UndoEntry> entries = new ArrayList<>();
        try {
            for (Path entry : directories()) {
                if (Files.exists(entry.resolve("manifest"))) {
                    entries.add(UndoEntry.read(entry));
                }
            }
        } catch (IOException e) {
            throw new Failure("cannot read the saved lists in " + directory + ": " + Source.reason(e)
                    + "; move this directory away to continue without them");
        }
        return entries;
    }

    /** Returns the last command if it was killed. The caller holds the lock, so no command runs. */
    Optional<UndoEntry> unfinished() {
        try {
            List<Path> all = directories();
            for (int i = all.size() - 1; i >= 0; i--) {
                if (Files.exists(all.get(i).resolve("manifest"))) {
                    return Optional.of(UndoEntry.read(all.get(i))).filter(entry -> !entry.finished());
                }
            }
        } catch (IOException e) {
            // ./tavro undo --list reports it.
        }
        return Optional.empty();
    }

    /** The directories of the entries, by number. */
    private List<Path> directories() throws IOException {
        if (!Files.exists(directory)) {
            return List.of();
        }
        try (Stream<Path> found = Files.list(directory)) {
            return found.filter(path -> path.getFileName().toString().matches("[0-9]{4,9}"))
                    .sorted(Comparator.comparingInt(UndoHistory::number)).toList();
        }
    }

    private static int number(Path entry) {
        return Integer.parseInt(entry.getFileName().toString());
    }

    /** Creates the directory of a new entry, without a manifest. The caller holds the lock. */
    UndoEntry create(String command) {
        try {
            Files.createDirectories(directory);
            List<Path> all = directories();
            int number = all.isEmpty() ? 1 : number(all.get(all.size() - 1)) + 1;
            Path entry = Files.createDirectory(directory.resolve(String.format("%04d", number)));
            return new UndoEntry(number, entry, command, Instant.now().truncatedTo(ChronoUnit.MILLIS), false,
                    List.of());
        } catch (IOException e) {
            String reason = Files.isRegularFile(directory) ? "it is a file, not a directory" : Source.reason(e);
            throw new Failure("cannot save lists in " + directory + ": " + reason + "; nothing was changed");
        }
    }

    /** Removes the oldest entries, and what killed commands have left. The caller holds the lock. */
    void prune() {
        try {
            List<Path> all = directories();
            for (int i = 0; i < all.size(); i++) {
                if (i < all.size() - MOST || !Files.exists(all.get(i).resolve("manifest"))) {
                    UndoEntry.delete(all.get(i));
                }
            }
        } catch (IOException e) {
            // The next command tries again.
        }
    }
}
