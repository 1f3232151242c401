package com.velotra.tv.tavro.tool.records;

import java.util.HexFormat;
import java.util.List;

/** The bytes of a record that no field has, as text: the runs that are not zero, as in {@code 105:0a0b 110:ff}. */
final class UnnamedBytes {
    private static final HexFormat HEX = HexFormat.of();

    private final boolean[] named;

    UnnamedBytes(List<Field> fields, int recordBytes) {
        named = new boolean[recordBytes];
        for (Field field : fields) {
            for (int at = field.offset(); at < field.offset() + field.width(); at++) {
                named[at] = true;
            }
        }
    }

    boolean isNamed(int offset) {
        return named[offset];
    }

    String format(Record record) {
        StringBuilder text = new StringBuilder();
        int last = -2;
        for (int at = 0; at < named.length; at++) {
            int value = named[at] ? 0 : (int) record.unsigned(at, 1);
            if (value == 0) {
                continue;
            }
            if (at != last + 1) {
                text.append(text.isEmpty() ? "" : " ").append(at).append(':');
            }
            HEX.toHexDigits(text, (byte) value);
            last = at;
        }
        return text.toString();
    }

    void parse(String text, byte[] record) {
        byte[] values = new byte[named.length];
        if (!text.isBlank()) {
            for (String run : text.strip().split("\\s+")) {
                parseRun(run, values);
            }
        }
        for (int at = 0; at < named.length; at++) {
            if (!named[at]) {
                record[at] = values[at];
            }
        }
    }

    private void parseRun(String run, byte[] values) {
        int colon = run.indexOf(':');
        int offset;
        byte[] bytes;
        try {
            offset = Integer.parseUnsignedInt(run, 0, Math.max(colon, 0), 10);
            bytes = HEX.parseHex(run, colon + 1, run.length());
        } catch (IllegalArgumentException e) {
            throw notARun(run, e);
        }
        if (bytes.length == 0) {
            throw notARun(run, null);
        }
        if (offset < 0 || offset + bytes.length > values.length) {
            throw new IllegalArgumentException("'" + run + "' ends after the record, which has " + values.length
                    + " bytes");
        }
        for (int i = 0; i < bytes.length; i++) {
            if (named[offset + i]) {
                throw new IllegalArgumentException("'" + run + "' names byte " + (offset + i)
                        + ", which belongs to a field of the record");
            }
            values[offset + i] = bytes[i];
        }
    }

    private static IllegalArgumentException notARun(String run, Exception cause) {
        return new IllegalArgumentException(
                "'" + run + "' is not a run of unnamed bytes: write OFFSET:HEX, as in 105:0a0b", cause);
    }
}
