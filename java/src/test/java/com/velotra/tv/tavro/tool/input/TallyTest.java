package com.velotra.tv.tavro.tool.input;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.io.ByteArrayOutputStream;
import java.io.PrintStream;
import java.nio.charset.StandardCharsets;
import java.util.Map;
import org.junit.jupiter.api.Test;

class TallyTest {
    private static String printed(Tally tally) {
        ByteArrayOutputStream out = new ByteArrayOutputStream();
        tally.print(new PrintStream(out, true, StandardCharsets.UTF_8));
        return out.toString(StandardCharsets.UTF_8);
    }

    @Test
    void whatCameUpIsPrintedInOrderWithHowOften() {
        Tally tally = new Tally("Skipped, by reason:");
        tally.count("b");
        tally.count("a", 1_000_000);
        tally.count("b");
        assertEquals(Map.of("a", 1_000_000, "b", 2), tally.counts());
        assertEquals("Skipped, by reason:\n  1000000  a\n       2  b\n", printed(tally));
    }

    @Test
    void nothingIsPrintedWhenNothingCameUp() {
        assertEquals("", printed(new Tally("Skipped, by reason:")));
    }
}
