package com.velotra.tv.tavro.tool.exchange;

import com.velotra.tv.tavro.services.channellist.BroadcastType;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.ServiceFlag;
import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import com.velotra.tv.tavro.services.channellist.TransportStreamRecord;
import com.velotra.tv.tavro.tool.output.AsciiControls;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.io.IOException;
import java.io.Writer;
import java.util.List;
import java.util.Optional;
import java.util.function.Function;
import org.apache.commons.csv.CSVPrinter;

/**
 * Services as rows of Android's {@code TvContract.Channels}. The names are those of its columns;
 * docs/tif-mapping.md has the rules.
 */
public final class TvInputChannels {
    private static final int SECOND_GENERATION = 2; // mode of T2, C2 and S2
    private static final int MINOR_SHIFT = 8;
    private static final int MINOR_BITS = 0xFF;
    private static final int TYPE_5_MAJOR_BITS = 0xFF;

    /** A service with the records that it refers to. */
    private record Channel(int listId, ServiceRecord service, Optional<TransportStreamRecord> stream, String network) {
        Object ofStream(Function<TransportStreamRecord, Integer> id) {
            return stream.<Object>map(id::apply).orElse("");
        }

        int has(ServiceFlag flag) {
            return service.has(flag) ? 1 : 0;
        }
    }

    /** A column; its value is a number or a text, and an empty text if there is none. */
    private record Column(String name, Function<Channel, Object> value) {}

    private static final List<Column> COLUMNS = List.of(
            new Column("type", TvInputChannels::type),
            new Column("service_type", channel -> serviceType(channel.service)),
            new Column("original_network_id", channel -> channel.ofStream(TransportStreamRecord::originalNetworkId)),
            new Column("transport_stream_id", channel -> channel.ofStream(TransportStreamRecord::transportStreamId)),
            new Column("service_id", channel -> channel.service.serviceId()),
            new Column("display_number", channel -> displayNumber(channel.service)),
            new Column("display_name", channel -> channel.service.name()),
            new Column("network_affiliation", Channel::network),
            new Column("browsable", channel -> channel.service.visible()
                    && !channel.service.has(ServiceFlag.DELETED_BY_USER) ? 1 : 0),
            new Column("searchable", channel -> channel.has(ServiceFlag.EPG)),
            new Column("locked", channel -> channel.has(ServiceFlag.CHANNEL_BLOCK)),
            new Column("internal_provider_data",
                    channel -> new RecordId(channel.listId, channel.service.recordId()).toString()));

    private TvInputChannels() {}

    /** Writes services as CSV with a row of column names. */
    public static void csv(RecordList services, StreamLookup lookup, Appendable out) throws IOException {
        CSVPrinter printer = new CSVPrinter(out, CsvWriter.FORMAT);
        printer.printRecord(COLUMNS.stream().map(Column::name).toList());
        for (Record record : services) {
            Channel channel = channel(services, record, lookup);
            for (Column column : COLUMNS) {
                printer.print(column.value.apply(channel));
            }
            printer.println();
        }
    }

    /** Writes services as a JSON array of objects, without the columns that have no value. */
    public static void json(RecordList services, StreamLookup lookup, Writer out) throws IOException {
        var json = new com.google.gson.stream.JsonWriter(new AsciiControls(out));
        json.setIndent("  ");
        json.beginArray();
        for (Record record : services) {
            Channel channel = channel(services, record, lookup);
            json.beginObject();
            for (Column column : COLUMNS) {
                Object value = column.value.apply(channel);
                if (value instanceof Number number) {
                    json.name(column.name).value(number);
                } else if (!value.equals("")) {
                    json.name(column.name).value(value.toString());
                }
            }
            json.endObject();
        }
        json.endArray();
        json.flush();
        out.write('\n');
    }

    private static Channel channel(RecordList services, Record record, StreamLookup lookup) {
        return new Channel(services.listId(), new ServiceRecord(record.bytes()),
                lookup.streamOf(record).map(stream -> new TransportStreamRecord(stream.bytes())),
                lookup.networkOf(record).map(network -> StreamLookup.text(network, "name")).orElse(""));
    }

    private static String type(Channel channel) {
        if (channel.service.broadcastType() == BroadcastType.DTMB) {
            return "TYPE_DTMB";
        }
        if (channel.stream.isEmpty() || channel.service.broadcastType() != BroadcastType.DVB) {
            return "TYPE_OTHER";
        }
        TransportStreamRecord stream = channel.stream.get();
        String generation = stream.mode() == SECOND_GENERATION ? "2" : "";
        return switch (stream.medium()) {
            case TransportStreamRecord.TERRESTRIAL -> "TYPE_DVB_T" + generation;
            case TransportStreamRecord.CABLE -> "TYPE_DVB_C" + generation;
            case TransportStreamRecord.SATELLITE -> "TYPE_DVB_S" + generation;
            default -> "TYPE_OTHER";
        };
    }

    private static String serviceType(ServiceRecord service) {
        return switch (service.serviceType()) {
            case 1, 4, 7 -> "SERVICE_TYPE_AUDIO_VIDEO";
            case 2, 5, 8 -> "SERVICE_TYPE_AUDIO";
            default -> "SERVICE_TYPE_OTHER";
        };
    }

    /** Returns the logical channel number, or else the numbers in the channel id. */
    private static String displayNumber(ServiceRecord service) {
        if (service.logicalChannelNumber() != 0) {
            return Integer.toString(service.logicalChannelNumber());
        }
        if (service.broadcastType() == BroadcastType.TYPE_5) {
            long major = service.channelId() >>> 18 & TYPE_5_MAJOR_BITS;
            return major == 0 ? "" : major + "-" + (service.channelId() >>> MINOR_SHIFT & MINOR_BITS);
        }
        return service.majorChannelNumber() == 0 ? "" : Integer.toString(service.majorChannelNumber());
    }
}
