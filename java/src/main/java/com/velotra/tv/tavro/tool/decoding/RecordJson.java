package com.velotra.tv.tavro.tool.decoding;

import com.velotra.tv.tavro.services.channellist.RecordField.Style;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Record;
import java.util.HexFormat;
import java.util.LinkedHashMap;
import java.util.Map;

/** One record as the maps of a JSON object. */
public final class RecordJson {
    private RecordJson() {}

    /**
     * Returns the object of a record: kind, record id, each field by its name, and unnamed bytes.
     *
     * @param places whether fields have their place, header name and Java keys
     * @param hex whether the object has all bytes
     */
    public static Map<String, Object> of(DecodedRecord decoded, boolean places, boolean hex) {
        Record record = decoded.record();
        Map<String, Object> fields = new LinkedHashMap<>();
        for (Field field : decoded.layout().fields(record)) {
            fields.put(field.name(), field(decoded, field, places));
        }
        Map<String, Object> object = new LinkedHashMap<>();
        object.put("kind", record.kind().toString());
        object.put("record", record.id());
        object.put("fields", fields);
        object.put("unnamed_bytes", decoded.layout().rest(record));
        if (hex) {
            object.put("hex", HexFormat.of().formatHex(record.bytes()));
        }
        return object;
    }

    private static Map<String, Object> field(DecodedRecord decoded, Field field, boolean places) {
        Record record = decoded.record();
        Map<String, Object> object = new LinkedHashMap<>();
        object.put("value", field.style() == Style.TEXT ? field.format(record) : (Object) field.number(record));
        object.put("text", decoded.text(field));
        if (!field.flags().isEmpty()) {
            object.put("flags", field.flags().stream()
                    .filter(flag -> (field.number(record) & flag.mask()) != 0).map(Field.Flag::key).toList());
        }
        if (places) {
            object.put("offset", field.offset());
            object.put("width", field.width());
            object.put("path", field.path(record));
            object.put("keys", field.keys().stream().map(Field.Key::name).toList());
        }
        return object;
    }
}
