package com.velotra.tv.tavro.tool.records;

import com.velotra.tv.tavro.services.channellist.NetworkField;
import com.velotra.tv.tavro.services.channellist.RecordField;
import com.velotra.tv.tavro.services.channellist.SatelliteField;
import com.velotra.tv.tavro.services.channellist.ServiceField;
import com.velotra.tv.tavro.services.channellist.TransportStreamField;
import java.util.Arrays;
import java.util.EnumMap;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.Optional;
import java.util.function.Function;
import java.util.function.Predicate;
import java.util.stream.Stream;

/**
 * The fields of a record kind, and the bytes that no field has.
 *
 * <p>The broadcast type of a service and the medium of a transport stream select a view: which fields share bytes that
 * other views use otherwise. What {@link Field#format} prints for all fields of a record, and {@link #rest}, are together
 * the whole record.
 */
public final class Layout {
    private static final int VIEWS = 1 << 8;
    private static final Map<Kind, Layout> ALL = new EnumMap<>(Map.of(
            Kind.SERVICES, new Layout(Kind.SERVICES, ServiceField.BROADCAST_TYPE.offset(),
                    Stream.of(ServiceField.values()).map(field -> field(field, field.name(),
                    record -> field.belongsTo((int) record.unsigned(ServiceField.BROADCAST_TYPE.offset(), 1))))),
            Kind.STREAMS, new Layout(Kind.STREAMS, TransportStreamField.MEDIUM.offset(),
                    Stream.of(TransportStreamField.values()).map(field -> field(field, field.name(),
                    record -> field.belongsTo((int) record.unsigned(TransportStreamField.MEDIUM.offset(), 1))))),
            Kind.NETWORKS, always(Kind.NETWORKS, NetworkField.values(), NetworkField::name),
            Kind.SATELLITES, always(Kind.SATELLITES, SatelliteField.values(), SatelliteField::name)));

    private final Kind kind;
    private final int selector; // offset of the byte that selects a view; -1 without views
    private final List<Field> fields;
    private final View[] views = new View[VIEWS]; // by the value of that byte, each made when it is first needed

    private Layout(Kind kind, int selector, Stream<Field> fields) {
        this.kind = kind;
        this.selector = selector;
        this.fields = fields.toList();
    }

    private static <F extends RecordField> Layout always(Kind kind, F[] fields, Function<F, String> name) {
        return new Layout(kind, -1, Arrays.stream(fields).map(field -> field(field, name.apply(field), record -> true)));
    }

    private static Field field(RecordField field, String name, Predicate<Record> in) {
        // The terminator of a satellite's name has a field of its own.
        int mostText = field == SatelliteField.NAME ? field.width() : field.width() - 1;
        return new Field(name.toLowerCase(Locale.ROOT), field.label(), field.offset(), field.width(), field.style(),
                mostText, in);
    }

    /** Returns the layout of a kind. */
    public static Layout of(Kind kind) {
        return ALL.get(kind);
    }

    /** Returns all fields, by view and then by offset. Fields of different views may share bytes. */
    public List<Field> fields() {
        return fields;
    }

    /** Returns the fields that a record has, by offset. */
    public List<Field> fields(Record record) {
        return view(record).fields;
    }

    /** Returns the field with that name. */
    public Optional<Field> field(String name) {
        return fields.stream().filter(field -> field.name().equals(name)).findFirst();
    }

    /**
     * Returns the bytes of a record that are not zero and that no field has: reserved ones, and those of a broadcast type
     * or medium that is not known. The text has one {@code OFFSET:HEX} for each run of bytes, as in
     * {@code 105:0a0b 110:ff}; it is empty if there are none.
     */
    public String rest(Record record) {
        return view(record).unnamed.format(record);
    }

    /**
     * Writes the bytes that no field has: those that the text names, and zeros to the others. Which these are depends on
     * the broadcast type or medium, so write the fields first.
     *
     * @param text as {@link #rest} returns it
     * @throws IllegalArgumentException with a message for the user if the text is malformed, or names a byte that a field
     *     has; then nothing is written
     */
    public void parseRest(String text, byte[] record) {
        view(Record.of(kind, record)).unnamed.parse(text, record);
    }

    private View view(Record record) {
        int value = selector < 0 ? 0 : (int) record.unsigned(selector, 1);
        View view = views[value];
        if (view == null) {
            view = new View(fields.stream().filter(field -> field.in(record)).toList(), kind.recordBytes());
            views[value] = view;
        }
        return view;
    }

    /** What the records with one broadcast type or medium have. */
    private static final class View {
        private final List<Field> fields;
        private final UnnamedBytes unnamed;

        View(List<Field> fields, int recordBytes) {
            this.fields = fields;
            unnamed = new UnnamedBytes(fields, recordBytes);
        }
    }
}
