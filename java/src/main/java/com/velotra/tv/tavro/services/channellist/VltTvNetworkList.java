package com.velotra.tv.tavro.services.channellist;

/** The network lists. The library looks this class up when it is loaded; its natives come with their bridge. */
public final class VltTvNetworkList {
    private VltTvNetworkList() {}
}
