package com.velotra.tv.tavro.services.channellist;

/** The satellite lists. The library looks this class up when it is loaded; its natives come with their bridge. */
public final class VltTvSatelliteList {
    private VltTvSatelliteList() {}
}
