package com.velotra.tv.tavro.tool.records;

import java.nio.ByteBuffer;
import java.nio.ByteOrder;
import java.util.Arrays;

/** One record: its kind and its bytes, little-endian. Immutable. */
public final class Record {
    private final Kind kind;
    private final ByteBuffer bytes;

    private Record(Kind kind, ByteBuffer bytes) {
        this.kind = kind;
        this.bytes = bytes.order(ByteOrder.LITTLE_ENDIAN);
    }

    /**
     * Returns a record with a copy of the bytes.
     *
     * @throws IllegalArgumentException if they are not as many as a record of that kind has
     */
    public static Record of(Kind kind, byte[] bytes) {
        if (bytes.length != kind.recordBytes()) {
            throw new IllegalArgumentException("a " + kind.noun() + " record has " + kind.recordBytes()
                    + " bytes, not " + bytes.length);
        }
        return new Record(kind, ByteBuffer.wrap(bytes.clone()));
    }

    /** Returns the record in its place in {@code records}, which must not change afterwards. */
    static Record view(Kind kind, byte[] records, int offset) {
        return new Record(kind, ByteBuffer.wrap(records, offset, kind.recordBytes()).slice());
    }

    public Kind kind() {
        return kind;
    }

    /** Returns the record id. */
    public int id() {
        return Short.toUnsignedInt(bytes.getShort(kind.idOffset()));
    }

    /** Returns a copy of all bytes. */
    public byte[] bytes() {
        return bytes(0, kind.recordBytes());
    }

    /** Returns a copy of some bytes. */
    public byte[] bytes(int offset, int width) {
        byte[] copy = new byte[width];
        bytes.get(offset, copy);
        return copy;
    }

    /** Returns the unsigned number in {@code width} bytes: 1, 2 or 4. */
    long unsigned(int offset, int width) {
        return switch (width) {
            case 1 -> Byte.toUnsignedLong(bytes.get(offset));
            case 2 -> Short.toUnsignedLong(bytes.getShort(offset));
            default -> Integer.toUnsignedLong(bytes.getInt(offset));
        };
    }

    /** Returns a record that differs in one field. */
    public Record with(Field field, String text) {
        byte[] changed = bytes();
        field.parse(text, changed);
        return new Record(kind, ByteBuffer.wrap(changed));
    }

    @Override
    public boolean equals(Object other) {
        return other instanceof Record same && kind == same.kind && bytes.equals(same.bytes);
    }

    @Override
    public int hashCode() {
        return Arrays.hashCode(bytes());
    }

    @Override
    public String toString() {
        return kind.noun() + " " + id();
    }
}
