package com.velotra.tv.tavro.tool.records;

import com.velotra.tv.tavro.services.channellist.RecordField.Style;
import java.util.HexFormat;
import java.util.function.Predicate;

/**
 * A field of a record: where it is, and how its value is written as text.
 *
 * <p>{@link #format} and {@link #parse} are lossless: parsing what was formatted restores every byte of the field. A
 * text field whose bytes are not a text followed by zeros is written as {@code 0x} and its bytes in hexadecimal.
 */
public final class Field {
    private static final String HEX = "0x";

    private final String name;
    private final String label;
    private final int offset;
    private final int width;
    private final Style style;
    private final int mostText;
    private final Predicate<Record> in;

    Field(String name, String label, int offset, int width, Style style, int mostText, Predicate<Record> in) {
        this.name = name;
        this.label = label;
        this.offset = offset;
        this.width = width;
        this.style = style;
        this.mostText = mostText;
        this.in = in;
    }

    /** Returns the name in options, CSV headings and JSON: the Java constant in lower case, such as "service_id". */
    public String name() {
        return name;
    }

    /** Returns the name for people, such as "service id". */
    public String label() {
        return label;
    }

    public int offset() {
        return offset;
    }

    /** Returns the number of bytes; 1, 2 or 4 for numbers. */
    public int width() {
        return width;
    }

    public Style style() {
        return style;
    }

    /** Returns whether a record has the field: some depend on the broadcast type or the medium. */
    public boolean in(Record record) {
        return in.test(record);
    }

    /** Returns the value of a number field. */
    public long number(Record record) {
        long value = record.unsigned(offset, width);
        return style == Style.SIGNED ? (short) value : value;
    }

    /** Returns the value as lossless text. */
    public String format(Record record) {
        return switch (style) {
            case TEXT -> RecordText.of(record.bytes(offset, width), mostText);
            case HEX -> HEX + HexFormat.of().toHexDigits(number(record), 2 * width);
            case NUMBER, SIGNED -> Long.toString(number(record));
        };
    }

    /**
     * Writes a value into a record's bytes.
     *
     * @throws IllegalArgumentException with a message for the user if the text is not a value of this field
     */
    public void parse(String value, byte[] record) {
        if (style == Style.TEXT) {
            System.arraycopy(RecordText.parse(value, label, width, mostText), 0, record, offset, width);
            return;
        }
        long number = parseNumber(value);
        for (int i = 0; i < width; i++) {
            record[offset + i] = (byte) (number >> 8 * i);
        }
    }

    private long parseNumber(String value) {
        long least = style == Style.SIGNED ? -(1L << 8 * width - 1) : 0;
        long most = (1L << (style == Style.SIGNED ? 8 * width - 1 : 8 * width)) - 1;
        try {
            boolean negative = value.startsWith("-");
            int start = negative ? 1 : 0;
            boolean hex = value.startsWith(HEX, start);
            int digits = start + (hex ? HEX.length() : 0);
            long size = Long.parseLong(value, digits, value.length(), hex ? 16 : 10);
            long number = negative ? -size : size;
            if (number >= least && number <= most && Character.digit(value.charAt(digits), 16) >= 0) {
                return number;
            }
        } catch (IndexOutOfBoundsException | NumberFormatException e) {
            // Falls through to the message.
        }
        throw new IllegalArgumentException(
                "'" + value + "' cannot be the " + label + ": it must be a number from " + least + " to " + most);
    }

    @Override
    public String toString() {
        return name;
    }
}
