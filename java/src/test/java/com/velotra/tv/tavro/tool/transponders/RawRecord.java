package com.velotra.tv.tavro.tool.transponders;

import java.nio.charset.Charset;

/** The bytes of a record, read by offset only. */
record RawRecord(byte[] bytes) {
    long u8(int offset) {
        return bytes[offset] & 0xFFL;
    }

    long u32(int offset) {
        return u8(offset) | u8(offset + 1) << 8 | u8(offset + 2) << 16 | u8(offset + 3) << 24;
    }

    String text(int offset) {
        int end = offset;
        while (bytes[end] != 0) {
            end++;
        }
        return new String(bytes, offset, end - offset, Charset.forName("CESU-8"));
    }
}
