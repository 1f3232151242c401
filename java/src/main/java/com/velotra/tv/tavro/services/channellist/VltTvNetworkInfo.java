package com.velotra.tv.tavro.services.channellist;

/** One network as the native side hands it out; values that were not asked for have no key. */
public class VltTvNetworkInfo {
    private VltTvNetworkInfoBase values = new VltTvNetworkInfoBase();

    /** Takes over the values that the native side has filled in. */
    public void nwlToNetworkInfo(VltTvNetworkInfoBase base) {
        values = base;
    }

    /** The values. */
    public VltTvNetworkInfoBase values() {
        return values;
    }

    /** The record's identifier, when it was asked for; else null. */
    public RecordId id() {
        return values.NwlIdNwlRecId == null ? null : RecordId.parse(values.NwlIdNwlRecId);
    }
}
