package com.velotra.tv.tavro.tool.records;

import com.velotra.tv.tavro.services.channellist.RecordField.Style;
import java.nio.ByteBuffer;
import java.nio.ByteOrder;
import java.nio.charset.Charset;
import java.util.Arrays;
import java.util.HexFormat;
import java.util.function.Predicate;

/**
 * A field of a record: where it is, and how its value is written as text.
 *
 * <p>{@link #format} and {@link #parse} are lossless: parsing what was formatted restores every byte of the field. A text
 * field whose bytes are not a text followed by zeros is written as {@code 0x} and its bytes in hexadecimal.
 */
public final class Field {
    // Modified UTF-8, as JNI has it, except for the NUL, which ends a text.
    private static final Charset TEXT = Charset.forName("CESU-8");
    private static final String HEX = "0x";

    private final String name;
    private final String label;
    private final int offset;
    private final int width;
    private final Style style;
    private final Predicate<Record> in;

    Field(String name, String label, int offset, int width, Style style, Predicate<Record> in) {
        this.name = name;
        this.label = label;
        this.offset = offset;
        this.width = width;
        this.style = style;
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
            case TEXT -> text(record.bytes(offset, width));
            case HEX -> String.format("0x%0" + 2 * width + "x", number(record));
            case NUMBER, SIGNED -> Long.toString(number(record));
        };
    }

    private static String text(byte[] bytes) {
        int length = 0;
        while (length < bytes.length && bytes[length] != 0) {
            length++;
        }
        String text = new String(bytes, 0, length, TEXT);
        boolean exact = Arrays.equals(Arrays.copyOf(text.getBytes(TEXT), bytes.length), bytes);
        return exact && !text.startsWith(HEX) ? text : HEX + HexFormat.of().formatHex(bytes);
    }

    /**
     * Writes a value into a record's bytes.
     *
     * @throws IllegalArgumentException with a message for the user if the text is not a value of this field
     */
    public void parse(String value, byte[] record) {
        if (style == Style.TEXT) {
            byte[] bytes = value.startsWith(HEX) ? hex(value) : value.getBytes(TEXT);
            if (value.indexOf('\0') >= 0) {
                throw new IllegalArgumentException("a " + label + " cannot contain a NUL character");
            }
            // A text needs its terminator, raw bytes do not.
            int most = value.startsWith(HEX) ? width : width - 1;
            if (bytes.length > most) {
                throw new IllegalArgumentException(
                        "'" + value + "' is too long for the " + label + ": at most " + most + " bytes");
            }
            System.arraycopy(Arrays.copyOf(bytes, width), 0, record, offset, width);
            return;
        }
        long number = parseNumber(value);
        ByteBuffer to = ByteBuffer.wrap(record).order(ByteOrder.LITTLE_ENDIAN);
        switch (width) {
            case 1 -> to.put(offset, (byte) number);
            case 2 -> to.putShort(offset, (short) number);
            default -> to.putInt(offset, (int) number);
        }
    }

    private byte[] hex(String value) {
        try {
            return HexFormat.of().parseHex(value, HEX.length(), value.length());
        } catch (IllegalArgumentException e) {
            throw new IllegalArgumentException("'" + value + "' is not a " + label + ": 0x is followed by pairs of "
                    + "hexadecimal digits", e);
        }
    }

    private long parseNumber(String value) {
        long least = style == Style.SIGNED ? -(1L << 8 * width - 1) : 0;
        long most = (1L << (style == Style.SIGNED ? 8 * width - 1 : 8 * width)) - 1;
        try {
            long number = Long.decode(value.matches("-?0[0-9]+") ? value.replaceFirst("0+(?=[0-9])", "") : value);
            if (number >= least && number <= most) {
                return number;
            }
        } catch (NumberFormatException e) {
            // Falls through to the message.
        }
        throw new IllegalArgumentException(
                "'" + value + "' is not a " + label + ": it must be a number from " + least + " to " + most);
    }

    @Override
    public String toString() {
        return name;
    }
}
