package com.velotra.tv.tavro.tool.tables;

import com.velotra.tv.tavro.services.channellist.NetworkFlag;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkInfo;
import com.velotra.tv.tavro.tool.output.Table;
import java.util.List;

/** Networks as a table, one per row. */
public final class NetworkTable {
    private NetworkTable() {}

    /** Formats the first {@code most} networks of a list in lines of at most {@code columns}. */
    public static String of(List<VltTvNetworkInfo> networks, int most, int columns) {
        Table table = new Table(">record", ">network id", "name", ">version", "favorite", "candidate");
        for (VltTvNetworkInfo network : networks.subList(0, Math.min(most, networks.size()))) {
            table.add(
                    network.id().recordId(),
                    network.getNwlNetworkId(),
                    network.getNetworkName(),
                    network.getNetworkVersion(),
                    network.has(NetworkFlag.FAVORITE) ? "yes" : "no",
                    network.has(NetworkFlag.FAVORITE_CANDIDATE) ? "yes" : "no");
        }
        return table.toString(columns) + Table.more(networks.size() - most);
    }

    /** Formats one network, one line per field. */
    static String describe(VltTvNetworkInfo network) {
        return String.format(
                "record %25s%nnetwork id %21s%nname %27s%nversion %24s%nfavorite %23s%ncandidate %22s%n",
                network.id(), network.getNwlNetworkId(), '"' + network.getNetworkName() + '"',
                network.getNetworkVersion(), network.getNwlFavNetwork(), network.getNwlFavNetworkCandidate());
    }
}
