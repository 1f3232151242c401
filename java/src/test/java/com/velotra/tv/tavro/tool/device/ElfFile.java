package com.velotra.tv.tavro.tool.device;

import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.ByteOrder;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;

/** Writes ELF files with one symbol and one needed library, and nothing else. */
final class ElfFile {
    static final int ARM = 40;
    private static final int HEADER = 52;
    private static final int SECTION = 40;

    private ElfFile() {}

    /** Writes a file for a 32-bit ARM Android. */
    static Path library(Path file, String exported) throws IOException {
        return write(file, 1, ARM, exported, "libc.so");
    }

    static Path write(Path file, int bits, int machine, String exported, String needed) throws IOException {
        byte[] names = ("\0" + exported + "\0" + needed + "\0").getBytes(StandardCharsets.US_ASCII);
        int strings = HEADER + 4 * SECTION;
        int symbols = strings + names.length;
        int dynamic = symbols + 32;
        ByteBuffer bytes = ByteBuffer.allocate(dynamic + 16).order(ByteOrder.LITTLE_ENDIAN);
        bytes.putInt(0x464C457F).put((byte) bits).putShort(18, (short) machine).putInt(32, HEADER);
        bytes.putShort(46, (short) SECTION).putShort(48, (short) 4);
        section(bytes, 1, 3, strings, names.length);
        section(bytes, 2, 11, symbols, 32);
        section(bytes, 3, 6, dynamic, 16);
        bytes.put(strings, names);
        bytes.putInt(symbols + 16, 1).putShort(symbols + 30, (short) 1);
        bytes.putInt(dynamic, 1).putInt(dynamic + 4, 2 + exported.length());
        return Files.write(file, bytes.array());
    }

    /** The names of all sections are in section 1. */
    private static void section(ByteBuffer bytes, int index, int type, int offset, int size) {
        int at = HEADER + index * SECTION;
        bytes.putInt(at + 4, type).putInt(at + 16, offset).putInt(at + 20, size).putInt(at + 24, 1);
    }
}
