package com.velotra.tv.tavro.tool.editing;

import com.velotra.tv.tavro.services.channellist.KeyedValues;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.records.Kind;

/** The Java objects of the four kinds, and the natives that take them. */
final class NativeObjects {
    private NativeObjects() {}

    /** Returns an object without values for a new record. */
    static KeyedValues empty(Kind kind) {
        return switch (kind) {
            case SERVICES -> new VltTvChannelInfoBase();
            case STREAMS -> new VltTvTransportStreamInfoBase();
            case NETWORKS -> new VltTvNetworkInfoBase();
            case SATELLITES -> new VltTvSatelliteInfoBase();
        };
    }

    /** Returns an object without values for an update of a record. */
    static KeyedValues forRecord(Kind kind, RecordId id) {
        return switch (kind) {
            case SERVICES -> VltTvChannelInfoBase.forRecord(id);
            case STREAMS -> VltTvTransportStreamInfoBase.forRecord(id);
            case NETWORKS -> VltTvNetworkInfoBase.forRecord(id);
            case SATELLITES -> VltTvSatelliteInfoBase.forRecord(id);
        };
    }

    /** Updates the record that the object is for. */
    static void update(int listId, KeyedValues object) {
        if (object instanceof VltTvChannelInfoBase service) {
            VltTvChannelList.getInstance().update(listId, service);
        } else if (object instanceof VltTvTransportStreamInfoBase stream) {
            VltTvTransportStreamList.getInstance().update(listId, stream);
        } else if (object instanceof VltTvNetworkInfoBase network) {
            VltTvNetworkList.getInstance().update(listId, network);
        } else {
            VltTvSatelliteList.getInstance().update((VltTvSatelliteInfoBase) object);
        }
    }

    /** Adds a record and returns its identifier. */
    static RecordId add(int listId, KeyedValues object) {
        if (object instanceof VltTvChannelInfoBase service) {
            return VltTvChannelList.getInstance().add(listId, service);
        } else if (object instanceof VltTvTransportStreamInfoBase stream) {
            return VltTvTransportStreamList.getInstance().add(listId, stream);
        } else if (object instanceof VltTvNetworkInfoBase network) {
            return VltTvNetworkList.getInstance().add(listId, network);
        }
        return VltTvSatelliteList.getInstance().add(listId, (VltTvSatelliteInfoBase) object);
    }
}
