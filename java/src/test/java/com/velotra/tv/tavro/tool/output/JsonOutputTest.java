package com.velotra.tv.tavro.tool.output;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.io.ByteArrayOutputStream;
import java.io.PrintStream;
import java.nio.charset.StandardCharsets;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.stream.Stream;
import org.junit.jupiter.api.Test;

class JsonOutputTest {
    private static String printed(Runnable print) {
        PrintStream out = System.out;
        ByteArrayOutputStream bytes = new ByteArrayOutputStream();
        System.setOut(new PrintStream(bytes, true, StandardCharsets.UTF_8));
        try {
            print.run();
        } finally {
            System.setOut(out);
        }
        return bytes.toString(StandardCharsets.UTF_8);
    }

    @Test
    void membersKeepTheirOrderAndNumbersStayNumbers() {
        Map<String, Object> record = new LinkedHashMap<>();
        record.put("name", "Zwölf <b> 🎵");
        record.put("id", 4_294_967_295L);
        record.put("none", null);
        record.put("list", List.of(1, true));
        assertEquals(
                """
                {
                  "name": "Zwölf <b> 🎵",
                  "id": 4294967295,
                  "none": null,
                  "list": [
                    1,
                    true
                  ]
                }
                """,
                printed(() -> JsonOutput.print(record)));
    }

    @Test
    void controlCharactersAreEscaped() {
        assertEquals("\"\\u001b[2J\\u007f\\u0080\\u009f\u00a0\\\"\\n\"\n",
                printed(() -> JsonOutput.print("\u001b[2J\u007f\u0080\u009f\u00a0\"\n")));
    }

    @Test
    void aStreamIsPrintedAsAList() {
        assertEquals("[]\n", printed(() -> JsonOutput.printEach(Stream.of())));
        assertEquals("[\n  1,\n  {\n    \"a\": null\n  }\n]\n", printed(() -> {
            Map<String, Object> second = new LinkedHashMap<>();
            second.put("a", null);
            JsonOutput.printEach(Stream.of(1, second));
        }));
    }

    @Test
    void nullIsPrintedAsNull() {
        assertEquals("null\n", printed(() -> JsonOutput.print(null)));
    }
}
