package com.velotra.tv.tavro.tool.view;

import com.google.gson.stream.JsonWriter;
import com.velotra.tv.tavro.services.channellist.RecordField.Style;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.io.UncheckedIOException;
import java.util.ArrayList;
import java.util.Base64;
import java.util.HashMap;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.TreeMap;
import java.util.zip.DeflaterOutputStream;

/**
 * A list in a page: the bytes of its records, compressed, and what its values mean.
 *
 * <p>Records of one list may have different fields, depending on their broadcast type or medium. Each set of fields is
 * a shape. The page reads numbers from the bytes; the meaning of a number is written once per shape and field, and only
 * if it says more than the number. Texts are written per record, or once if all records have the same.
 */
final class ListData {
    private final RecordList list;
    private final List<Field> fields;
    private final Map<List<Field>, Shape> shapes = new LinkedHashMap<>();
    private final int[] shapeOf;

    /** A set of fields, and the meanings of the numbers in them, by field. */
    private record Shape(int number, List<Field> fields, Map<Field, Map<Long, String>> meanings, Record example) {}

    ListData(RecordList list) {
        this.list = list;
        this.fields = Layout.of(list.kind()).fields();
        this.shapeOf = new int[list.size()];
        for (int i = 0; i < shapeOf.length; i++) {
            Record record = list.get(i);
            Shape shape = shapes.computeIfAbsent(Layout.of(list.kind()).fields(record),
                    of -> new Shape(shapes.size(), of, new HashMap<>(), record));
            shapeOf[i] = shape.number;
            addMeanings(shape, record);
        }
    }

    private static void addMeanings(Shape shape, Record record) {
        for (Field field : shape.fields) {
            if (field.style() != Style.TEXT) {
                shape.meanings.computeIfAbsent(field, of -> new TreeMap<>())
                        .computeIfAbsent(field.number(record), number -> field.describe(record));
            }
        }
    }

    /** Writes the members of a JSON object. */
    void write(JsonWriter json) throws IOException {
        json.name("records").value(list.size());
        json.name("bytes").value(Base64.getEncoder().encodeToString(compressed(list.bytes())));
        json.name("shapes").beginArray();
        for (Shape shape : shapes.values()) {
            write(shape, json);
        }
        json.endArray().name("shapeOf");
        writeColumn(shapeOf.length, shapes.size() > 1, i -> json.value(shapeOf[i]), json);
        json.name("texts").beginObject();
        for (int i = 0; i < fields.size(); i++) {
            if (fields.get(i).style() == Style.TEXT) {
                json.name(Integer.toString(i));
                writeTexts(fields.get(i), json);
            }
        }
        json.endObject();
    }

    private void write(Shape shape, JsonWriter json) throws IOException {
        json.beginObject().name("fields").beginArray();
        for (Field field : shape.fields) {
            json.value(fields.indexOf(field));
        }
        json.endArray().name("paths").beginObject();
        for (Field field : shape.fields) {
            String path = field.path(shape.example);
            if (!path.equals(field.path())) {
                json.name(Integer.toString(fields.indexOf(field))).value(path);
            }
        }
        json.endObject().name("meanings").beginObject();
        for (Field field : shape.fields) {
            Map<Long, String> meanings = new TreeMap<>(shape.meanings.getOrDefault(field, Map.of()));
            meanings.entrySet().removeIf(meaning -> meaning.getValue().equals(Long.toString(meaning.getKey())));
            if (!meanings.isEmpty()) {
                json.name(Integer.toString(fields.indexOf(field))).beginObject();
                for (Map.Entry<Long, String> meaning : meanings.entrySet()) {
                    json.name(Long.toString(meaning.getKey())).value(meaning.getValue());
                }
                json.endObject();
            }
        }
        json.endObject().endObject();
    }

    private void writeTexts(Field field, JsonWriter json) throws IOException {
        List<String> texts = new ArrayList<>();
        for (Record record : list) {
            texts.add(field.in(record) ? field.format(record) : "");
        }
        boolean differ = texts.stream().distinct().limit(2).count() > 1;
        writeColumn(texts.size(), differ, i -> json.value(texts.get(i)), json);
    }

    private interface Cell {
        void write(int index) throws IOException;
    }

    /** An array, or the only value of all records; null for an empty list. */
    private static void writeColumn(int size, boolean differ, Cell cell, JsonWriter json) throws IOException {
        if (size == 0) {
            json.nullValue();
        } else if (differ) {
            json.beginArray();
            for (int i = 0; i < size; i++) {
                cell.write(i);
            }
            json.endArray();
        } else {
            cell.write(0);
        }
    }

    private static byte[] compressed(byte[] bytes) {
        ByteArrayOutputStream to = new ByteArrayOutputStream();
        try (DeflaterOutputStream deflater = new DeflaterOutputStream(to)) {
            deflater.write(bytes);
        } catch (IOException e) {
            throw new UncheckedIOException(e); // in memory
        }
        return to.toByteArray();
    }
}
