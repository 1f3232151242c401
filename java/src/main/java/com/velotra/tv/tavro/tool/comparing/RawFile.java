package com.velotra.tv.tavro.tool.comparing;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.io.IOException;
import java.io.InputStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Arrays;
import java.util.List;
import java.util.Optional;
import java.util.stream.Collectors;

/** Files that consist of records and nothing else. */
final class RawFile {
    private RawFile() {}

    /**
     * Reads records, as a list with the id 0. If no kind is given, the size of the file decides.
     *
     * @throws Failure if the size does not fit, or fits several kinds
     */
    static RecordList read(Path path, Optional<Kind> kind) {
        byte[] bytes = Source.read(path).bytes();
        Kind of = kind.filter(wanted -> fits(bytes, wanted)).orElseGet(() -> guess(path, bytes, kind));
        return RecordList.of(of, 0, "", bytes);
    }

    /** Returns whether a file is a SQLite database, as list files are. */
    static boolean isDatabase(Path path) {
        byte[] magic = "SQLite format 3\0".getBytes(StandardCharsets.US_ASCII);
        try (InputStream file = Files.newInputStream(path)) {
            return Arrays.equals(magic, file.readNBytes(magic.length));
        } catch (IOException e) {
            throw new Failure("cannot read " + Printable.of(path.toString()) + ": " + Source.reason(e));
        }
    }

    private static boolean fits(byte[] bytes, Kind kind) {
        return bytes.length > 0 && bytes.length % kind.recordBytes() == 0;
    }

    private static Kind guess(Path path, byte[] bytes, Optional<Kind> wanted) {
        String name = Printable.of(path.toString());
        List<Kind> fitting = Arrays.stream(Kind.values()).filter(kind -> fits(bytes, kind)).toList();
        if (wanted.isEmpty() && fitting.size() == 1) {
            return fitting.get(0);
        }
        String sizes = Arrays.stream(Kind.values()).map(kind -> kind + " " + kind.recordBytes())
                .collect(Collectors.joining(", "));
        throw new Failure(fitting.size() > 1 && wanted.isEmpty()
                ? name + " has " + bytes.length + " bytes, which several kinds of record fit; choose one with --kind"
                : name + " is neither a list file nor a file of " + (wanted.isEmpty() ? "" : wanted.get().noun() + " ")
                        + "records: its " + bytes.length + " bytes are not a whole number of records (" + sizes
                        + " bytes)");
    }
}
