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
import java.util.stream.Collectors;

/** Records one after the other, without anything around them. */
public final class RawRecords {
    /** Bytes of the largest list, and some more. */
    private static final int MOST = 64 << 20;

    private RawRecords() {}

    /**
     * Reads the records of a file.
     *
     * @throws Failure if the file cannot be read, or is not a whole number of records; it names the kinds that fit
     */
    public static RecordList read(Kind kind, Path file) {
        if (Files.isDirectory(file)) {
            throw new Failure("cannot read " + Printable.of(file.toString()) + ": it is a directory");
        }
        try (InputStream in = Files.newInputStream(file)) {
            return read(kind, in, file.toString());
        } catch (IOException e) {
            throw new Failure("cannot read " + Printable.of(file.toString()) + ": " + Source.reason(e));
        }
    }

    /** Reads the records of standard input, to its end. */
    public static RecordList read(Kind kind, InputStream in) {
        try {
            return read(kind, in, "standard input");
        } catch (IOException e) {
            throw new Failure("cannot read standard input: " + Source.reason(e));
        }
    }

    private static RecordList read(Kind kind, InputStream in, String name) throws IOException {
        byte[] bytes = in.readNBytes(MOST + 1);
        if (bytes.length > MOST) {
            throw new Failure(Printable.of(name) + " has more than " + MOST + " bytes, and no list is that long");
        }
        if (bytes.length == 0) {
            throw new Failure(Printable.of(name) + " is empty");
        }
        if (bytes.length % kind.recordBytes() != 0) {
            throw new Failure(Printable.of(name) + " has " + bytes.length + " bytes, which is not a whole number of "
                    + kind.recordBytes() + "-byte " + kind.noun() + " records; " + hint(bytes.length));
        }
        return RecordList.of(kind, 0, "", bytes);
    }

    private static String hint(int bytes) {
        String fitting = Arrays.stream(Kind.values())
                .filter(kind -> bytes % kind.recordBytes() == 0)
                .map(kind -> "--kind " + kind)
                .collect(Collectors.joining(" or "));
        return fitting.isEmpty() ? "no kind of record has a size that fits" : "its size fits " + fitting;
    }
}
