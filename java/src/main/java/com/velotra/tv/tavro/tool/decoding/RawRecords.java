package com.velotra.tv.tavro.tool.decoding;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.io.IOException;
import java.io.InputStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Arrays;
import java.util.List;
import java.util.Optional;
import java.util.stream.Collectors;

/** Records one after the other, without anything around them. */
public final class RawRecords {
    /** Bytes of the largest list, and some more. */
    private static final int MOST = 64 << 20;

    private RawRecords() {}

    /**
     * Reads the records of a file, as a list with the id 0. If no kind is given, the size decides.
     *
     * @throws Failure if the file cannot be read, or its size does not fit or fits several kinds
     */
    public static RecordList read(Path file, Optional<Kind> kind) {
        String name = Printable.of(file.toString());
        if (Files.isDirectory(file)) {
            throw new Failure("cannot read " + name + ": it is a directory");
        }
        try (InputStream in = Files.newInputStream(file)) {
            return read(in, name, kind);
        } catch (IOException e) {
            throw new Failure("cannot read " + name + ": " + Source.reason(e));
        }
    }

    /** Reads the records of standard input, to its end. */
    public static RecordList readStandardInput(Optional<Kind> kind) {
        try {
            return read(System.in, "standard input", kind);
        } catch (IOException e) {
            throw new Failure("cannot read standard input: " + Source.reason(e));
        }
    }

    private static RecordList read(InputStream in, String name, Optional<Kind> kind) throws IOException {
        byte[] bytes = in.readNBytes(MOST + 1);
        if (bytes.length > MOST) {
            throw new Failure(name + " is larger than the longest list (" + MOST + " bytes)");
        }
        if (bytes.length == 0) {
            throw new Failure(name + " is empty");
        }
        List<Kind> fitting = Arrays.stream(Kind.values())
                .filter(one -> bytes.length % one.recordBytes() == 0)
                .toList();
        if (kind.isPresent() ? !fitting.contains(kind.get()) : fitting.size() != 1) {
            throw wrongSize(name, bytes.length, kind, fitting);
        }
        return RecordList.of(kind.orElseGet(() -> fitting.get(0)), 0, "", bytes);
    }

    private static Failure wrongSize(String name, int bytes, Optional<Kind> kind, List<Kind> fitting) {
        String hint = fitting.stream().map(one -> "--kind " + one).collect(Collectors.joining(" or "));
        if (kind.isEmpty() && !fitting.isEmpty()) {
            return new Failure(name + " has " + bytes + " bytes, which fit several kinds of record; choose " + hint);
        }
        String sizes = Arrays.stream(Kind.values()).map(one -> one + " " + one.recordBytes())
                .collect(Collectors.joining(", "));
        return new Failure(name + " is neither a list file nor a file of "
                + kind.map(wanted -> wanted.noun() + " ").orElse("") + "records: its " + bytes
                + " bytes are not a whole number of records (" + sizes + " bytes)"
                + (hint.isEmpty() ? "" : "; they fit " + hint));
    }
}
