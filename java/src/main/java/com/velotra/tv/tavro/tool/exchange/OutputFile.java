package com.velotra.tv.tavro.tool.exchange;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Source;
import java.io.BufferedWriter;
import java.io.IOException;
import java.io.OutputStreamWriter;
import java.io.Writer;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;

/** A text file that a command writes, in UTF-8. A regular file is replaced when all of the text is written. */
public final class OutputFile {
    private static final Path STANDARD_OUTPUT = Path.of("-");

    /** Writes the text. */
    public interface Body {
        void write(Writer out) throws IOException;
    }

    private OutputFile() {}

    /**
     * Writes a file.
     *
     * @param file its path; null or - for standard output
     * @throws Failure if it cannot be written; a regular file then has its former content
     */
    public static void write(Path file, Body body) {
        try {
            if (file == null || file.equals(STANDARD_OUTPUT)) {
                Writer out = new BufferedWriter(new OutputStreamWriter(System.out, StandardCharsets.UTF_8));
                body.write(out);
                out.flush();
            } else if (Files.exists(file) && !Files.isRegularFile(file)) {
                writeInto(file, body); // a device or a pipe; of a directory, opening it fails
            } else {
                replace(Files.exists(file) ? file.toRealPath() : file, body);
            }
        } catch (IOException e) {
            throw new Failure("cannot write " + Printable.of(String.valueOf(file)) + ": " + Source.reason(e));
        }
    }

    private static void replace(Path file, Body body) throws IOException {
        Path unfinished =
                file.resolveSibling("." + file.getFileName() + ".unfinished-" + ProcessHandle.current().pid());
        try {
            writeInto(unfinished, body);
            if (Files.exists(file, LinkOption.NOFOLLOW_LINKS)) {
                Files.setPosixFilePermissions(unfinished, Files.getPosixFilePermissions(file));
            }
            Files.move(unfinished, file, StandardCopyOption.REPLACE_EXISTING);
        } finally {
            Files.deleteIfExists(unfinished);
        }
    }

    private static void writeInto(Path file, Body body) throws IOException {
        try (Writer out = Files.newBufferedWriter(file)) {
            body.write(out);
        }
    }
}
