package com.velotra.tv.tavro.tool.listing;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.RecordView;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.util.EnumSet;
import java.util.List;
import java.util.Set;

/**
 * Selects the records of a list by the record or number that they refer to: through the native that filters by it, or,
 * where there is none, by reading the list.
 */
public abstract class Filter {
    private final Set<Kind> kinds;

    private Filter(Kind first, Kind... others) {
        kinds = EnumSet.of(first, others);
    }

    /** Returns the kinds of list whose records it selects. */
    public Set<Kind> kinds() {
        return kinds;
    }

    /** Reads the records of a list that it selects, in list order. */
    public abstract List<Record> read(Kind kind, int listId, References references);

    /** Services of a transport stream record. */
    public static Filter byStream(RecordId stream) {
        return new Filter(Kind.SERVICES) {
            @Override
            public List<Record> read(Kind kind, int listId, References references) {
                return stream.listId() == listId
                        ? records(kind, VltTvChannelList.getInstance().byTransportStreamRecord(stream))
                        : readIf(kind, listId, references, equal(kind, "stream_record", stream));
            }
        };
    }

    /** Services whose transport stream has a transport_stream_id. */
    public static Filter byTransportStreamId(int id) {
        return new Filter(Kind.SERVICES) {
            @Override
            public List<Record> read(Kind kind, int listId, References references) {
                return haveLists(Kind.STREAMS, "tsl_id", listId, references)
                        ? records(kind, VltTvChannelList.getInstance().byTransportStream(listId, id))
                        : readIf(kind, listId, references, equal(kind, "transport_stream_id", id));
            }
        };
    }

    /** Services whose network record has a network_id, and transport streams with it. */
    public static Filter byNetwork(int id) {
        Column networkId = Columns.of(Kind.NETWORKS).get("network_id").orElseThrow();
        return new Filter(Kind.SERVICES, Kind.STREAMS) {
            @Override
            public List<Record> read(Kind kind, int listId, References references) {
                if (kind == Kind.STREAMS) {
                    return readIf(kind, listId, references, equal(kind, "network_id", id));
                }
                return haveLists(Kind.NETWORKS, "nwl_id", listId, references)
                        ? records(kind, VltTvChannelList.getInstance().byNetwork(listId, id))
                        : readIf(kind, listId, references, (service, all) -> {
                            Record network = ServiceColumns.ownNetwork(service, all);
                            return network != null && networkId.number(network, all) == id;
                        });
            }
        };
    }

    /** Transport streams of a satellite record, and services of it. */
    public static Filter bySatellite(RecordId satellite) {
        return new Filter(Kind.STREAMS, Kind.SERVICES) {
            @Override
            public List<Record> read(Kind kind, int listId, References references) {
                return kind == Kind.STREAMS && satellite.listId() == listId
                        ? records(kind, VltTvTransportStreamList.getInstance().bySatellite(satellite))
                        : readIf(kind, listId, references, equal(kind, "satellite_record", satellite));
            }
        };
    }

    /** Transport streams, services and satellites of an orbital position in tenths of a degree. */
    public static Filter byPosition(int tenths) {
        return new Filter(Kind.STREAMS, Kind.SERVICES, Kind.SATELLITES) {
            @Override
            public List<Record> read(Kind kind, int listId, References references) {
                return readIf(kind, listId, references, equal(kind, "position", tenths));
            }
        };
    }

    /** The natives try to create the lists that services refer to. A command that only reads cannot. */
    private static boolean haveLists(Kind kind, String field, int listId, References references) {
        Column list = Columns.of(Kind.SERVICES).get(field).orElseThrow();
        return StoredLists.read(Kind.SERVICES, listId).stream()
                .mapToInt(service -> (int) list.number(service, references))
                .distinct()
                .allMatch(id -> id == 0 || references.list(kind, id).isPresent());
    }

    private static Condition equal(Kind kind, String column, RecordId id) {
        Column reference = Columns.of(kind).get(column).orElseThrow();
        String text = id.toString();
        return (record, references) -> text.equals(reference.text(record, references));
    }

    private static Condition equal(Kind kind, String column, long number) {
        Column of = Columns.of(kind).get(column).orElseThrow();
        return (record, references) -> of.number(record, references) == number;
    }

    private static List<Record> readIf(Kind kind, int listId, References references, Condition condition) {
        return StoredLists.read(kind, listId).stream().filter(record -> condition.test(record, references)).toList();
    }

    private static List<Record> records(Kind kind, List<? extends RecordView<?>> views) {
        return views.stream().map(view -> Record.of(kind, view.bytes())).toList();
    }
}
