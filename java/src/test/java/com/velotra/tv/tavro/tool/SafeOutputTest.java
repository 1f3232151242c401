package com.velotra.tv.tavro.tool;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.tool.output.Terminal;
import java.io.ByteArrayOutputStream;
import java.nio.charset.StandardCharsets;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;

class SafeOutputTest {
    @AfterEach
    void realTerminal() {
        Terminal.unforce();
    }

    private static String printed(String text) {
        ByteArrayOutputStream bytes = new ByteArrayOutputStream();
        SafeOutput.Stream out = SafeOutput.over(bytes);
        out.print(text);
        out.flush();
        return bytes.toString(StandardCharsets.UTF_8);
    }

    @Test
    void controlCharactersBecomeDots() {
        assertEquals("a·[31mb··\nü·\u00a0", printed("a\u001b[31mb\u0007\u007f\nü\u009b\u00a0"));
    }

    @Test
    void onlyColorsPassToATerminalThatHasThem() {
        Terminal.force(true, true, 80);
        assertEquals("\u001b[31mred\u001b[0m \u001b[1mbold", printed("\u001b[31mred\u001b[0m \u001b[1mbold"));
        assertEquals("·[2J ·[m ·[123m ·]0;x· ·[3·[1ü \u001b[32m",
                printed("\u001b[2J \u001b[m \u001b[123m \u001b]0;x\u0007 \u001b[3\u001b[1ü \u001b[32m"));
        Terminal.force(true, false, 80);
        assertEquals("·[31mred", printed("\u001b[31mred"));
    }
}
