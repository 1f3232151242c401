package com.velotra.tv.tavro.tool.services;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkInfo;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.tool.input.ImportReport;
import com.velotra.tv.tavro.tool.input.ListCounts;
import java.util.HashMap;
import java.util.HashSet;
import java.util.Map;
import java.util.Set;

/**
 * The network records that services and transport streams refer to: one per network id and list, added when it is first
 * needed.
 */
final class Networks {
    private final VltTvNetworkList lists;
    private final ImportReport report;
    private final Map<Integer, Map<Integer, RecordId>> records = new HashMap<>(); // by list id, then by network id

    private final Set<RecordId> found = new HashSet<>(); // existed before this import, which does not refer to them yet

    Networks(VltTvNetworkList lists, ImportReport report) {
        this.lists = lists;
        this.report = report;
    }

    /** Returns the record of a network; adds it if the list has none. An existing record is not changed. */
    RecordId of(int listId, int networkId) {
        Map<Integer, RecordId> known = records.computeIfAbsent(listId, this::read);
        if (found.remove(known.get(networkId))) {
            counts(listId).updated(known.get(networkId).recordId(), false);
        }
        return known.computeIfAbsent(networkId, id -> {
            VltTvNetworkInfoBase info = new VltTvNetworkInfoBase();
            info.setNwlNetworkId(id);
            info.setNetworkName("Network " + id);
            counts(listId).added();
            return lists.add(listId, info);
        });
    }

    private ListCounts counts(int listId) {
        return report.list(
                "network list " + listId, () -> lists.exists(listId) ? lists.getAll(listId).size() : -1);
    }

    private Map<Integer, RecordId> read(int listId) {
        lists.open(listId);
        Map<Integer, RecordId> byNetwork = new HashMap<>();
        for (VltTvNetworkInfo network : lists.getAll(listId)) {
            byNetwork.putIfAbsent(network.getNwlNetworkId(), network.id());
        }
        found.addAll(byNetwork.values());
        return byNetwork;
    }
}
