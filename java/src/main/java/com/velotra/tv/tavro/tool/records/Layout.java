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

/** The fields of a record kind. */
public final class Layout {
    private static final Map<Kind, Layout> ALL = new EnumMap<>(Map.of(
            Kind.SERVICES, new Layout(Stream.of(ServiceField.values()).map(field -> field(field, field.name(),
                    record -> field.belongsTo((int) record.unsigned(ServiceField.BROADCAST_TYPE.offset(), 1))))),
            Kind.STREAMS, new Layout(Stream.of(TransportStreamField.values()).map(field -> field(field, field.name(),
                    record -> field.belongsTo((int) record.unsigned(TransportStreamField.MEDIUM.offset(), 1))))),
            Kind.NETWORKS, always(NetworkField.values(), NetworkField::name),
            Kind.SATELLITES, always(SatelliteField.values(), SatelliteField::name)));

    private final List<Field> fields;

    private Layout(Stream<Field> fields) {
        this.fields = fields.toList();
    }

    private static <F extends RecordField> Layout always(F[] fields, Function<F, String> name) {
        return new Layout(Arrays.stream(fields).map(field -> field(field, name.apply(field), record -> true)));
    }

    private static Field field(RecordField field, String name, Predicate<Record> in) {
        return new Field(name.toLowerCase(Locale.ROOT), field.label(), field.offset(), field.width(), field.style(), in);
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
        return fields.stream().filter(field -> field.in(record)).toList();
    }

    /** Returns the field with that name. */
    public Optional<Field> field(String name) {
        return fields.stream().filter(field -> field.name().equals(name)).findFirst();
    }
}
