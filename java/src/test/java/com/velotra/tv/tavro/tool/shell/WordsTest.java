package com.velotra.tv.tavro.tool.shell;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import com.velotra.tv.tavro.tool.input.Failure;
import java.util.List;
import org.junit.jupiter.api.Test;

class WordsTest {
    @Test
    void wordsAreQuotedAsInAPosixShell() {
        assertEquals(List.of("list", "1", "--first=2"), Words.split("  list\t1 --first=2 "));
        assertEquals(List.of("set", "1,2", "name=a b", "x"), Words.split("set 1,2 'name=a b' x"));
        assertEquals(List.of("name=a b"), Words.split("name='a b'"));
        assertEquals(List.of("name=it's"), Words.split("name=\"it's\""));
        assertEquals(List.of("a b", "\\", "'", "\"\\n"), Words.split("a\\ b '\\' \\' \"\\\"\\n\""));
        assertEquals(List.of("", ""), Words.split("'' \"\""));
        assertEquals(List.of("a#b", "#"), Words.split("a#b '#' # the rest"));
        assertEquals(List.of("$HOME", "*", "!1", "`x`"), Words.split("$HOME * !1 `x`"));
        assertEquals(List.of(), Words.split(" \t"));
        assertEquals(List.of(), Words.split("# all of it"));
    }

    @Test
    void anOpenQuoteIsAFailure() {
        assertEquals("the quote ' is not closed", failure("find 'a"));
        assertEquals("the quote \" is not closed", failure("find \"a'"));
        assertEquals("the line ends with a backslash", failure("find a\\"));
    }

    private static String failure(String line) {
        return assertThrows(Failure.class, () -> Words.split(line)).getMessage();
    }

    @Test
    void theWordAtTheCursorIsTheLast() {
        assertEquals(List.of(""), Words.before("", 0));
        assertEquals(List.of("li"), Words.before("list 1", 2));
        assertEquals(List.of("list", ""), Words.before("list 1", 5));
        assertEquals(List.of("find", "a b"), Words.before("find 'a b", 9));
    }
}
