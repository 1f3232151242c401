package com.velotra.tv.tavro.tool.records;

import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.Optional;
import java.util.concurrent.ConcurrentHashMap;

/**
 * The fields of a record kind, and the bytes that no field has, as the C++ structures have them.
 *
 * <p>The broadcast type of a service and the medium of a transport stream select a view: what is in the bytes that
 * views share. A record of an unknown one has no fields there. What {@link Field#format} prints for all fields of a
 * record, and {@link #rest}, are together the whole record.
 */
public final class Layout {
    /**
     * One way to read bytes that views share.
     *
     * @param value of the field that selects it
     * @param label its name for people, such as "satellite"
     * @param member the member of the C++ structure, such as "u_tuner.t_sat"
     */
    public record View(int value, String label, String member) {}

    /**
     * Consecutive bytes of a record that belong together.
     *
     * @param field the field that has them; empty for reserved bytes
     * @param path the member of the C++ structure; empty for the bytes of an unknown view
     */
    public record Run(int offset, int width, Optional<Field> field, String path) {}

    private static final int VALUES = 1 << 8; // of the selecting byte
    private static final Map<Kind, Layout> ALL = new ConcurrentHashMap<>();

    private final Kind kind;
    private final int selector; // offset of the byte that selects a view; -1 without views
    private final List<View> views;
    private final List<Field> fields;
    private final List<Reserved> reserved;
    private final Map<String, Field> byName = new HashMap<>();
    private final Fields[] byValue = new Fields[VALUES]; // of the selecting byte; each made when it is first needed

    /** Reserved bytes of some views, or of all records. */
    record Reserved(int offset, int width, String member, List<View> views) {}

    Layout(Kind kind, int selector, List<View> views, List<Field> fields, List<Reserved> reserved) {
        this.kind = kind;
        this.selector = selector;
        this.views = views;
        this.fields = fields;
        this.reserved = reserved;
        fields.forEach(field -> byName.put(field.name(), field));
    }

    /** Returns the layout of a kind. */
    public static Layout of(Kind kind) {
        Layout layout = ALL.get(kind);
        return layout != null ? layout : ALL.computeIfAbsent(kind, LayoutReader::read);
    }

    /** Returns all fields, by view and then by offset. Fields of different views may share bytes. */
    public List<Field> fields() {
        return fields;
    }

    /** Returns the fields that a record has, by offset. */
    public List<Field> fields(Record record) {
        return of(record).fields;
    }

    /** Returns the field with that name. */
    public Optional<Field> field(String name) {
        return Optional.ofNullable(byName.get(name));
    }

    /** Returns the views of the records; none for networks and satellites. */
    public List<View> views() {
        return views;
    }

    /** Returns the field that selects a view: the broadcast type or the medium; empty without views. */
    public Optional<Field> selector() {
        return fields.stream().filter(field -> field.offset() == selector).findFirst();
    }

    /** Returns the view of a record; empty if it has none or an unknown one. */
    public Optional<View> view(Record record) {
        return of(record).view;
    }

    /** Returns all bytes of a record in runs: fields, reserved bytes, and the bytes of an unknown view. */
    public List<Run> runs(Record record) {
        return of(record).runs;
    }

    /**
     * Returns the bytes of a record that are not zero and that no field has: reserved ones, and those of a broadcast
     * type or medium that is not known. The text has one {@code OFFSET:HEX} for each run of bytes, as in
     * {@code 105:0a0b 110:ff}; it is empty if there are none.
     */
    public String rest(Record record) {
        return of(record).unnamed.format(record);
    }

    /**
     * Writes the bytes that no field has: those that the text names, and zeros to the others. Which these are depends
     * on the broadcast type or medium, so write the fields first.
     *
     * @param text as {@link #rest} returns it
     * @throws IllegalArgumentException with a message for the user if the text is malformed, or names a byte that a
     *     field has; then nothing is written
     */
    public void parseRest(String text, byte[] record) {
        of(Record.of(kind, record)).unnamed.parse(text, record);
    }

    private Fields of(Record record) {
        int value = selector < 0 ? 0 : (int) record.unsigned(selector, 1);
        Fields known = byValue[value];
        if (known == null) {
            known = new Fields(record);
            byValue[value] = known;
        }
        return known;
    }

    /** What records with the same selecting byte have in common. */
    private final class Fields {
        private final Optional<View> view;
        private final List<Field> fields;
        private final List<Run> runs;
        private final UnnamedBytes unnamed;

        Fields(Record record) {
            view = selector < 0 ? Optional.empty()
                    : views.stream().filter(one -> one.value() == record.unsigned(selector, 1)).findFirst();
            fields = Layout.this.fields.stream()
                    .filter(field -> field.in(record))
                    .sorted((a, b) -> Integer.compare(a.offset(), b.offset()))
                    .toList();
            unnamed = new UnnamedBytes(fields, kind.recordBytes());
            runs = Runs.of(kind, record, fields, reserved, view);
        }
    }
}
