package com.velotra.tv.tavro.tool.transponders;

import com.velotra.tv.tavro.services.channellist.OrbitalPosition;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.input.ImportReport;
import com.velotra.tv.tavro.tool.satellites.Satellites;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.Optional;

/**
 * Stores transponders in transport stream lists, one list per medium. A transponder that is already in its list is
 * updated.
 */
public final class StreamImport {
    /** Called for every stored transponder. */
    public interface Observer {
        void stored(Transponder transponder, RecordId id);
    }

    /**
     * The ids of a transport stream, which only service lists have.
     *
     * @param originalNetworkId original_network_id; 0 if unknown
     * @param transportStreamId transport_stream_id; 0 if unknown
     */
    public record Ids(int originalNetworkId, int transportStreamId) {
        /** Both ids are unknown. */
        public static final Ids NONE = new Ids(0, 0);

        boolean agreeWith(Ids others) {
            return equals(others) || equals(NONE) || others.equals(NONE);
        }
    }

    /**
     * A stored transport stream.
     *
     * @param id of its record
     * @param ids in its record
     */
    public record Stored(RecordId id, Ids ids) {}

    /** Returns the record of a network id in a network list. */
    public interface NetworkRecords {
        RecordId of(int listId, int networkId);
    }

    private final VltTvTransportStreamList lists;
    private final Satellites satellites;
    private final ListIds ids;
    private final ImportReport report;
    private final Observer observer;
    private final Map<Integer, StreamList> targets = new HashMap<>();

    /** Satellite streams will refer to the satellite at their position in {@code satellites}. */
    public StreamImport(VltTvTransportStreamList lists, Satellites satellites, ListIds ids, ImportReport report,
            Observer observer) {
        this.lists = lists;
        this.satellites = satellites;
        this.ids = ids;
        this.report = report;
        this.observer = observer;
    }

    /**
     * Returns the list that a transponder goes to.
     *
     * @throws NotImportable if it cannot become a record
     */
    public static int listOf(Transponder transponder, ListIds ids) throws NotImportable {
        return ids.of(new Mapping(transponder).medium());
    }

    /**
     * Stores transponders.
     *
     * @throws com.velotra.tv.tavro.services.channellist.ChannelListException if the storage fails; records stored so
     *         far are kept
     */
    public void storeAll(List<Transponder> transponders) {
        report.beginSteps();
        for (Transponder transponder : transponders) {
            try {
                store(transponder, Ids.NONE, null);
            } catch (NotImportable e) {
                report.notImported(transponder.place(), e.getMessage());
            }
            report.step(transponders.size(), "transponders");
        }
    }

    /**
     * Stores a transponder with the ids of its transport stream.
     *
     * @param networks returns the record of the network; not called if the network is unknown
     */
    public Stored store(Transponder transponder, Ids streamIds, NetworkRecords networks) throws NotImportable {
        Mapping mapping = new Mapping(transponder);
        StreamList list = targets.computeIfAbsent(ids.of(mapping.medium()),
                id -> new StreamList(lists, satellites, id, report));
        boolean satellite = mapping.medium() == TunerValues.SATELLITE;
        OrbitalPosition position = satellite ? Satellites.parse(transponder.position()).orElse(null) : null;
        StreamList.Known known = list.find(mapping, position, streamIds);
        if (known.isStored() && (streamIds.equals(Ids.NONE) || known.ids().equals(streamIds))) {
            list.counts().repeated();
            return known.asStored();
        }
        VltTvTransportStreamInfoBase info = mapping.info();
        if (!streamIds.equals(Ids.NONE)) {
            info.setNetworkId(streamIds.originalNetworkId())
                    .setOriginalNetworkId(streamIds.originalNetworkId())
                    .setTransportStreamId(streamIds.transportStreamId());
            if (streamIds.originalNetworkId() != 0) {
                info.setTslNwlRecId(networks.of(list.id(), streamIds.originalNetworkId()));
            }
        }
        if (satellite) {
            satellites.find(transponder.position()).ifPresent(info::setTslSatlRecId);
        }
        boolean again = known.isStored();
        RecordId id = list.store(known, info, position, mapping.streamId(), streamIds);
        if (!again) {
            report.imported(mapping.systemName());
            mapping.dropped().stream().distinct().forEach(report::dropped);
            if (satellite && satellites.find(transponder.position()).isEmpty()) {
                report.withoutSatellite(satellites.whyNone(transponder.position()));
            }
            observer.stored(transponder, id);
        }
        return known.asStored();
    }

    /** Returns the satellite record of a transponder; nothing if there is none. */
    public Optional<RecordId> satelliteOf(Transponder transponder) {
        return satellites.find(transponder.position());
    }
}
