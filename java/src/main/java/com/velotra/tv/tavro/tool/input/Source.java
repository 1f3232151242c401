package com.velotra.tv.tavro.tool.input;

import com.velotra.tv.tavro.services.channellist.Printable;
import java.io.IOException;
import java.io.InputStream;
import java.nio.file.AccessDeniedException;
import java.nio.file.Files;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.util.List;

/**
 * A file to import, read once from its beginning to its end, so that a pipe will do.
 *
 * @param name its name as messages print it
 * @param fileName the last part of its path, or empty when it has none, as standard input
 * @param bytes its content; one byte more than {@link #MOST} of a larger one
 */
public record Source(String name, String fileName, byte[] bytes) {
    /** Stands for standard input among the files of a command line. */
    public static final Path STANDARD_INPUT = Path.of("-");

    /** Bytes; the largest real file, a whole country's transponders, has less than one hundredth of it. */
    static final int MOST = 64 << 20;

    /**
     * Reads a file, a pipe, or standard input.
     *
     * @throws Failure saying why it cannot be read
     */
    public static Source read(Path path) {
        if (path.equals(STANDARD_INPUT)) {
            return read("standard input", "", System.in);
        }
        String name = Printable.of(path.toString());
        try (InputStream stream = Files.newInputStream(path)) {
            return read(name, path.getFileName().toString(), stream);
        } catch (IOException e) {
            throw new Failure("cannot read " + name + ": " + reason(e));
        }
    }

    private static Source read(String name, String fileName, InputStream stream) {
        try {
            return new Source(name, fileName, stream.readNBytes(MOST + 1));
        } catch (IOException e) {
            throw new Failure("cannot read " + name + ": " + reason(e));
        }
    }

    /** What went wrong with a file, in words. */
    public static String reason(IOException failure) {
        if (failure instanceof NoSuchFileException) {
            return "no such file or folder";
        }
        if (failure instanceof AccessDeniedException) {
            return "permission denied";
        }
        return Printable.of(String.valueOf(failure.getMessage()));
    }

    /** Its lines, as text. */
    public List<String> lines() {
        return SourceText.lines(bytes);
    }
}
