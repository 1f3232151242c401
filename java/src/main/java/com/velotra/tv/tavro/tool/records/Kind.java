package com.velotra.tv.tavro.tool.records;

import com.velotra.tv.tavro.services.channellist.ListKind;
import com.velotra.tv.tavro.services.channellist.NetworkField;
import com.velotra.tv.tavro.services.channellist.RecordField;
import com.velotra.tv.tavro.services.channellist.SatelliteField;
import com.velotra.tv.tavro.services.channellist.ServiceField;
import com.velotra.tv.tavro.services.channellist.TransportStreamField;
import com.velotra.tv.tavro.services.channellist.TvList;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import java.util.Locale;
import java.util.function.Supplier;

/** The list kinds, as the commands name them. */
public enum Kind {
    SERVICES(ListKind.SERVICE, "svl", 1, 552, ServiceField.RECORD_ID, VltTvChannelList::getInstance),
    STREAMS(ListKind.TRANSPORT_STREAM, "tsl", 2, 724, TransportStreamField.RECORD_ID,
            VltTvTransportStreamList::getInstance),
    NETWORKS(ListKind.NETWORK, "nwl", 3, 304, NetworkField.RECORD_ID, VltTvNetworkList::getInstance),
    SATELLITES(ListKind.SATELLITE, "satl", 4, 412, SatelliteField.RECORD_ID, VltTvSatelliteList::getInstance);

    private final ListKind listKind;
    private final String code;
    private final int number;
    private final int recordBytes;
    private final int idOffset;
    private final Supplier<TvList> lists;

    Kind(ListKind listKind, String code, int number, int recordBytes, RecordField recordId, Supplier<TvList> lists) {
        this.listKind = listKind;
        this.code = code;
        this.number = number;
        this.recordBytes = recordBytes;
        this.idOffset = recordId.offset();
        this.lists = lists;
    }

    /** Returns the short name in file names and in list files, such as "svl". */
    public String code() {
        return code;
    }

    /** Returns the number of this kind in the list database. */
    public int number() {
        return number;
    }

    /** Returns what a record of this kind is called in messages, such as "transport stream". */
    public String noun() {
        return listKind.recordName();
    }

    /** Returns the size of a record. */
    public int recordBytes() {
        return recordBytes;
    }

    /** Returns the offset of the 16-bit record id in a record. */
    public int idOffset() {
        return idOffset;
    }

    /** Returns the list class of this kind; loads the library. */
    public TvList lists() {
        return lists.get();
    }

    /** Returns the value of the option --kind for this kind. */
    @Override
    public String toString() {
        return name().toLowerCase(Locale.ROOT);
    }
}
