package com.velotra.tv.tavro.tool.services;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import com.velotra.tv.tavro.services.channellist.TransportStreamRecord;
import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.input.ImportReport;
import com.velotra.tv.tavro.tool.input.ListCounts;
import com.velotra.tv.tavro.tool.transponders.ListIds;
import com.velotra.tv.tavro.tool.transponders.NotImportable;
import com.velotra.tv.tavro.tool.transponders.StreamImport.Ids;
import com.velotra.tv.tavro.tool.transponders.StreamImport.Stored;
import java.nio.file.Path;
import java.util.HashMap;
import java.util.HashSet;
import java.util.LinkedHashMap;
import java.util.Map;
import java.util.Optional;
import java.util.Set;
import java.util.function.Function;

/**
 * One service list during an import. Finds the record of a service by original network id, transport stream id and
 * service id; if those ids are not known, by transport stream record and service id.
 */
final class ServiceList {
    private record ByIds(Ids ids, int serviceId) {}

    private record ByStream(int streamRecord, int serviceId) {}

    private final VltTvChannelList lists;
    private final int id;
    private final ListCounts counts;
    private final Map<ByIds, RecordId> byIds = new HashMap<>(); // services whose ids are known
    private final Map<ByStream, RecordId> byStream = new HashMap<>();
    private final Set<RecordId> stored = new HashSet<>(); // by this import
    private final Map<Integer, RecordId> networkBefore = new HashMap<>(); // by record id; existing services only
    private final Map<Integer, RecordId> networks = new LinkedHashMap<>(); // to be written, by record id
    private int size;

    /** Opens and reads the list. */
    ServiceList(VltTvChannelList lists, VltTvTransportStreamList streamLists, int id, ImportReport report) {
        this.lists = lists;
        this.id = id;
        lists.open(id);
        counts = report.list("service list " + id, () -> lists.exists(id)
                ? lists.getAllBytes(id).length / ServiceRecord.SIZE : -1);
        Map<RecordId, Ids> streams = new HashMap<>();
        for (TransportStreamRecord stream : streamLists.getAll(id)) {
            streams.put(new RecordId(id, stream.recordId()),
                    new Ids(stream.originalNetworkId(), stream.transportStreamId()));
        }
        for (ServiceRecord service : lists.getAll(id)) {
            RecordId stream = service.transportStream();
            add(new RecordId(id, service.recordId()), streams.getOrDefault(stream, Ids.NONE), stream.recordId(),
                    service.serviceId());
            networkBefore.put(service.recordId(), service.network());
        }
    }

    private void add(RecordId service, Ids ids, int streamRecord, int serviceId) {
        if (!ids.equals(Ids.NONE)) {
            byIds.putIfAbsent(new ByIds(ids, serviceId), service);
        }
        byStream.putIfAbsent(new ByStream(streamRecord, serviceId), service);
        size++;
    }

    int id() {
        return id;
    }

    /**
     * Adds or updates a service. Returns its record; null if this import has already stored the service.
     *
     * @param values returns the values to store, given the existing record
     */
    RecordId store(int serviceId, Stored stream, Function<Optional<ServiceRecord>, VltTvChannelInfoBase> values)
            throws NotImportable {
        int streamRecord = stream.id().recordId();
        RecordId known = byIds.get(new ByIds(stream.ids(), serviceId));
        if (known == null) {
            known = byStream.get(new ByStream(streamRecord, serviceId));
        }
        if (known == null) {
            if (size == ListIds.MOST_RECORDS) {
                throw new NotImportable("service list " + id + " is full: it has " + ListIds.MOST_RECORDS + " records");
            }
            known = lists.add(id, values.apply(Optional.empty()));
            add(known, stream.ids(), streamRecord, serviceId);
            counts.added();
        } else if (!stored.contains(known)) {
            Optional<ServiceRecord> before = lists.get(known);
            lists.update(id, values.apply(before).setSvlIdSvlRecId(known));
            counts.updated(known.recordId(), !lists.get(known).equals(before));
        } else {
            counts.repeated();
            return null;
        }
        stored.add(known);
        return known;
    }

    /** Sets the network of a service, to be written at the end. */
    void setNetwork(RecordId service, RecordId network) {
        if (!network.equals(networkBefore.get(service.recordId()))) {
            networks.put(service.recordId(), network);
        }
    }

    /** Writes the networks of services that are new or had another network. */
    void writeNetworks(Path storage) {
        if (!networks.isEmpty()) {
            ScanStandIn.writeNetworks(storage, id, networks);
            networks.keySet().stream().filter(networkBefore::containsKey)
                    .forEach(service -> counts.updated(service, true));
        }
    }
}
