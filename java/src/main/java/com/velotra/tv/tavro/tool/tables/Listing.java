package com.velotra.tv.tavro.tool.tables;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.records.Kind;
import java.util.Optional;

/** Records field by field. */
public final class Listing {
    private Listing() {}

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
