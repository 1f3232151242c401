package com.velotra.tv.tavro.services.channellist;

import java.nio.ByteBuffer;
import java.nio.ByteOrder;
import java.nio.charset.Charset;
import java.util.ArrayList;
import java.util.List;
import java.util.function.Function;

/** A view of the bytes of one record, decoded field by field. Records are little-endian. */
public abstract class RecordView {
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

    /** Views records of {@code size} bytes that stand one behind the other. */
    static <T> List<T> many(byte[] records, int size, String kind, Function<ByteBuffer, T> view) {
        if (records.length % size != 0) {
            throw new IllegalArgumentException(
                    kind + " records have " + size + " bytes each; " + records.length + " is no multiple of it");
        }
        List<T> list = new ArrayList<>(records.length / size);
        for (int offset = 0; offset < records.length; offset += size) {
            list.add(view.apply(ByteBuffer.wrap(records, offset, size).slice()));
        }
        return list;
    }

    /** A copy of the record's bytes. */
    public byte[] bytes() {
        byte[] copy = new byte[bytes.capacity()];
        bytes.get(0, copy);
        return copy;
    }

    /** The value of a number field, unsigned. */
    public long value(RecordField field) {
        return switch (field.width()) {
            case 1 -> Byte.toUnsignedLong(bytes.get(field.offset()));
            case 2 -> Short.toUnsignedLong(bytes.getShort(field.offset()));
            default -> Integer.toUnsignedLong(bytes.getInt(field.offset()));
        };
    }

    /** The value of a number field of at most 16 bits, or the low 32 bits as an int. */
    int number(RecordField field) {
        return (int) value(field);
    }

    /** The value of a text field, up to its terminator. */
    public String text(RecordField field) {
        byte[] text = new byte[field.width()];
        bytes.get(field.offset(), text);
        int length = 0;
        while (length < text.length && text[length] != 0) {
            length++;
        }
        return new String(text, 0, length, TEXT);
    }

    /** The record field by field, a line each, and with {@code hex} its bytes. */
    public String describe(boolean hex) {
        StringBuilder out = new StringBuilder();
        for (RecordField field : fields()) {
            out.append(String.format("%-30s %s", field.label(), format(field)).stripTrailing());
            out.append(System.lineSeparator());
        }
        if (hex) {
            HexDump.append(out, bytes());
        }
        return out.toString();
    }

    /** The fields that this record has. */
    abstract List<? extends RecordField> fields();

    /** A field's value as text. */
    String format(RecordField field) {
        return switch (field.style()) {
            case TEXT -> '"' + Printable.of(text(field)) + '"';
            case HEX -> String.format("0x%04x", value(field));
            case NUMBER -> Long.toString(value(field));
        };
    }

    @Override
    public boolean equals(Object other) {
        return other instanceof RecordView view && getClass() == view.getClass() && bytes.equals(view.bytes);
    }

    @Override
    public int hashCode() {
        return bytes.hashCode();
    }
}
