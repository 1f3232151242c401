package com.velotra.tv.tavro.tool.tables;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import com.velotra.tv.tavro.services.channellist.TransportStreamRecord;
import com.velotra.tv.tavro.services.channellist.TvList;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkInfo;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfo;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import java.util.List;
import java.util.Optional;

/** The kinds of list that the tool shows. */
public enum Kind {
    SERVICES(1, "service") {
        @Override
        public TvList lists() {
            return VltTvChannelList.getInstance();
        }

        @Override
        public Listing list(int listId) {
            List<ServiceRecord> services = VltTvChannelList.getInstance().getAll(listId);
            return new Listing(services.size(), (most, columns) -> ServiceTable.of(services, most, columns));
        }

        @Override
        public Optional<String> show(RecordId id, boolean hex) {
            return VltTvChannelList.getInstance().get(id).map(service -> service.describe(hex));
        }
    },

    STREAMS(2, "transport stream") {
        @Override
        public TvList lists() {
            return VltTvTransportStreamList.getInstance();
        }

        @Override
        public Listing list(int listId) {
            List<TransportStreamRecord> streams = VltTvTransportStreamList.getInstance().getAll(listId);
            return new Listing(streams.size(), (most, columns) -> StreamTable.of(streams, most, columns));
        }

        @Override
        public Optional<String> show(RecordId id, boolean hex) {
            return VltTvTransportStreamList.getInstance().get(id).map(stream -> stream.describe(hex));
        }
    },

    NETWORKS(3, "network") {
        @Override
        public TvList lists() {
            return VltTvNetworkList.getInstance();
        }

        @Override
        public Listing list(int listId) {
            List<VltTvNetworkInfo> networks = VltTvNetworkList.getInstance().getAll(listId, null);
            return new Listing(networks.size(), (most, columns) -> NetworkTable.of(networks, most, columns));
        }

        // Networks leave the library as objects: there are no bytes to dump.
        @Override
        public Optional<String> show(RecordId id, boolean hex) {
            return VltTvNetworkList.getInstance().get(id, null).map(NetworkTable::describe);
        }
    },

    SATELLITES(4, "satellite") {
        @Override
        public TvList lists() {
            return VltTvSatelliteList.getInstance();
        }

        @Override
        public Listing list(int listId) {
            List<VltTvSatelliteInfo> satellites = VltTvSatelliteList.getInstance().getAll(listId, null);
            return new Listing(satellites.size(), (most, columns) -> SatelliteTable.of(satellites, most, columns));
        }

        // Satellites leave the library as objects too.
        @Override
        public Optional<String> show(RecordId id, boolean hex) {
            return VltTvSatelliteList.getInstance().get(id, null).map(SatelliteTable::describe);
        }
    };

    /** The table of a list, and how many records it has. */
    public record Listing(int size, Printer printer) {
        /** Prints the first {@code most} records, no line wider than {@code columns}. */
        public interface Printer {
            String table(int most, int columns);
        }
    }

    /** In the list database. */
    public final int number;
    public final String one;

    Kind(int number, String one) {
        this.number = number;
        this.one = one;
    }

    /** The class of the lists of this kind, with the library loaded. */
    public abstract TvList lists();

    public abstract Listing list(int listId);

    /** One record field by field; empty when there is no such record. */
    public abstract Optional<String> show(RecordId id, boolean hex);

    /** As an option's value. */
    @Override
    public String toString() {
        return name().toLowerCase(java.util.Locale.ROOT);
    }
}
