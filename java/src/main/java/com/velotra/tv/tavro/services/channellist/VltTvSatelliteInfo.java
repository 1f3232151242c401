package com.velotra.tv.tavro.services.channellist;

/**
 * One satellite as the native side hands it out.
 *
 * <p>To change a satellite, hand an update a new {@link VltTvSatelliteInfoBase} with the identifier and the changed values
 * alone. Not every value survives being read and written back: an antenna type stands for several bytes of the record, and so
 * does a switch position.
 */
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
