package com.velotra.tv.tavro.services.channellist;

/**
 * One satellite as the natives return it.
 *
 * <p>To change a satellite, pass an update a new object ({@link #forRecord}) with the changed values alone: not every
 * value survives being read and written back. An antenna type stands for several bytes of the record, and so does a
 * switch position.
 */
public class VltTvSatelliteInfo extends VltTvSatelliteInfoBase {
    /** Creates a satellite without values. Called by the natives. */
    public VltTvSatelliteInfo() {}

    /**
     * Takes over the values of {@code base} and removes them there. Called by the natives, which fill the same object
     * for the next satellite of a list: a value that the next one does not have must not be that of this one.
     */
    public void satlToSatelliteInfo(VltTvSatelliteInfoBase base) {
        copyFrom(base);
        base.copyFrom(new VltTvSatelliteInfoBase());
    }
}
