package com.velotra.tv.tavro.tool.matching;

import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.Optional;

/**
 * What records of one side stand for, as keys for {@link Pairing}. Equal keys are the same service, transport stream,
 * network or satellite. A key is null if it cannot be known.
 */
final class Identity {
    private static final Field SERVICE_ID = Fields.of(Kind.SERVICES, "service_id");
    private static final Field ORIGINAL_NETWORK_ID = Fields.of(Kind.STREAMS, "original_network_id");
    private static final Field TRANSPORT_STREAM_ID = Fields.of(Kind.STREAMS, "transport_stream_id");
    private static final Field MEDIUM = Fields.of(Kind.STREAMS, "medium");
    private static final Field FREQUENCY = Fields.of(Kind.STREAMS, "frequency");
    private static final Field POLARIZATION = Fields.of(Kind.STREAMS, "sat_polarization");
    private static final Field NETWORK_ID = Fields.of(Kind.NETWORKS, "network_id");
    private static final Field POSITION = Fields.of(Kind.SATELLITES, "orbital_position");

    private final Companions companions;
    private final Map<Long, StreamKeys> streams = new HashMap<>(); // by reference

    /** Keys of a transport stream: what it carries, where it is received; null for what is not known. */
    private record StreamKeys(String ids, String place) {
        static final StreamKeys UNKNOWN = new StreamKeys(null, null);
    }

    Identity(Side side) {
        companions = side.companions();
    }

    /** Original network id, transport stream id and service id. The ids 0 and 0 are not known ones. */
    String service(Record service) {
        String ids = streamOf(service).ids;
        return ids == null ? null : ids + "-" + SERVICE_ID.number(service);
    }

    /** Service id, and where its transport stream is received. */
    String serviceByPlace(Record service) {
        String place = streamOf(service).place;
        return place == null ? null : place + " " + SERVICE_ID.number(service);
    }

    /** The best key of a service that does not depend on the numbers of records. */
    String anyOfService(Record service) {
        String best = service(service);
        return best == null ? serviceByPlace(service) : best;
    }

    /** Service id, and the number of the record of its transport stream. */
    String serviceByReference(Record service) {
        return number(Reference.STREAM_OF_SERVICE, service) + " " + SERVICE_ID.number(service);
    }

    private StreamKeys streamOf(Record service) {
        return streams.computeIfAbsent(number(Reference.STREAM_OF_SERVICE, service), number ->
                companions.find(Reference.STREAM_OF_SERVICE, service)
                        .map(stream -> new StreamKeys(streamIds(stream), stream(stream)))
                        .orElse(StreamKeys.UNKNOWN));
    }

    /** Original network id and transport stream id, unless both are 0. */
    String streamIds(Record stream) {
        long network = ORIGINAL_NETWORK_ID.number(stream);
        long id = TRANSPORT_STREAM_ID.number(stream);
        return network == 0 && id == 0 ? null : network + "-" + id;
    }

    /** Medium and frequency; of a satellite, polarization and orbital position, too. */
    String stream(Record stream) {
        if (!POLARIZATION.in(stream)) {
            return onMedium(stream);
        }
        Optional<Record> satellite = companions.find(Reference.SATELLITE_OF_STREAM, stream);
        return satellite.map(of -> onMedium(stream) + " at " + POSITION.number(of)).orElse(null);
    }

    /** The same, with the number of the satellite's record in place of its position. */
    String streamByReference(Record stream) {
        return onMedium(stream)
                + (POLARIZATION.in(stream) ? " of " + number(Reference.SATELLITE_OF_STREAM, stream) : "");
    }

    private static String onMedium(Record stream) {
        return MEDIUM.number(stream) + " " + FREQUENCY.number(stream)
                + (POLARIZATION.in(stream) ? " " + POLARIZATION.number(stream) : "");
    }

    Object network(Record network) {
        return NETWORK_ID.number(network);
    }

    Object satellite(Record satellite) {
        return POSITION.number(satellite);
    }

    private static long number(Reference reference, Record from) {
        return (long) reference.listId(from) << 16 | reference.recordId(from);
    }

    /** The name, which is null if it is empty. */
    static String name(Record record) {
        String name = Fields.NAME.get(record.kind()).format(record);
        return name.isEmpty() ? null : name;
    }

    /** Two keys in one; null if one of them is. */
    static Object both(Object one, Object other) {
        return one == null || other == null ? null : List.of(one, other);
    }
}
