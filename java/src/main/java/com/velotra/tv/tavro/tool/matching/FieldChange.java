package com.velotra.tv.tavro.tool.matching;

import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Record;

/**
 * A value that differs between two records.
 *
 * @param name the name of the field, or {@link Comparison#UNNAMED_BYTES}
 * @param label the name for people
 * @param from the old value as lossless text; null if the old record does not have the field
 * @param to the new value, likewise
 * @param fromText the old value for people; null as {@code from}
 * @param toText the new value for people
 */
public record FieldChange(String name, String label, String from, String to, String fromText, String toText) {
    static FieldChange of(Field field, Record from, Record to) {
        boolean inFrom = field.in(from);
        boolean inTo = field.in(to);
        return new FieldChange(field.name(), field.label(),
                inFrom ? field.format(from) : null, inTo ? field.format(to) : null,
                inFrom ? field.describe(from) : null, inTo ? field.describe(to) : null);
    }
}
