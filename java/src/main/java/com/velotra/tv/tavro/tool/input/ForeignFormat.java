package com.velotra.tv.tavro.tool.input;

import java.nio.charset.StandardCharsets;
import java.util.HexFormat;
import java.util.LinkedHashMap;
import java.util.Map;
import java.util.Optional;

/** Recognizes, by their first bytes, common files that cannot be imported. */
final class ForeignFormat {
    private static final byte[] SQLITE = ascii("SQLite format 3\0");
    private static final int SQLITE_APPLICATION = 68; // application_id, four bytes, in the header of a SQLite file
    private static final byte[] LIST_FILE = ascii("TvLF");
    private static final byte[] LIST_DATABASE = ascii("TvDB");

    private static final byte[] BYTE_ORDER_MARK = bytes("efbbbf");

    private static final int TAR_MAGIC = 257;
    private static final int TS_PACKET = 188; // bytes (ISO/IEC 13818-1)

    private static final Map<byte[], String> BEGINNINGS = new LinkedHashMap<>();

    static {
        BEGINNINGS.put(ascii("#EXTM3U"), "an m3u playlist");
        BEGINNINGS.put(bytes("1f8b"), "a gzip archive; unpack it first");
        BEGINNINGS.put(ascii("BZh"), "a bzip2 archive; unpack it first");
        BEGINNINGS.put(bytes("fd377a585a00"), "an xz archive; unpack it first");
        BEGINNINGS.put(bytes("28b52ffd"), "a zstd archive; unpack it first");
        BEGINNINGS.put(bytes("377abcaf271c"), "a 7z archive; unpack it first");
        BEGINNINGS.put(ascii("PK\u0003\u0004"), "a zip archive; unpack it first");
        BEGINNINGS.put(ascii("Rar!"), "a rar archive; unpack it first");
        BEGINNINGS.put(ascii("!<arch>\n"), "a Debian package or ar archive; unpack it first");
        BEGINNINGS.put(bytes("89504e47"), "a PNG image");
        BEGINNINGS.put(bytes("ffd8ff"), "a JPEG image");
        BEGINNINGS.put(ascii("GIF8"), "a GIF image");
        BEGINNINGS.put(ascii("%PDF"), "a PDF document");
        BEGINNINGS.put(bytes("7f454c46"), "a program or library");
        BEGINNINGS.put(bytes("cafebabe"), "a Java class");
        BEGINNINGS.put(ascii("<"), "an XML or HTML document");
        BEGINNINGS.put(ascii("{"), "a JSON document");
        BEGINNINGS.put(ascii("#!"), "a script");
    }

    private ForeignFormat() {}

    /** Returns what a file is, with its article; nothing if its first bytes are unknown. */
    static Optional<String> of(byte[] content) {
        if (has(content, 0, SQLITE)) {
            return Optional.of(sqlite(content));
        }
        if (has(content, TAR_MAGIC, ascii("ustar"))) {
            return Optional.of("a tar archive; unpack it first");
        }
        if (content.length > TS_PACKET && content[0] == 'G' && content[TS_PACKET] == 'G' && content[1] < ' ') {
            return Optional.of("an MPEG transport stream");
        }
        int start = has(content, 0, BYTE_ORDER_MARK) ? BYTE_ORDER_MARK.length : 0;
        return BEGINNINGS.entrySet().stream().filter(entry -> has(content, start, entry.getKey()))
                .map(Map.Entry::getValue).findFirst();
    }

    private static String sqlite(byte[] content) {
        if (has(content, SQLITE_APPLICATION, LIST_FILE)) {
            return "a list file of this library; Java loads it: load(listId, path)";
        }
        return has(content, SQLITE_APPLICATION, LIST_DATABASE) ? "a list database; set TAVRO_HOME to its folder"
                : "a SQLite database";
    }

    private static boolean has(byte[] content, int offset, byte[] expected) {
        for (int i = 0; i < expected.length; i++) {
            if (offset + i >= content.length || content[offset + i] != expected[i]) {
                return false;
            }
        }
        return true;
    }

    private static byte[] ascii(String text) {
        return text.getBytes(StandardCharsets.US_ASCII);
    }

    private static byte[] bytes(String hexadecimal) {
        return HexFormat.of().parseHex(hexadecimal);
    }
}
