package com.velotra.tv.tavro.tool.view;

import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Source;
import java.io.BufferedWriter;
import java.io.IOException;
import java.io.InputStream;
import java.io.OutputStream;
import java.io.OutputStreamWriter;
import java.io.Writer;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.nio.file.StandardOpenOption;
import java.util.Arrays;

/** Writes a page to a file or a stream. */
public final class PageFile {
    private PageFile() {}

    /**
     * Writes a page to a stream, which stays open.
     *
     * @throws IOException if the stream reports it
     */
    public static void print(PageData data, OutputStream to) throws IOException {
        Writer writer = new BufferedWriter(new OutputStreamWriter(to, StandardCharsets.UTF_8));
        Page.write(data, writer);
    }

    /**
     * Writes a page to a file. A page that was there is replaced in one step, so that the file is always complete.
     *
     * @throws Failure if the file cannot be written, or is there already and is not a page
     */
    public static void write(PageData data, Path file) {
        try {
            if (Files.exists(file) && !Files.isRegularFile(file) && !Files.isDirectory(file)) {
                try (OutputStream device = Files.newOutputStream(file)) {
                    print(data, device);
                }
            } else {
                replace(data, file.toAbsolutePath());
            }
        } catch (IOException e) {
            throw new Failure("cannot write " + file + ": " + Source.reason(e) + "; choose another file with -o");
        }
    }

    private static void replace(PageData data, Path file) throws IOException {
        if (Files.isDirectory(file)) {
            throw new Failure("cannot write " + file + ": it is a directory; choose a file in it with -o");
        }
        if (Files.exists(file) && !isPage(file)) {
            throw new Failure(file + " exists and is not a page of this command; remove it, or choose another file "
                    + "with -o");
        }
        Path target = Files.exists(file) ? file.toRealPath() : file;
        Path temporary = target.resolveSibling("." + target.getFileName() + "." + ProcessHandle.current().pid());
        try {
            try (OutputStream out = Files.newOutputStream(temporary, StandardOpenOption.CREATE_NEW,
                    StandardOpenOption.WRITE)) {
                print(data, out);
            }
            Files.move(temporary, target, StandardCopyOption.REPLACE_EXISTING, StandardCopyOption.ATOMIC_MOVE);
        } finally {
            Files.deleteIfExists(temporary);
        }
    }

    /** An empty file counts as a page: such as one that mktemp made. */
    private static boolean isPage(Path file) throws IOException {
        byte[] beginning = Page.BEGINNING.getBytes(StandardCharsets.UTF_8);
        try (InputStream in = Files.newInputStream(file)) {
            byte[] read = in.readNBytes(beginning.length);
            return read.length == 0 || Arrays.equals(read, beginning);
        }
    }
}
