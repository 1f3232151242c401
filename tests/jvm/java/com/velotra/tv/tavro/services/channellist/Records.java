package com.velotra.tv.tavro.services.channellist;

import java.nio.ByteBuffer;
import java.nio.ByteOrder;
import java.nio.charset.StandardCharsets;

/** Record bytes for tests, written and read by offset. */
final class Records {
    private Records() {}

    /** A record in which no two neighboring bytes are alike, so that a byte that moves shows. */
    static byte[] patterned() {
        return patterned(ServiceRecord.SIZE);
    }

    static byte[] patterned(int size) {
        byte[] record = new byte[size];
        for (int i = 0; i < record.length; i++) {
            record[i] = (byte) (0x5A + i * 11);
        }
        return record;
    }

    /** A copy with a 16-bit number at an offset. */
    static byte[] with16(byte[] record, int offset, int value) {
        byte[] copy = record.clone();
        view(copy).putShort(offset, (short) value);
        return copy;
    }

    /** A copy with a 32-bit number at an offset. */
    static byte[] with32(byte[] record, int offset, int value) {
        byte[] copy = record.clone();
        view(copy).putInt(offset, value);
        return copy;
    }

    /** A copy with a byte at an offset. */
    static byte[] with8(byte[] record, int offset, int value) {
        byte[] copy = record.clone();
        copy[offset] = (byte) value;
        return copy;
    }

    static int int32(byte[] record, int offset) {
        return view(record).getInt(offset);
    }

    /** A copy with a text and its terminator at an offset. */
    static byte[] withText(byte[] record, int offset, String text) {
        byte[] copy = record.clone();
        byte[] bytes = text.getBytes(StandardCharsets.UTF_8);
        System.arraycopy(bytes, 0, copy, offset, bytes.length);
        copy[offset + bytes.length] = 0;
        return copy;
    }

    static byte[] join(byte[]... records) {
        ByteBuffer all = ByteBuffer.allocate(records.length * records[0].length);
        for (byte[] record : records) {
            all.put(record);
        }
        return all.array();
    }

    private static ByteBuffer view(byte[] record) {
        return ByteBuffer.wrap(record).order(ByteOrder.LITTLE_ENDIAN);
    }
}
