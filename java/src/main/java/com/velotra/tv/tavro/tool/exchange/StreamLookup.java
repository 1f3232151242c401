package com.velotra.tv.tavro.tool.exchange;

import com.velotra.tv.tavro.services.channellist.OrbitalPosition;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.util.HashMap;
import java.util.Map;
import java.util.Optional;
import java.util.function.BiFunction;

/** Finds the records that services and transport streams refer to. Each list is read once, when it is first needed. */
public final class StreamLookup {
    private final BiFunction<Kind, Integer, Optional<RecordList>> lists;
    private final Map<Kind, Map<Integer, Optional<RecordList>>> read = new HashMap<>();

    /** @param lists returns a list; empty if there is none */
    public StreamLookup(BiFunction<Kind, Integer, Optional<RecordList>> lists) {
        this.lists = lists;
    }

    /** Returns a field that is a number. */
    static int number(Record record, String field) {
        return (int) Layout.of(record.kind()).field(field).orElseThrow().number(record);
    }

    /** Returns a field as text. */
    static String text(Record record, String field) {
        return Layout.of(record.kind()).field(field).orElseThrow().format(record);
    }

    /** Returns the transport stream of a service. */
    Optional<Record> streamOf(Record service) {
        return find(Kind.STREAMS, number(service, "tsl_id"), number(service, "tsl_record_id"));
    }

    /** Returns the network of a service. */
    Optional<Record> networkOf(Record service) {
        return find(Kind.NETWORKS, number(service, "nwl_id"), number(service, "nwl_record_id"));
    }

    /** Returns the position of the satellite of a transport stream. */
    Optional<OrbitalPosition> positionOf(Record stream) {
        return find(Kind.SATELLITES, number(stream, "satl_id"), number(stream, "satl_record_id"))
                .map(satellite -> new OrbitalPosition(number(satellite, "orbital_position")));
    }

    private Optional<Record> find(Kind kind, int listId, int recordId) {
        if (listId == 0) {
            return Optional.empty();
        }
        return read.computeIfAbsent(kind, key -> new HashMap<>())
                .computeIfAbsent(listId, id -> lists.apply(kind, id)).flatMap(list -> list.byId(recordId));
    }
}
