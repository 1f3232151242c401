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
import java.util.Locale;
import java.util.Optional;

/** The list kinds, as the commands list and show print them. */
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
            List<VltTvNetworkInfo> networks = VltTvNetworkList.getInstance().getAll(listId);
            return new Listing(networks.size(), (most, columns) -> NetworkTable.of(networks, most, columns));
        }

        // Networks are returned as objects, so there are no bytes to print.
        @Override
        public Optional<String> show(RecordId id, boolean hex) {
            return VltTvNetworkList.getInstance().get(id).map(NetworkTable::describe);
        }
    },

    SATELLITES(4, "satellite") {
        @Override
        public TvList lists() {
            return VltTvSatelliteList.getInstance();
        }

        @Override
        public Listing list(int listId) {
            List<VltTvSatelliteInfo> satellites = VltTvSatelliteList.getInstance().getAll(listId);
            return new Listing(satellites.size(), (most, columns) -> SatelliteTable.of(satellites, most, columns));
        }

        // Satellites are returned as objects too.
        @Override
        public Optional<String> show(RecordId id, boolean hex) {
            return VltTvSatelliteList.getInstance().get(id).map(SatelliteTable::describe);
        }
    };

    /** The table of a list and its number of records. */
    public record Listing(int size, Printer printer) {
        /** Formats the first {@code most} records in lines of at most {@code columns}. */
        public interface Printer {
            String table(int most, int columns);
        }
    }

    private final int number;
    private final String noun;

    Kind(int number, String noun) {
        this.number = number;
        this.noun = noun;
    }

    /** Returns the number of this kind in the list database. */
    public int number() {
        return number;
    }

    /** Returns what a record of this kind is called in messages. */
    public String noun() {
        return noun;
    }

    /** Returns the list class of this kind; loads the library. */
    public abstract TvList lists();

    /** Reads a list for its table. */
    public abstract Listing list(int listId);

    /** Returns one record, field by field; nothing if there is no such record. */
    public abstract Optional<String> show(RecordId id, boolean hex);

    /** Returns the value of the option --kind for this kind. */
    @Override
    public String toString() {
        return name().toLowerCase(Locale.ROOT);
    }
}
