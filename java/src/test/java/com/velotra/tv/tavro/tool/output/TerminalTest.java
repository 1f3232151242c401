package com.velotra.tv.tavro.tool.output;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;

import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;

class TerminalTest {
    @AfterEach
    void realTerminal() {
        Terminal.unforce();
    }

    @Test
    void aPipeGetsWholeLinesWithoutColors() { // as every test's standard output
        assertFalse(Terminal.isOutput());
        assertEquals(Integer.MAX_VALUE, Terminal.columns());
        assertEquals("text", Ansi.RED.paint("text"));
    }

    @Test
    void aTerminalWithColorsGetsEscapeSequences() {
        Terminal.force(true, true, 80);
        assertEquals("\u001b[31mtext\u001b[0m", Ansi.RED.paint("text"));
        Terminal.force(true, false, 80);
        assertEquals("text", Ansi.RED.paint("text"));
    }
}
