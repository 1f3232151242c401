package com.velotra.tv.tavro.tool.input;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import java.io.ByteArrayInputStream;
import java.io.IOException;
import java.io.InputStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

class SourceTest {
    @TempDir
    Path folder;

    private static String refusal(Path path) {
        return assertThrows(Failure.class, () -> Source.read(path)).getMessage();
    }

    @Test
    void aFileIsReadWithItsNameItsPathAndItsBytes() throws IOException {
        Path file = Files.writeString(folder.resolve("Uno-5.0W"), "a\nb\n");
        Source source = Source.read(file);
        assertEquals(file.toString(), source.name());
        assertEquals("Uno-5.0W", source.fileName());
        assertArrayEquals("a\nb\n".getBytes(StandardCharsets.US_ASCII), source.bytes());
        assertEquals(List.of("a", "b"), source.lines());
    }

    @Test
    void standardInputIsReadAndHasNoFileName() {
        InputStream before = System.in;
        System.setIn(new ByteArrayInputStream("a\nb".getBytes(StandardCharsets.US_ASCII)));
        try {
            Source source = Source.read(Source.STANDARD_INPUT);
            assertEquals(List.of("standard input", "", List.of("a", "b")),
                    List.of(source.name(), source.fileName(), source.lines()));
        } finally {
            System.setIn(before);
        }
    }

    @Test
    void aFileThatCannotBeReadIsNamedWithTheReason() {
        assertEquals("cannot read " + folder + "/none: no such file or folder", refusal(folder.resolve("none")));
        assertEquals("cannot read " + folder + ": Is a directory", refusal(folder));
    }

    @Test
    void aNameIsPrintedWithDotsForControlCharacters() throws IOException {
        assertEquals(folder + "/a·[2J", Source.read(Files.createFile(folder.resolve("a\u001b[2J"))).name());
        assertEquals("cannot read " + folder + "/b·: no such file or folder", refusal(folder.resolve("b\u0007")));
    }
}
