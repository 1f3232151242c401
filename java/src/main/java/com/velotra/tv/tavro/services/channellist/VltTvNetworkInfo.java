package com.velotra.tv.tavro.services.channellist;

/**
 * One network as the natives return it.
 *
 * <p>To change a network, pass an update a new object ({@link #forRecord}) with the changed values alone.
 */
public class VltTvNetworkInfo extends VltTvNetworkInfoBase {
    /** Creates a network without values. Called by the natives. */
    public VltTvNetworkInfo() {}

    /** Takes over the values of {@code base}. Called by the natives. */
    public void nwlToNetworkInfo(VltTvNetworkInfoBase base) {
        copyFrom(base);
    }
}
