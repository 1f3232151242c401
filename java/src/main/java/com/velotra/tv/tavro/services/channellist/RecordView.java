package com.velotra.tv.tavro.services.channellist;

import java.nio.ByteBuffer;
import java.nio.ByteOrder;
import java.nio.charset.Charset;
import java.util.ArrayList;
import java.util.List;
import java.util.function.Function;

/**
 * A read-only view of the bytes of one record, decoded field by field. Records are little-endian.
 *
 * @param <F> the fields of the record's kind: the view of one kind does not accept a field of another
 */
public abstract class RecordView<F extends Enum<F> & RecordField> {
    // Texts are modified UTF-8, as JNI gives them: characters beyond the basic plane are two surrogates of
    // three bytes each. That is CESU-8 but for the NUL, which ends a text here.
    private static final Charset TEXT = Charset.forName("CESU-8");

    private final ByteBuffer bytes;

    /** Views {@code bytes}, which hold one record. */
    RecordView(ByteBuffer bytes) {
        this.bytes = bytes.order(ByteOrder.LITTLE_ENDIAN);
    }

    /** One record's bytes, which must be {@code size} long. */
    static ByteBuffer one(byte[] record, int size, String kind) {
        if (record.length != size) {
            throw new IllegalArgumentException("a " + kind + " record has " + size + " bytes, not " + record.length);
        }
        return ByteBuffer.wrap(record);
    }

    /** Views consecutive records of {@code size} bytes each. */
    static <T> List<T> many(byte[] records, int size, String kind, Function<ByteBuffer, T> view) {
        if (records.length % size != 0) {
            throw new IllegalArgumentException(
                    records.length + " bytes is not a whole number of " + size + "-byte " + kind + " records");
        }
        List<T> list = new ArrayList<>(records.length / size);
        for (int offset = 0; offset < records.length; offset += size) {
            list.add(view.apply(ByteBuffer.wrap(records, offset, size).slice()));
        }
        return list;
    }

    /** Returns a copy of the record's bytes. */
    public byte[] bytes() {
        byte[] copy = new byte[bytes.capacity()];
        bytes.get(0, copy);
        return copy;
    }

    /** Returns the value of a number field, unsigned unless its style is {@code SIGNED}. */
    public long value(F field) {
        return switch (field.width()) {
            case 1 -> Byte.toUnsignedLong(bytes.get(field.offset()));
            case 2 -> field.style() == RecordField.Style.SIGNED
                    ? bytes.getShort(field.offset())
                    : Short.toUnsignedLong(bytes.getShort(field.offset()));
            default -> Integer.toUnsignedLong(bytes.getInt(field.offset()));
        };
    }

    /** The value of a number field of at most 16 bits, or the low 32 bits as an int. */
    int number(F field) {
        return (int) value(field);
    }

    /** Returns the value of a text field, up to its terminator. */
    public String text(F field) {
        byte[] text = new byte[field.width()];
        bytes.get(field.offset(), text);
        int length = 0;
        while (length < text.length && text[length] != 0) {
            length++;
        }
        return new String(text, 0, length, TEXT);
    }

    /** Describes the record, one line per field, followed by a hex dump of its bytes when {@code hex}. */
    public String describe(boolean hex) {
        StringBuilder out = new StringBuilder();
        for (F field : fields()) {
            out.append(String.format("%-30s %s", field.label(), format(field)).stripTrailing());
            out.append(System.lineSeparator());
        }
        if (hex) {
            HexDump.append(out, bytes());
        }
        return out.toString();
    }

    /** The fields that this record has. */
    abstract List<F> fields();

    /** A field's value as text. */
    String format(F field) {
        return switch (field.style()) {
            case TEXT -> '"' + Printable.of(text(field)) + '"';
            case HEX -> String.format("0x%04x", value(field));
            case NUMBER, SIGNED -> Long.toString(value(field));
        };
    }

    @Override
    public boolean equals(Object other) {
        return other instanceof RecordView<?> view && getClass() == view.getClass() && bytes.equals(view.bytes);
    }

    @Override
    public int hashCode() {
        return bytes.hashCode();
    }
}
