package com.velotra.tv.tavro.tool.exchange;

import com.velotra.tv.tavro.services.channellist.RecordField.Style;
import com.velotra.tv.tavro.tool.output.AsciiControls;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.io.IOException;
import java.io.Writer;
import java.util.List;

/** Lists as JSON, with one record per line. Numbers are JSON numbers, flags and codes in hexadecimal are strings. */
public final class JsonWriter {
    static final String FORMAT = "tavro lists";
    static final int VERSION = 1;

    private static final String INDENT = "  ";

    private final com.google.gson.stream.JsonWriter json;

    private JsonWriter(Writer out) {
        json = new com.google.gson.stream.JsonWriter(new AsciiControls(out));
    }

    /** Writes lists. */
    public static void write(List<RecordList> lists, Writer out) throws IOException {
        new JsonWriter(out).write(lists);
        out.write('\n');
    }

    private void write(List<RecordList> lists) throws IOException {
        json.setIndent(INDENT);
        json.beginObject();
        json.name("format").value(FORMAT);
        json.name("version").value(VERSION);
        json.name("lists").beginArray();
        for (RecordList list : lists) {
            json.beginObject();
            json.name("kind").value(list.kind().toString());
            json.name("list_id").value(list.listId());
            json.name("name").value(list.name());
            json.name("records").beginArray();
            RowWriter writer = new RowWriter(list.kind());
            for (Record record : list) {
                json.beginObject();
                json.setIndent("");
                writer.write(record, new Members());
                json.endObject();
                json.setIndent(INDENT);
            }
            json.endArray();
            json.endObject();
        }
        json.endArray();
        json.endObject();
        json.flush();
    }

    private final class Members implements RowWriter.Cells<IOException> {
        @Override
        public void field(Field field, String value) throws IOException {
            json.name(field.name());
            if (field.style() == Style.NUMBER || field.style() == Style.SIGNED) {
                json.jsonValue(value);
            } else {
                json.value(value);
            }
        }

        @Override
        public void absent(Field field) {}

        @Override
        public void unnamedBytes(String value) throws IOException {
            json.name(Columns.UNNAMED_BYTES).value(value);
        }
    }
}
