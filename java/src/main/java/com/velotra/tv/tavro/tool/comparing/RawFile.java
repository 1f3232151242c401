package com.velotra.tv.tavro.tool.comparing;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Source;
import java.io.IOException;
import java.io.InputStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Arrays;

/** Files that are no list files. */
final class RawFile {
    private RawFile() {}

    /** Returns whether a file is a SQLite database, as list files are. */
    static boolean isDatabase(Path path) {
        byte[] magic = "SQLite format 3\0".getBytes(StandardCharsets.US_ASCII);
        try (InputStream file = Files.newInputStream(path)) {
            return Arrays.equals(magic, file.readNBytes(magic.length));
        } catch (IOException e) {
            throw new Failure("cannot read " + Printable.of(path.toString()) + ": " + Source.reason(e));
        }
    }
}
