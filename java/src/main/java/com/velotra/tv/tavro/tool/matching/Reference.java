package com.velotra.tv.tavro.tool.matching;

import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import java.util.EnumMap;
import java.util.List;
import java.util.Map;

/**
 * Two fields of a record that together name a record of another kind.
 *
 * @param target the kind of record that they name
 * @param list the field with the list id; 0 for no record
 * @param record the field with the record id
 */
public record Reference(Kind target, Field list, Field record) {
    static final Reference STREAM_OF_SERVICE = new Reference(Kind.SERVICES, Kind.STREAMS, "tsl");
    static final Reference SATELLITE_OF_STREAM = new Reference(Kind.STREAMS, Kind.SATELLITES, "satl");

    private static final Map<Kind, List<Reference>> ALL = new EnumMap<>(Map.of(
            Kind.SERVICES, List.of(STREAM_OF_SERVICE,
                    new Reference(Kind.SERVICES, Kind.NETWORKS, "nwl"),
                    new Reference(Kind.SERVICES, Kind.SATELLITES, "satl")),
            Kind.STREAMS, List.of(new Reference(Kind.STREAMS, Kind.NETWORKS, "nwl"), SATELLITE_OF_STREAM),
            Kind.NETWORKS, List.of(),
            Kind.SATELLITES, List.of()));

    private Reference(Kind from, Kind target, String prefix) {
        this(target, Fields.of(from, prefix + "_id"), Fields.of(from, prefix + "_record_id"));
    }

    /** Returns the references in records of a kind. */
    public static List<Reference> of(Kind kind) {
        return ALL.get(kind);
    }

    int listId(Record from) {
        return (int) list.number(from);
    }

    int recordId(Record from) {
        return (int) record.number(from);
    }
}
