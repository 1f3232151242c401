package com.velotra.tv.tavro.tool.changes;

import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.records.Kind;
import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.channels.FileChannel;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.nio.file.StandardOpenOption;
import java.time.DateTimeException;
import java.time.Instant;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.OptionalLong;
import java.util.stream.Stream;

/**
 * A command that can be undone: what was called and when, and a directory with the lists as they were before. The file
 * "manifest" in it has a line for each value, with tabs between words.
 *
 * @param number counts the commands that changed lists, from 1
 * @param directory of the list files
 * @param command what the user called
 * @param time when
 * @param finished whether the command ended; false if it was killed or still runs
 * @param lists in the order in which they were saved
 */
public record UndoEntry(int number, Path directory, String command, Instant time, boolean finished,
        List<SavedList> lists) {
    private static final String MANIFEST = "manifest";
    private static final String NONE = "-";

    /** Returns the list file of one of the lists that existed. */
    Path file(SavedList list) {
        return directory.resolve(list.fileName());
    }

    UndoEntry withLists(boolean nowFinished, List<SavedList> newLists) {
        return new UndoEntry(number, directory, command, time, nowFinished, List.copyOf(newLists));
    }

    /** Reads the manifest of a directory. Throws an IOException that says what is wrong with it. */
    static UndoEntry read(Path directory) throws IOException {
        String command = "";
        Instant time = Instant.EPOCH;
        boolean finished = false;
        List<SavedList> lists = new ArrayList<>();
        try {
            for (String line : Files.readAllLines(directory.resolve(MANIFEST))) {
                String[] words = line.split("\t", -1);
                switch (words[0]) {
                    case "command" -> command = words[1].translateEscapes();
                    case "time" -> time = Instant.parse(words[1]);
                    case "list" -> lists.add(new SavedList(kind(words[1]), Integer.parseInt(words[2]),
                            version(words[3]), version(words[4])));
                    case "finished" -> finished = true;
                    default -> throw new IOException("unknown line in " + directory.resolve(MANIFEST));
                }
            }
            int number = Integer.parseInt(directory.getFileName().toString());
            return new UndoEntry(number, directory, command, time, finished, List.copyOf(lists));
        } catch (ArrayIndexOutOfBoundsException | IllegalArgumentException | DateTimeException e) {
            throw new IOException("damaged line in " + directory.resolve(MANIFEST), e);
        }
    }

    private static Kind kind(String code) {
        return Arrays.stream(Kind.values()).filter(kind -> kind.code().equals(code)).findFirst()
                .orElseThrow(IllegalArgumentException::new);
    }

    private static OptionalLong version(String word) {
        return word.equals(NONE) ? OptionalLong.empty() : OptionalLong.of(Long.parseLong(word));
    }

    private static String word(OptionalLong version) {
        return version.isPresent() ? Long.toString(version.getAsLong()) : NONE;
    }

    /**
     * Writes the manifest: afterwards the disk has the old one or the new one.
     *
     * @throws Failure if it cannot be written
     */
    void write() {
        StringBuilder text = new StringBuilder("command\t").append(escaped(command)).append("\ntime\t").append(time)
                .append('\n');
        for (SavedList list : lists) {
            text.append(String.join("\t", "list", list.kind().code(), String.valueOf(list.listId()),
                    word(list.before()), word(list.after()))).append('\n');
        }
        if (finished) {
            text.append("finished\n");
        }
        Path manifest = directory.resolve(MANIFEST);
        Path next = directory.resolve(MANIFEST + ".new");
        try (FileChannel file = FileChannel.open(next, StandardOpenOption.CREATE, StandardOpenOption.TRUNCATE_EXISTING,
                StandardOpenOption.WRITE)) {
            file.write(ByteBuffer.wrap(text.toString().getBytes(StandardCharsets.UTF_8)));
            file.force(false);
            Files.move(next, manifest, StandardCopyOption.ATOMIC_MOVE);
        } catch (IOException e) {
            throw new Failure("cannot write " + manifest + ": " + Source.reason(e) + "; the lists stay as they were");
        }
    }

    private static String escaped(String text) {
        return text.replace("\\", "\\\\").replace("\n", "\\n").replace("\r", "\\r").replace("\t", "\\t");
    }

    /** Removes the entry, as far as possible: first the manifest, without which the rest is garbage. */
    void delete() {
        delete(directory);
    }

    static void delete(Path directory) {
        try {
            Files.deleteIfExists(directory.resolve(MANIFEST));
            List<Path> files;
            try (Stream<Path> found = Files.list(directory)) {
                files = found.toList();
            }
            for (Path file : files) {
                Files.delete(file);
            }
            Files.delete(directory);
        } catch (IOException e) {
            // The next command tries again.
        }
    }
}
