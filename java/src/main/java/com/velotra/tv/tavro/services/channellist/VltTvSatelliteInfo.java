package com.velotra.tv.tavro.services.channellist;

/** One satellite as the native side hands it out. It can be changed and handed to an update. */
public class VltTvSatelliteInfo extends VltTvSatelliteInfoBase {
    /** Copies the values that the native side has filled in; it goes on to fill the same object for the next satellite. */
    public void satlToSatelliteInfo(VltTvSatelliteInfoBase base) {
        copyFrom(base);
    }

    /**
     * The values, as networks have them. In a list read by keys, those of other keys are not this satellite's.
     *
     * @see VltTvSatelliteList#getAll
     */
    public VltTvSatelliteInfoBase values() {
        return this;
    }

    /** The record's identifier, or null before there is one. */
    public RecordId id() {
        return RecId == null ? null : RecordId.parse(RecId);
    }
}
