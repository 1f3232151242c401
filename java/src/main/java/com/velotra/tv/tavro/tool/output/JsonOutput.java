package com.velotra.tv.tavro.tool.output;

import com.google.gson.Gson;
import com.google.gson.GsonBuilder;
import com.google.gson.stream.JsonWriter;
import java.io.BufferedWriter;
import java.io.IOException;
import java.io.OutputStreamWriter;
import java.io.UncheckedIOException;
import java.io.Writer;
import java.nio.charset.StandardCharsets;
import java.util.Iterator;
import java.util.stream.Stream;

/**
 * JSON on standard output, indented by two blanks. Objects are maps, printed in their order; use a LinkedHashMap.
 * Numbers are printed as numbers, and null as null.
 */
public final class JsonOutput {
    private static final Gson GSON = new GsonBuilder().disableHtmlEscaping().serializeNulls().create();

    private JsonOutput() {}

    /** Prints one value: a map, a list, a text, a number, a boolean or null. */
    public static void print(Object value) {
        write(json -> GSON.toJson(value, value == null ? Object.class : value.getClass(), json));
    }

    /** Prints a list, one element after the other, so that long lists need little memory. */
    public static void printEach(Stream<?> values) {
        write(json -> {
            json.beginArray();
            for (Iterator<?> each = values.iterator(); each.hasNext(); ) {
                Object value = each.next();
                GSON.toJson(value, value.getClass(), json);
            }
            json.endArray();
        });
    }

    private interface Body {
        void writeTo(JsonWriter json) throws IOException;
    }

    private static void write(Body body) {
        try {
            Writer out = new BufferedWriter(new OutputStreamWriter(System.out, StandardCharsets.UTF_8));
            JsonWriter json = new JsonWriter(new AsciiControls(out));
            json.setIndent("  ");
            json.setHtmlSafe(false);
            json.setSerializeNulls(true);
            body.writeTo(json);
            out.write(System.lineSeparator());
            out.flush();
        } catch (IOException e) { // not from System.out, which keeps its failures for the end
            throw new UncheckedIOException(e);
        }
    }
}
