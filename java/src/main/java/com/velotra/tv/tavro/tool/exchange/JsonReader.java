package com.velotra.tv.tavro.tool.exchange;

import com.google.gson.stream.JsonToken;
import com.google.gson.stream.MalformedJsonException;
import com.velotra.tv.tavro.tool.exchange.ListTable.Row;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.records.Kind;
import java.io.ByteArrayInputStream;
import java.io.EOFException;
import java.io.IOException;
import java.io.InputStreamReader;
import java.nio.charset.CharacterCodingException;
import java.nio.charset.StandardCharsets;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Optional;
import java.util.OptionalInt;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/** Reads lists from JSON, as {@link JsonWriter} wrote them. The order of members does not matter. */
final class JsonReader {
    private static final Pattern LINE = Pattern.compile(" at line (\\d+) ");

    private final String source;
    private final com.google.gson.stream.JsonReader json;
    private final SharedTexts texts = new SharedTexts();
    private final List<ListTable> lists = new ArrayList<>();

    private JsonReader(Source source) {
        this.source = source.name();
        json = new com.google.gson.stream.JsonReader(new InputStreamReader(new ByteArrayInputStream(source.bytes()),
                StandardCharsets.UTF_8.newDecoder()));
    }

    /**
     * Reads lists.
     *
     * @throws Failure if the file is not JSON, or does not have the members of an export
     */
    static List<ListTable> read(Source source) {
        JsonReader reader = new JsonReader(source);
        try {
            reader.readFile();
            return reader.lists;
        } catch (MalformedJsonException e) {
            throw reader.failure("it is not valid JSON");
        } catch (CharacterCodingException e) {
            throw reader.failure("it is not UTF-8");
        } catch (EOFException e) {
            throw reader.failure("it ends early");
        } catch (IOException | IllegalStateException | IllegalArgumentException e) {
            throw reader.failure(String.valueOf(e.getMessage()).replaceFirst(" at line .*", ""));
        }
    }

    private Failure failure(String reason) {
        return new Failure("cannot import " + source + ": line " + line() + ": " + reason);
    }

    /** Returns the number of the line that is read: only the text form of Gson's reader has it. */
    private int line() {
        Matcher line = LINE.matcher(json.toString());
        return line.find() ? Integer.parseInt(line.group(1)) : 1;
    }

    private void readFile() throws IOException {
        json.beginObject();
        while (json.hasNext()) {
            switch (json.nextName()) {
                case "format" -> json.nextString();
                case "version" -> {
                    if (json.nextInt() != JsonWriter.VERSION) {
                        throw new IllegalArgumentException("this version of the tool reads version "
                                + JsonWriter.VERSION + " of the format");
                    }
                }
                case "lists" -> {
                    json.beginArray();
                    while (json.hasNext()) {
                        readList();
                    }
                    json.endArray();
                }
                default -> json.skipValue();
            }
        }
        json.endObject();
        json.peek(); // fails if something follows
    }

    private void readList() throws IOException {
        Optional<Kind> kind = Optional.empty();
        OptionalInt listId = OptionalInt.empty();
        Map<String, Integer> columns = new LinkedHashMap<>();
        List<Row> rows = new ArrayList<>();
        json.beginObject();
        while (json.hasNext()) {
            switch (json.nextName()) {
                case "kind" -> kind = Optional.of(Columns.kind(json.nextString()));
                case "list_id" -> listId = OptionalInt.of(Columns.listId(json.nextString()));
                case "records" -> {
                    json.beginArray();
                    while (json.hasNext()) {
                        rows.add(row(columns, "record " + (rows.size() + 1)));
                    }
                    json.endArray();
                }
                default -> json.skipValue();
            }
        }
        json.endObject();
        List<String> names = List.copyOf(columns.keySet());
        if (names.isEmpty()) { // a list without records
            names = List.of(Columns.RECORD_ID);
        }
        Kind found = kind.isPresent() ? kind.get() : Columns.kindOf(names);
        Columns.check(found, names);
        lists.add(new ListTable(source, found, listId, names, rows));
    }

    private Row row(Map<String, Integer> columns, String name) throws IOException {
        json.beginObject();
        int line = line();
        List<String> values = new ArrayList<>(columns.size());
        while (json.hasNext()) {
            int column = columns.computeIfAbsent(Columns.normalized(json.nextName()), key -> columns.size());
            while (values.size() <= column) {
                values.add(null);
            }
            values.set(column, value());
        }
        json.endObject();
        return new Row(line, Optional.of(name), values, Optional.empty());
    }

    private String value() throws IOException {
        JsonToken token = json.peek();
        if (token == JsonToken.NULL) {
            json.nextNull();
            return null;
        }
        if (token != JsonToken.STRING && token != JsonToken.NUMBER) {
            throw new IllegalArgumentException("a value must be a number or a string");
        }
        return texts.shared(json.nextString());
    }
}
