package com.velotra.tv.tavro.tool;

import static org.junit.jupiter.api.Assertions.assertEquals;

import org.junit.jupiter.api.Test;

class ShellTest {
    @Test
    void aWordIsQuotedUnlessItNeedsNoQuotes() {
        assertEquals("/tmp/a-b_c.1", Shell.quoted("/tmp/a-b_c.1"));
        assertEquals("''", Shell.quoted(""));
        assertEquals("'a b'", Shell.quoted("a b"));
        assertEquals("'$HOME'", Shell.quoted("$HOME"));
        assertEquals("'it'\\''s'", Shell.quoted("it's"));
    }
}
