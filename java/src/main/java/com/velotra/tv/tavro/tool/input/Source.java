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
 * A file to import. It is read once from beginning to end, so it can be a pipe.
 *
 * @param name of the file in messages
 * @param fileName last part of its path; empty for standard input
 * @param bytes its content; of a file larger than {@link #MOST}, the first {@code MOST + 1} bytes
 */
public record Source(String name, String fileName, byte[] bytes) {
    /** Means standard input on the command line. */
    public static final Path STANDARD_INPUT = Path.of("-");

    /** Limit in bytes, twice the size of a full service list in JSON. */
    static final int MOST = 256 << 20;

    /**
     * Reads a file, a pipe, or standard input.
     *
     * @throws Failure if it cannot be read
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

    /** Returns the reason of a failure, in words. */
    public static String reason(IOException failure) {
        if (failure instanceof NoSuchFileException) {
            return "no such file or folder";
        }
        if (failure instanceof AccessDeniedException) {
            return "permission denied";
        }
        return Printable.of(String.valueOf(failure.getMessage()));
    }

    /** Returns the text of the file, as {@link #lines} decodes it, but a whole file is read as ISO-8859-1. */
    public String text() {
        return SourceText.text(bytes);
    }

    /**
     * Returns the text of a file in UTF-8 or UTF-16.
     *
     * @throws Failure if it has another encoding, in which its letters would become others
     */
    public String unicode() {
        SourceText.lineNotUnicode(bytes).ifPresent(line -> {
            throw new Failure("cannot import " + name + ": line " + line
                    + " is not UTF-8; save the file with this encoding");
        });
        return text();
    }

    /** Returns the lines of the file. */
    public List<String> lines() {
        return SourceText.lines(bytes);
    }
}
