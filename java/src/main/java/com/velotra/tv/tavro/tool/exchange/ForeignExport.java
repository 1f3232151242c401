package com.velotra.tv.tavro.tool.exchange;

import com.velotra.tv.tavro.services.channellist.BroadcastType;
import com.velotra.tv.tavro.services.channellist.OrbitalPosition;
import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import com.velotra.tv.tavro.tool.input.Place;
import com.velotra.tv.tavro.tool.input.Tally;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.services.ChannelsConfWriter;
import com.velotra.tv.tavro.tool.services.DvbV5Writer;
import com.velotra.tv.tavro.tool.services.Service;
import com.velotra.tv.tavro.tool.transponders.StreamTuning;
import com.velotra.tv.tavro.tool.transponders.Transponder;
import java.io.IOException;
import java.io.PrintStream;
import java.util.ArrayList;
import java.util.HashSet;
import java.util.List;
import java.util.Map;
import java.util.Optional;
import java.util.Set;

/** Exports in the formats of other programs, which cannot hold everything: it counts what they lose. */
public final class ForeignExport {
    // service_type (ETSI EN 300 468 table 87)
    private static final int TELEVISION = 1;
    private static final int RADIO = 2;

    // Flags that an import sets; the middleware adds the lowest bit.
    private static final long NEW_SERVICE = 0x20E;
    private static final long SCRAMBLED = 0x800;
    private static final long LCN_APPLIED = 0x20;

    private static final Set<String> IDENTIFIERS = Set.of("record_id", "tsl_id", "tsl_record_id", "nwl_id",
            "nwl_record_id", "satl_id", "satl_record_id");
    private static final Set<String> OF_SERVICE = Set.of("service_id", "name", "broadcast_type", "service_type",
            "network_mask", "option_mask", "channel_id", "lcn", "original_lcn", "dvb_sdt_service_type",
            "dvb_free_ca_mode", "short_name", "ca_system_id");

    private final StreamLookup lookup;
    private final Tally lost = new Tally("Not in the file, by field (number of records):");
    private final Tally leftOut = new Tally("Records that are not in the file, by reason:");

    public ForeignExport(StreamLookup lookup) {
        this.lookup = lookup;
    }

    /** Writes services as a channels.conf. */
    public void vdr(RecordList services, Appendable out) throws IOException {
        List<Service> converted = new ArrayList<>();
        for (Record record : services) {
            service(record, true).ifPresent(converted::add);
        }
        ChannelsConfWriter.write(converted, out, lost);
    }

    /** Writes services as a DVBv5 channel list, or transport streams as a DVBv5 scan table. */
    public void dvbV5(RecordList list, Appendable out) throws IOException {
        if (list.kind() == Kind.SERVICES) {
            dvbV5Services(list, out);
        } else {
            dvbV5Streams(list, out);
        }
    }

    private void dvbV5Services(RecordList services, Appendable out) throws IOException {
        List<Service> converted = new ArrayList<>();
        for (Record record : services) {
            service(record, false).ifPresent(service -> {
                converted.add(service);
                lose("short_name", !service.shortName().isEmpty());
                lose("ca_system_id", service.scrambled());
            });
        }
        countPositions(converted.stream().map(Service::transponder).toList());
        DvbV5Writer.writeServices(converted, out, lost);
    }

    private void dvbV5Streams(RecordList streams, Appendable out) throws IOException {
        Set<String> known = new HashSet<>(StreamTuning.fields());
        known.addAll(Set.of("record_id", "name", "satl_id", "satl_record_id", "tsl_id"));
        List<Transponder> converted = new ArrayList<>();
        for (Record record : streams) {
            transponder(record).ifPresent(transponder -> {
                converted.add(transponder);
                countOthers(record, known);
            });
        }
        countPositions(converted);
        DvbV5Writer.writeTransponders(converted, out, lost);
    }

    /** Prints what the file does not have; nothing if it has everything. */
    public void printLosses(PrintStream out) {
        leftOut.print(out);
        lost.print(out);
    }

    /** A file has one position, in its name. */
    private void countPositions(List<Transponder> transponders) {
        List<String> positions = transponders.stream().map(Transponder::position)
                .filter(position -> !position.isEmpty()).distinct().toList();
        if (positions.size() > 1) {
            transponders.stream().filter(transponder -> !transponder.position().isEmpty())
                    .forEach(transponder -> lost.count("position of the satellite"));
        }
    }

    private Optional<Transponder> transponder(Record stream) {
        Optional<Map<String, String>> values = StreamTuning.values(stream, lost::count);
        if (values.isEmpty()) {
            leftOut.count("no name in the format for its medium or standard, or no frequency");
        }
        String position = lookup.positionOf(stream).map(OrbitalPosition::toString).orElse("");
        return values.map(tuning -> new Transponder(new Place("", 0), StreamLookup.text(stream, "name"), position,
                tuning));
    }

    private Optional<Service> service(Record record, boolean needsPosition) {
        Optional<Record> stream = lookup.streamOf(record);
        if (stream.isEmpty()) {
            leftOut.count("no transport stream record");
            return Optional.empty();
        }
        Optional<Transponder> transponder = transponder(stream.get());
        if (transponder.isEmpty()) {
            return Optional.empty();
        }
        if (needsPosition && transponder.get().position().isEmpty()
                && transponder.get().values().get("DELIVERY_SYSTEM").startsWith("DVBS")) {
            leftOut.count("no satellite record for its transport stream");
            return Optional.empty();
        }
        Service service = service(new ServiceRecord(record.bytes()), transponder.get(), stream.get());
        countDifferences(record, service);
        Set<String> known = new HashSet<>(IDENTIFIERS);
        known.addAll(OF_SERVICE);
        countOthers(record, known);
        return Optional.of(service);
    }

    private static Service service(ServiceRecord record, Transponder transponder, Record stream) {
        boolean audio = record.serviceType() == RADIO || record.serviceType() == 5 || record.serviceType() == 8;
        return new Service(transponder.place(), record.name(), record.shortName(), transponder, !audio,
                record.scrambled() && record.caSystemId() != 0 ? List.of(record.caSystemId()) : List.of(),
                record.serviceId(), StreamLookup.number(stream, "original_network_id"),
                StreamLookup.number(stream, "transport_stream_id"), record.logicalChannelNumber());
    }

    /** Counts fields that an import would set to something else. */
    private void countDifferences(Record raw, Service service) {
        ServiceRecord record = new ServiceRecord(raw.bytes());
        int type = service.hasVideo() ? TELEVISION : RADIO;
        int number = service.number();
        lose("broadcast_type", record.broadcastType() != BroadcastType.DVB);
        lose("service_type", record.serviceType() != type);
        lose("dvb_sdt_service_type", record.sdtServiceType() != type);
        lose("network_mask", (StreamLookup.number(raw, "network_mask") & ~1)
                != (NEW_SERVICE | (service.scrambled() ? SCRAMBLED : 0)));
        lose("option_mask", StreamLookup.number(raw, "option_mask") != (number == 0 ? 0 : LCN_APPLIED));
        lose("channel_id", record.majorChannelNumber() != number);
        if (record.broadcastType() == BroadcastType.DVB) {
            lose("dvb_free_ca_mode", record.freeCaMode() != (service.scrambled() ? 1 : 0));
            lose("original_lcn", StreamLookup.number(raw, "original_lcn") != number);
        }
    }

    private void lose(String field, boolean isLost) {
        if (isLost) {
            lost.count(field);
        }
    }

    /** Counts the values of fields that the format does not have. */
    private void countOthers(Record record, Set<String> known) {
        Layout layout = Layout.of(record.kind());
        for (Field field : layout.fields(record)) {
            if (!known.contains(field.name()) && isSet(record, field)) {
                lost.count(field.name());
            }
        }
        lose(Columns.UNNAMED_BYTES, !layout.rest(record).isEmpty());
    }

    private static boolean isSet(Record record, Field field) {
        for (byte value : record.bytes(field.offset(), field.width())) {
            if (value != 0) {
                return true;
            }
        }
        return false;
    }
}
