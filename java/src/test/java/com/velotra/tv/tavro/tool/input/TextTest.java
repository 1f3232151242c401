package com.velotra.tv.tavro.tool.input;

import static org.junit.jupiter.api.Assertions.assertEquals;

import org.junit.jupiter.api.Test;

class TextTest {
    @Test
    void aCharacterTakesTheColumnsThatATerminalGivesIt() {
        assertEquals(0, Text.width(""));
        assertEquals(4, Text.width("Köln"));
        assertEquals(4, Text.width("Ko\u0308ln"), "a combining mark takes none");
        assertEquals(4, Text.width("朝日"), "an ideograph takes two");
        assertEquals(2, Text.width("\ud842\udfb7"), "also outside the basic plane");
        assertEquals(3, Text.width("\uff34V"), "a full-width letter takes two");
    }

    @Test
    void aTextThatIsTooWideEndsInAnEllipsis() {
        assertEquals("abcd", Text.fit("abcd", 4));
        assertEquals("abc…", Text.fit("abcde", 4));
        assertEquals("朝…", Text.fit("朝日新", 4));
        assertEquals("\ud842\udfb7…", Text.fit("\ud842\udfb7\ud842\udfb7", 3));
        assertEquals("…", Text.fit("abc", 1));
    }

    @Test
    void anExcerptIsQuotedAndPrintable() {
        assertEquals("''", Text.excerpt(""));
        assertEquals("'Köln·[2J·'", Text.excerpt("Köln\u001b[2J\0"));
    }

    @Test
    void anExcerptIsCutToSixtyColumns() {
        assertEquals("'" + "a".repeat(60) + "'", Text.excerpt("a".repeat(60)));
        assertEquals("'" + "a".repeat(59) + "…'", Text.excerpt("a".repeat(61)));
        assertEquals("'" + "日".repeat(29) + "…'", Text.excerpt("日".repeat(31)));
    }
}
