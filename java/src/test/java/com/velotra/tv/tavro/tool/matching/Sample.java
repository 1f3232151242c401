package com.velotra.tv.tavro.tool.matching;

import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.EnumMap;
import java.util.List;
import java.util.Map;
import java.util.Optional;
import java.util.Random;

/** Lists for tests: services with their transport streams, networks and satellites, all in lists with one id. */
public final class Sample {
    private final int listId;
    private final Map<Kind, List<Record>> records = new EnumMap<>(Kind.class);

    public Sample(int listId) {
        this.listId = listId;
        Arrays.stream(Kind.values()).forEach(kind -> records.put(kind, new ArrayList<>()));
    }

    /** Adds a record with values such as "name=One"; all else is 0. */
    public Sample add(Kind kind, int id, String... values) {
        records.get(kind).add(with(record(kind, id), values));
        return this;
    }

    /** Adds a DVB service of a transport stream of the same list id. */
    public Sample service(int id, String name, int stream, int serviceId, String... values) {
        return add(Kind.SERVICES, id, concat(values, "broadcast_type=2", "name=" + name, "tsl_id=" + listId,
                "tsl_record_id=" + stream, "service_id=" + serviceId));
    }

    /** Adds a terrestrial stream. */
    public Sample stream(int id, int frequency, int networkId, int streamId) {
        return add(Kind.STREAMS, id, "broadcast_type=2", "medium=1", "frequency=" + frequency,
                "original_network_id=" + networkId, "transport_stream_id=" + streamId, "tsl_id=" + listId);
    }

    /** Adds a satellite stream. */
    public Sample stream(int id, int frequency, int polarization, int satellite, int networkId, int streamId) {
        return add(Kind.STREAMS, id, "broadcast_type=2", "medium=3", "frequency=" + frequency,
                "sat_polarization=" + polarization, "satl_id=" + listId, "satl_record_id=" + satellite,
                "original_network_id=" + networkId, "transport_stream_id=" + streamId, "tsl_id=" + listId);
    }

    public Sample satellite(int id, String name, int position) {
        return add(Kind.SATELLITES, id, "name=" + name, "orbital_position=" + position);
    }

    public static Record record(Kind kind, int id) {
        return with(Record.of(kind, new byte[kind.recordBytes()]), "record_id=" + id);
    }

    public static Record with(Record record, String... values) {
        Record changed = record;
        for (String value : values) {
            String[] parts = value.split("=", 2);
            Field field = Layout.of(record.kind()).field(parts[0]).orElseThrow();
            changed = changed.with(field, parts[1]);
        }
        return changed;
    }

    public RecordList list(Kind kind) {
        return RecordList.of(kind, listId, "SAMPLE_" + listId, records.get(kind));
    }

    Companions companions() {
        return new Companions((kind, id) -> id == listId ? Optional.of(list(kind)) : Optional.empty());
    }

    Side side(Kind kind) {
        return new Side(list(kind), companions());
    }

    /** The same list without the lists to which it refers. */
    Side alone(Kind kind) {
        return new Side(list(kind), Companions.none());
    }

    /** A list whose records have few different identities and names, so that many of them match. */
    static Sample random(Kind kind, int listId, int size, Random random) {
        Sample sample = new Sample(listId);
        for (int i = 1; i <= 3; i++) {
            sample.satellite(i, "Sat " + i, random.nextInt(3));
            sample.stream(i, 1000 + random.nextInt(3), random.nextInt(2), 1 + random.nextInt(4), 1, random.nextInt(3));
        }
        List<Record> records = sample.records.get(kind);
        records.clear();
        for (int id = 1; id <= size; id++) {
            records.add(randomRecord(kind, id, listId, random));
        }
        return sample;
    }

    private static Record randomRecord(Kind kind, int id, int listId, Random random) {
        Record record = with(record(kind, id), "name=" + (random.nextBoolean() ? "" : "N" + random.nextInt(5)));
        return switch (kind) {
            case SERVICES -> with(record, "broadcast_type=" + random.nextInt(9), "tsl_id=" + listId,
                    "tsl_record_id=" + random.nextInt(5), "service_id=" + random.nextInt(6),
                    "network_mask=" + random.nextInt(4096), "channel_id=" + random.nextInt(99));
            case STREAMS -> with(record, "medium=" + random.nextInt(5), "frequency=" + random.nextInt(4),
                    "satl_id=" + listId, "satl_record_id=" + random.nextInt(5));
            case NETWORKS -> with(record, "network_id=" + random.nextInt(6), "version=" + random.nextInt(3));
            case SATELLITES -> with(record, "orbital_position=" + random.nextInt(6), "lnb_type=" + random.nextInt(3));
        };
    }

    private static String[] concat(String[] values, String... more) {
        List<String> all = new ArrayList<>(List.of(more));
        all.addAll(List.of(values));
        return all.toArray(String[]::new);
    }
}
