package com.velotra.tv.tavro.tool.device;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Source;
import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.ByteOrder;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;

/** Checks that a program or library can run on a device: 32-bit ARM, and built for Android. */
final class Elf {
    private static final int MAGIC = 0x464C457F; // 0x7F, E, L, F
    private static final int CLASS = 4;
    private static final int MACHINE = 18;
    private static final int SECTIONS = 32;
    private static final int SECTION_BYTES = 46;
    private static final int BITS_32 = 1;
    private static final int ARM = 40;

    private static final int STRING_LINK = 24; // in a section header
    private static final int DYNAMIC = 6; // section types
    private static final int DYNAMIC_SYMBOLS = 11;
    private static final int NEEDED = 1; // tag of a dynamic entry
    private static final int SYMBOL_BYTES = 16;
    private static final int SYMBOL_SECTION = 14; // 0 if undefined

    private final Path file;
    private final ByteBuffer bytes;

    private Elf(Path file, byte[] content) {
        this.file = file;
        bytes = ByteBuffer.wrap(content).order(ByteOrder.LITTLE_ENDIAN);
    }

    /** Checks a program. */
    static void needProgram(Path file, String remedy) {
        read(file, remedy).check(remedy);
    }

    /** Checks a library that must export a function. */
    static void needLibrary(Path file, String function, String remedy) {
        Elf elf = read(file, remedy);
        elf.check(remedy);
        if (!elf.defined().contains(function)) {
            throw elf.wrong("does not export " + function, remedy);
        }
    }

    private static Elf read(Path file, String remedy) {
        try {
            return new Elf(file, Files.readAllBytes(file));
        } catch (IOException e) {
            throw new Failure("cannot read " + Printable.of(file.toString()) + ": " + Source.reason(e) + "; " + remedy);
        }
    }

    private Failure wrong(String what, String remedy) {
        return new Failure(Printable.of(file.toString()) + " " + what + "; " + remedy);
    }

    private void check(String remedy) {
        try {
            if (bytes.limit() < SECTION_BYTES || bytes.getInt(0) != MAGIC) {
                throw wrong("is not an ELF file", remedy);
            }
            if (bytes.get(CLASS) != BITS_32 || bytes.getShort(MACHINE) != ARM) {
                throw wrong("is not built for 32-bit ARM: it is for " + (bytes.get(CLASS) == BITS_32 ? "32" : "64")
                        + " bits and machine " + bytes.getShort(MACHINE), remedy);
            }
            if (needed().contains("libc.so.6")) {
                throw wrong("is built for Linux, not for Android: it needs libc.so.6", remedy);
            }
            defined();
        } catch (IndexOutOfBoundsException e) {
            throw wrong("is damaged: a table is outside the file", remedy);
        }
    }

    /** Names of the libraries that it needs. */
    private List<String> needed() {
        List<String> names = new ArrayList<>();
        for (int header : sections(DYNAMIC)) {
            int strings = strings(header);
            for (int at = offset(header); at < offset(header) + size(header); at += 2 * Integer.BYTES) {
                if (bytes.getInt(at) == NEEDED) {
                    names.add(text(strings + bytes.getInt(at + Integer.BYTES)));
                }
            }
        }
        return names;
    }

    /** Names of the functions and variables that it exports. */
    private List<String> defined() {
        List<String> names = new ArrayList<>();
        for (int header : sections(DYNAMIC_SYMBOLS)) {
            int strings = strings(header);
            for (int at = offset(header); at < offset(header) + size(header); at += SYMBOL_BYTES) {
                if (bytes.getShort(at + SYMBOL_SECTION) != 0) {
                    names.add(text(strings + bytes.getInt(at)));
                }
            }
        }
        return names;
    }

    /** Offsets of the section headers of a type. */
    private List<Integer> sections(int type) {
        List<Integer> found = new ArrayList<>();
        int length = bytes.getShort(SECTION_BYTES);
        int count = bytes.getShort(SECTION_BYTES + Short.BYTES);
        for (int i = 0; i < count; i++) {
            int header = bytes.getInt(SECTIONS) + i * length;
            if (bytes.getInt(header + Integer.BYTES) == type) {
                found.add(header);
            }
        }
        return found;
    }

    private int offset(int header) {
        return bytes.getInt(header + 4 * Integer.BYTES);
    }

    private int size(int header) {
        return bytes.getInt(header + 5 * Integer.BYTES);
    }

    /** Offset of the strings of a section. */
    private int strings(int header) {
        int index = bytes.getInt(header + STRING_LINK);
        return offset(bytes.getInt(SECTIONS) + index * bytes.getShort(SECTION_BYTES));
    }

    private String text(int from) {
        int end = from;
        while (bytes.get(end) != 0) {
            end++;
        }
        return new String(bytes.array(), from, end - from, StandardCharsets.UTF_8);
    }
}
