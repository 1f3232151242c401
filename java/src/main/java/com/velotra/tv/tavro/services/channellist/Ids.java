package com.velotra.tv.tavro.services.channellist;

import java.util.Objects;
import java.util.stream.Stream;

/**
 * Checks of the ids that callers pass in. The natives keep the low 16 bits of a number, so an id out of range would
 * name another list or record.
 *
 * <p>Each check returns its argument, or throws an {@link IllegalArgumentException} that names the id and its range.
 */
final class Ids {
    private static final int HIGHEST = 0xFFFF;
    private static final int HIGHEST_RECORD = HIGHEST - 1;
    private static final int LOWEST_LIST = 1;

    private Ids() {}

    /** A list id: 0 stands for no list. */
    static int list(int id) {
        return inRange(id, LOWEST_LIST, HIGHEST, "list");
    }

    /** A record id: 65535 stands for no record. */
    static int record(int id) {
        return inRange(id, 0, HIGHEST_RECORD, "record");
    }

    /** Both parts of a record's identifier, as text for the natives. */
    static String text(RecordId id) {
        list(id.listId());
        record(id.recordId());
        return id.toString();
    }

    /** transport_stream_id (ETSI EN 300 468). */
    static int transportStream(int id) {
        return inRange(id, 0, HIGHEST, "transport stream");
    }

    /** network_id (ETSI EN 300 468). */
    static int network(int id) {
        return inRange(id, 0, HIGHEST, "network");
    }

    /**
     * Checks identifiers in text form whose record part names a record; the list part may be 0. Natives cannot parse a
     * malformed one: they would leave a list half updated and locked, or end the process. Null is passed through to the
     * native.
     */
    static void checkRecords(Stream<String> identifiers) {
        parsed(identifiers).forEach(id -> {
            inRange(id.listId(), 0, HIGHEST, "list");
            record(id.recordId());
        });
    }

    /**
     * Checks identifiers that refer to other records: both parts have 16 bits, and 0,0 stands for none. Null is passed
     * through.
     */
    static void checkReferences(Stream<String> identifiers) {
        parsed(identifiers).forEach(id -> {
            inRange(id.listId(), 0, HIGHEST, "list");
            inRange(id.recordId(), 0, HIGHEST, "record");
        });
    }

    private static Stream<RecordId> parsed(Stream<String> identifiers) {
        return identifiers.filter(Objects::nonNull).map(RecordId::parse);
    }

    /** Checks identifiers of which both parts name a record. Null is passed through. */
    static void checkWhole(Stream<String> identifiers) {
        parsed(identifiers).forEach(Ids::text);
    }

    /** Whether a list may have that record: both numbers are in range. */
    static boolean nameARecord(RecordId id) {
        return isIn(id.listId(), LOWEST_LIST, HIGHEST) && isIn(id.recordId(), 0, HIGHEST_RECORD);
    }

    private static boolean isIn(int id, int lowest, int highest) {
        return id >= lowest && id <= highest;
    }

    private static int inRange(int id, int lowest, int highest, String kind) {
        if (!isIn(id, lowest, highest)) {
            throw new IllegalArgumentException(
                    kind + " id " + id + " is out of range; " + kind + " ids are " + lowest + " to " + highest);
        }
        return id;
    }
}
