package com.velotra.tv.tavro.tool.output;

import static org.junit.jupiter.api.Assertions.assertEquals;

import org.junit.jupiter.api.Test;

class TableTest {
    private static Table table() {
        Table table = new Table(">id", "name", ">LCN", "shown");
        table.add(1, "朝日", 7, "yes");
        table.add(1000, "Köln\u001b1", 12, "no");
        return table;
    }

    @Test
    void columnsFitTheirWidestCellAndNumbersAreRightAligned() {
        assertEquals(
                """
                  id  name    LCN  shown
                   1  朝日      7  yes
                1000  Köln·1   12  no
                """,
                table().toString(Integer.MAX_VALUE));
    }

    @Test
    void noLineIsWiderThanAsked() {
        assertEquals(
                """
                  id  name    L…
                   1  朝日     …
                1000  Köln·1   …
                """,
                table().toString(16));
    }

    @Test
    void aTableWithoutRowsIsItsHeadings() {
        assertEquals("id  name\n", new Table(">id", "name").toString(80));
    }
}
