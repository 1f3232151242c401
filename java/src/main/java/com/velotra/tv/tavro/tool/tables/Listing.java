package com.velotra.tv.tavro.tool.tables;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import com.velotra.tv.tavro.services.channellist.TransportStreamRecord;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkInfo;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfo;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.records.Kind;
import java.util.List;
import java.util.Optional;

/** The table of a list and its number of records. */
public record Listing(int size, Printer printer) {
    /** Formats the first {@code most} records in lines of at most {@code columns}. */
    public interface Printer {
        String table(int most, int columns);
    }

    /** Reads a list for its table. */
    public static Listing of(Kind kind, int listId) {
        switch (kind) {
            case SERVICES -> {
                List<ServiceRecord> services = VltTvChannelList.getInstance().getAll(listId);
                return new Listing(services.size(), (most, columns) -> ServiceTable.of(services, most, columns));
            }
            case STREAMS -> {
                List<TransportStreamRecord> streams = VltTvTransportStreamList.getInstance().getAll(listId);
                return new Listing(streams.size(), (most, columns) -> StreamTable.of(streams, most, columns));
            }
            case NETWORKS -> {
                List<VltTvNetworkInfo> networks = VltTvNetworkList.getInstance().getAll(listId);
                return new Listing(networks.size(), (most, columns) -> NetworkTable.of(networks, most, columns));
            }
            default -> {
                List<VltTvSatelliteInfo> satellites = VltTvSatelliteList.getInstance().getAll(listId);
                return new Listing(satellites.size(), (most, columns) -> SatelliteTable.of(satellites, most, columns));
            }
        }
    }

    /** Returns one record, field by field; nothing if there is no such record. */
    public static Optional<String> show(Kind kind, RecordId id, boolean hex) {
        return switch (kind) {
            case SERVICES -> VltTvChannelList.getInstance().get(id).map(service -> service.describe(hex));
            case STREAMS -> VltTvTransportStreamList.getInstance().get(id).map(stream -> stream.describe(hex));
            // Networks and satellites are returned as objects, so there are no bytes to print.
            case NETWORKS -> VltTvNetworkList.getInstance().get(id).map(NetworkTable::describe);
            case SATELLITES -> VltTvSatelliteList.getInstance().get(id).map(SatelliteTable::describe);
        };
    }
}
