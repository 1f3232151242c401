package com.velotra.tv.tavro.tool.tables;

import com.velotra.tv.tavro.services.channellist.VltTvNetworkInfo;

/** Networks as text. */
public final class NetworkTable {
    private NetworkTable() {}

    /** Formats one network, one line per field. */
    static String describe(VltTvNetworkInfo network) {
        return String.format(
                "record %25s%nnetwork id %21s%nname %27s%nversion %24s%nfavorite %23s%ncandidate %22s%n",
                network.id(), network.getNwlNetworkId(), '"' + network.getNetworkName() + '"',
                network.getNetworkVersion(), network.getNwlFavNetwork(), network.getNwlFavNetworkCandidate());
    }
}
