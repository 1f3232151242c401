package com.velotra.tv.tavro.tool.input;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import java.nio.charset.Charset;
import java.nio.charset.StandardCharsets;
import java.nio.file.Path;
import java.util.Arrays;
import java.util.HexFormat;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** The content of a file decides its format; the message about an unsupported file says what it is. */
class FormatTest {
    private static final int LIST = 71;

    private static final String[] SCAN_TABLE = {"[CHANNEL]", "\tDELIVERY_SYSTEM = DVBT", "\tFREQUENCY = 474000000"};
    private static final String[] SERVICES =
            {"[Uno]", "SERVICE_ID = 7", "FREQUENCY = 474000000", "DELIVERY_SYSTEM = DVBT"};
    private static final String[] LEGACY = {
        "T 474000000 8MHz", "T2 482000000 8MHz AUTO", "C 121000000 6900000 NONE QAM256", "S 3820000 H 29268000 3/4",
        "S1 3820000 H 29268000 3/4", "S2 3911000 H 15000000 AUTO AUTO 8PSK", "A 593000000"};
    private static final String[] CHANNELS = {
        ":First", ":@100 Second",
        "Uno,U1;Provider:12187:HC34M2S0:S19.2E:27500:163=2:104=deu@3;106:105:0:12003:1:1089:0",
        "Due:410:M64:C:6900:101:102:104:0:28106:0:0:0", "Tre:529833:I0:T:27500:203:407:0:0:19456:0:0"};
    private static final String[] SOURCES = {"S0.8W\tDue  Tre & Vier", "S360E Any", "C Cable", "T Terrestrial"};
    private static final String[] DISEQC = {
        "1 2:", "S19.2E  11700 V  9750  t v W15 [E0 10 38 F0] W15 A W15 t", "S13.0E 99999 H 10600"};

    @TempDir
    Path folder;

    private static Format of(String name, String... lines) {
        return Format.of(ImportFixture.source(name, lines));
    }

    private static String refusal(byte[] content) {
        return assertThrows(Failure.class, () -> Format.of(new Source("some file", "some file", content))).getMessage();
    }

    private static String refusal(String... lines) {
        return refusal(String.join("\n", lines).getBytes(StandardCharsets.UTF_8));
    }

    @Test
    void theContentDecidesWhateverTheNameIs() {
        for (String name : List.of("", "table", "channels.conf", "sources.conf", "diseqc.conf", "Uno-5.0W",
                "picture.png")) {
            assertEquals(
                    List.of(Format.DVBV5, Format.DVBV5, Format.LEGACY_SCAN_TABLE, Format.CHANNELS, Format.SOURCES,
                            Format.DISEQC),
                    List.of(of(name, SCAN_TABLE), of(name, SERVICES), of(name, LEGACY), of(name, CHANNELS),
                            of(name, SOURCES), of(name, DISEQC)),
                    name);
        }
    }

    @Test
    void everyLineByItselfShowsItsFormat() {
        for (Map.Entry<Format, String[]> lines : Map.of(
                Format.LEGACY_SCAN_TABLE, LEGACY, Format.CHANNELS, CHANNELS, Format.SOURCES, SOURCES, Format.DISEQC,
                DISEQC).entrySet()) {
            for (String line : lines.getValue()) {
                if (line.startsWith(":")) {
                    continue; // a group heading alone does not decide the format
                }
                assertEquals(lines.getKey(), of("x", line), line);
                assertEquals(lines.getKey(), of("x", "# a comment", "", "  " + line + " "), line);
            }
        }
    }

    @Test
    void theEncodingMakesNoDifference() {
        for (Charset charset : List.of(
                StandardCharsets.UTF_8, StandardCharsets.ISO_8859_1, StandardCharsets.UTF_16LE,
                StandardCharsets.UTF_16BE)) {
            assertEquals(
                    Format.SOURCES, Format.of(new Source("x", "x", "S5W Köln\r\nS7W Zürich\r\n".getBytes(charset))),
                    charset.name());
        }
        assertEquals(Format.SOURCES, of("x", "\uFEFFS5W Uno"));
    }

    @Test
    void theFormatOfMostLinesIsTheFormatOfTheFile() {
        assertEquals(Format.SOURCES,
                of("x", "nonsense", "S5W Uno", "A = 1", "T 474000000", "S7W Due", "more nonsense", "even more"));
        assertEquals(Format.LEGACY_SCAN_TABLE,
                of("x", "S5W Uno", "T 474000000", "C Cable", "T 482000000", "T 490000000"));
        assertEquals(Format.DVBV5, of("x", "S5W Uno", "[CHANNEL]", "FREQUENCY = 474000000"));
        assertEquals(Format.CHANNELS,
                of("x", ":Uno", ":Due", CHANNELS[CHANNELS.length - 1], "FREQUENCY = 474000000", "[CHANNEL]"));
    }

    @Test
    void groupHeadingsAloneAreNotAChannelList() {
        assertEquals(refusal("nonsense"), refusal(":Uno", ":@100 Due"));
    }

    @Test
    void settingsOfOtherProgramsAreNotScanTables() {
        String unknown = "cannot import some file: unknown format; " + Format.KNOWN;
        assertEquals(unknown, refusal("[Unit]", "Description=A daemon", "[Service]", "ExecStart=/usr/bin/daemon"));
        assertEquals(unknown, refusal("[core]", "\tbare = false"));
        assertEquals(unknown, refusal("A = 1", "B=2"));
        assertEquals(unknown, refusal("[1, 2, 3]"));
        assertEquals(unknown, refusal("Dear reader,", "this is a letter."));
        assertEquals(unknown, refusal("X 474000000 8MHz"));
    }

    @Test
    void aFileWithNothingInItIsRefused() {
        String nothing = "cannot import some file: it has nothing but blank lines and comments";
        assertEquals(nothing, refusal(new byte[0]));
        assertEquals(nothing, refusal("", "  ", "\t", "# a comment", "  # another"));
        assertEquals(nothing, refusal("\uFEFF"));
    }

    @Test
    void everyForeignFormatIsRefusedWithItsName() {
        Map<byte[], String> formats = new LinkedHashMap<>();
        formats.put(text("#EXTM3U\n#EXTINF:-1,Uno\nrtp://239.0.0.1:1234\n"), "an m3u playlist");
        formats.put(hex("1f8b0800"), "a gzip archive; unpack it first");
        formats.put(text("BZh91AY"), "a bzip2 archive; unpack it first");
        formats.put(hex("fd377a585a000004"), "an xz archive; unpack it first");
        formats.put(hex("28b52ffd24"), "a zstd archive; unpack it first");
        formats.put(hex("377abcaf271c0004"), "a 7z archive; unpack it first");
        formats.put(hex("504b03041400"), "a zip archive; unpack it first");
        formats.put(text("Rar!\u001a\u0007"), "a rar archive; unpack it first");
        formats.put(text("!<arch>\ndebian-binary"), "a Debian package or ar archive; unpack it first");
        formats.put(tar(), "a tar archive; unpack it first");
        formats.put(hex("89504e470d0a1a0a"), "a PNG image");
        formats.put(hex("ffd8ffe000104a464946"), "a JPEG image");
        formats.put(text("GIF89a"), "a GIF image");
        formats.put(text("%PDF-1.7\n"), "a PDF document");
        formats.put(hex("7f454c4602010100"), "a program or library");
        formats.put(hex("cafebabe00000041"), "a Java class");
        formats.put(text("<!DOCTYPE html>\n<html></html>\n"), "an XML or HTML document");
        formats.put(text("<?xml version=\"1.0\"?>\n"), "an XML or HTML document");
        formats.put(text("{\"services\": []}\n"), "a JSON document");
        formats.put(text("#!/bin/sh\necho\n"), "a script");
        formats.put(transportStream(), "an MPEG transport stream");
        formats.put(sqlite(""), "a SQLite database");
        formats.put(sqlite("TvLF"), "a list file of this library; Java loads it: load(listId, path)");
        formats.put(sqlite("TvDB"), "a list database; set TAVRO_HOME to its folder");
        formats.forEach((content, name) -> assertEquals("cannot import some file: it is " + name, refusal(content)));
    }

    @Test
    void aPlaylistIsKnownBehindAByteOrderMark() {
        assertEquals(
                "cannot import some file: it is an m3u playlist",
                refusal("\uFEFF#EXTM3U\n#EXTINF:-1,Uno\nrtp://239.0.0.1:1234\n".getBytes(StandardCharsets.UTF_8)));
    }

    @Test
    void theListFilesAndTheDatabaseOfTheLibraryAreKnown() throws Exception {
        VltTvSatelliteList lists = VltTvSatelliteList.getInstance();
        lists.open(LIST);
        Path file = folder.resolve("stored");
        lists.store(LIST, file.toString());
        lists.delete(LIST);
        assertEquals(
                "cannot import " + file
                        + ": it is a list file of this library; Java loads it: load(listId, path)",
                assertThrows(Failure.class, () -> Format.of(Source.read(file))).getMessage());
        // A copy, because closing the database file in this process would release the library's locks on it.
        Path database = folder.resolve("copy.db");
        String original = Path.of(System.getenv("TAVRO_HOME"), "lists.db").toString();
        assertEquals(0, new ProcessBuilder("sqlite3", "-bail", original, ".backup '" + database + "'").start()
                .waitFor());
        assertEquals(
                "cannot import " + database + ": it is a list database; set TAVRO_HOME to its folder",
                assertThrows(Failure.class, () -> Format.of(Source.read(database))).getMessage());
    }

    @Test
    void aBeginningThatIsCutOffIsNoForeignFormat() {
        assertEquals("cannot import some file: it has nothing but blank lines and comments",
                refusal(text("#EXTM3")));
        assertEquals(Format.SOURCES, Format.of(new Source("x", "x", text("S5W Uno " + "GIF8".repeat(100)))));
    }

    @Test
    void otherBinaryFilesAreRefused() {
        byte[] everything = new byte[1024];
        for (int i = 0; i < everything.length; i++) {
            everything[i] = (byte) (i * 7 + 1);
        }
        assertEquals("cannot import some file: it is a binary file", refusal(everything));
        assertEquals("cannot import some file: it is a binary file",
                refusal("S5W Uno\n".getBytes(Charset.forName("UTF-32LE"))));
        assertEquals("cannot import some file: it is a binary file", refusal(new byte[4096]));
    }

    @Test
    void aFewControlCharactersAreNoBinaryFile() {
        assertEquals(Format.SOURCES, of("x", "S5W Uno Due Tre Quattro Cinque\u001b[0m", "S7W\tDue\f"));
    }

    private static byte[] text(String text) {
        return text.getBytes(StandardCharsets.US_ASCII);
    }

    private static byte[] hex(String digits) {
        return HexFormat.of().parseHex(digits);
    }

    private static byte[] tar() {
        byte[] block = Arrays.copyOf(text("channels.conf"), 512);
        System.arraycopy(text("ustar"), 0, block, 257, 5);
        return block;
    }

    private static byte[] transportStream() {
        byte[] packets = new byte[2 * 188];
        packets[0] = 'G';
        packets[188] = 'G';
        return packets;
    }

    private static byte[] sqlite(String application) {
        byte[] page = Arrays.copyOf(text("SQLite format 3\0"), 4096);
        System.arraycopy(text(application), 0, page, 68, application.length());
        return page;
    }
}
