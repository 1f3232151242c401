package com.velotra.tv.tavro.tool.decoding;

import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import java.util.HexFormat;

/** The bytes of a record in hexadecimal, each run of them with its field and value. */
public final class Dump {
    private static final int PER_LINE = 16;
    private static final int HEX_COLUMNS = 3 * PER_LINE - 1;
    private static final HexFormat HEX = HexFormat.ofDelimiter(" ");

    private Dump() {}

    /** Returns the lines of a record. Offsets are decimal; more than sixteen zeros in a row are folded. */
    public static String of(DecodedRecord decoded) {
        Record record = decoded.record();
        StringBuilder out = new StringBuilder();
        for (Layout.Run run : decoded.layout().runs(record)) {
            String note = run.field()
                    .map(field -> String.format("%-24s %s", field.name(), decoded.text(field)).stripTrailing())
                    .orElse(run.path().isEmpty() ? unknown(decoded) : "reserved");
            append(out, record.bytes(run.offset(), run.width()), run.offset(), note);
        }
        return out.toString();
    }

    /** Returns what bytes are whose meaning depends on a value that is not known. */
    private static String unknown(DecodedRecord decoded) {
        Field selector = decoded.layout().selector().orElseThrow();
        return "unknown for " + selector.label() + " " + selector.format(decoded.record());
    }

    private static void append(StringBuilder out, byte[] bytes, int offset, String note) {
        String text = note;
        for (int at = 0; at < bytes.length; ) {
            int zeros = zeros(bytes, at);
            boolean fold = zeros > PER_LINE;
            int length = fold ? zeros : Math.min(PER_LINE, bytes.length - at);
            String hex = fold ? "00 × " + zeros : HEX.formatHex(bytes, at, at + length);
            String line = String.format("%4d  %-" + HEX_COLUMNS + "s  %s", offset + at, hex, text).stripTrailing();
            out.append(line).append(System.lineSeparator());
            at += length;
            text = "";
        }
    }

    /** Returns how many zeros there are from a place on: up to the end, or in whole lines. */
    private static int zeros(byte[] bytes, int from) {
        int end = from;
        while (end < bytes.length && bytes[end] == 0) {
            end++;
        }
        int zeros = end - from;
        return end == bytes.length ? zeros : zeros / PER_LINE * PER_LINE;
    }
}
