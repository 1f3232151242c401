package com.velotra.tv.tavro.services.channellist;

/** One satellite as the native side hands it out. */
public class VltTvSatelliteInfo {
    private final VltTvSatelliteInfoBase values = new VltTvSatelliteInfoBase();

    /** Copies the values that the native side has filled in; it goes on to fill the same object for the next satellite. */
    public void satlToSatelliteInfo(VltTvSatelliteInfoBase base) {
        values.copyFrom(base);
    }

    /**
     * The values. In a list read by keys, those of other keys are not this satellite's.
     *
     * @see VltTvSatelliteList#getAll
     */
    public VltTvSatelliteInfoBase values() {
        return values;
    }

    /** The record's identifier. */
    public RecordId id() {
        return RecordId.parse(values.RecId);
    }
}
