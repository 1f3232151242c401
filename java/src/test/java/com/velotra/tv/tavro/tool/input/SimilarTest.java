package com.velotra.tv.tavro.tool.input;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.util.List;
import org.junit.jupiter.api.Test;

class SimilarTest {
    private static final List<String> WORDS = List.of("list", "lists", "import", "show");

    @Test
    void aMistypedWordHasASuggestion() {
        assertEquals("; did you mean 'list'?", Similar.suggestion("lsit", WORDS));
        assertEquals("; did you mean 'list'?", Similar.suggestion("lst", WORDS));
        assertEquals("; did you mean 'lists'?", Similar.suggestion("listss", WORDS));
        assertEquals("; did you mean 'import'?", Similar.suggestion("ixpxrt", WORDS));
    }

    @Test
    void anotherWordHasNone() {
        for (String word : List.of("", "s", "is", "xxxx", "frobnicate", "importing")) {
            assertEquals("", Similar.suggestion(word, WORDS), word);
        }
    }
}
