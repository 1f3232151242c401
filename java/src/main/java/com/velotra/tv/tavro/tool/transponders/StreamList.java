package com.velotra.tv.tavro.tool.transponders;

import com.velotra.tv.tavro.services.channellist.OrbitalPosition;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.TransportStreamField;
import com.velotra.tv.tavro.services.channellist.TransportStreamRecord;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.input.ImportReport;
import com.velotra.tv.tavro.tool.input.ListCounts;
import com.velotra.tv.tavro.tool.satellites.Satellites;
import com.velotra.tv.tavro.tool.transponders.StreamImport.Ids;
import com.velotra.tv.tavro.tool.transponders.StreamImport.Stored;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.Objects;
import java.util.Optional;

/**
 * One transport stream list during an import. Finds the record of a transponder by medium, frequency, polarization,
 * stream id and satellite position. Two streams of one import with different network and transport stream ids are kept
 * apart.
 */
final class StreamList {
    /** A record of the list, or one to be added. */
    static final class Known {
        private RecordId id; // null until it is added
        private OrbitalPosition position; // null if the record refers to no satellite
        private long streamId;
        private boolean streamIdKnown;
        private Ids ids = Ids.NONE;
        private boolean stored; // by this import
        private boolean added; // by this import
        private long symbolRate; // of an existing satellite stream

        boolean isStored() {
            return stored;
        }

        Ids ids() {
            return ids;
        }

        Stored asStored() {
            return new Stored(id, ids);
        }
    }

    private record Tuning(int medium, int frequency, int polarization) {}

    private final VltTvTransportStreamList lists;
    private final int id;
    private final ListCounts counts;
    private final Map<Tuning, List<Known>> records = new HashMap<>();
    private int size;

    /** Opens and reads the list. */
    StreamList(VltTvTransportStreamList lists, Satellites satellites, int id, ImportReport report) {
        this.lists = lists;
        this.id = id;
        lists.open(id);
        counts = report.list("transport stream list " + id,
                () -> lists.exists(id) ? lists.getAllBytes(id).length / TransportStreamRecord.SIZE : -1);
        for (TransportStreamRecord record : lists.getAll(id)) {
            Known known = new Known();
            known.id = new RecordId(id, record.recordId());
            known.position = satellites.positionOf(record.satellite()).orElse(null);
            known.streamIdKnown = record.medium() != TransportStreamRecord.SATELLITE;
            known.streamId = record.medium() == TransportStreamRecord.TERRESTRIAL
                    ? record.value(TransportStreamField.TER_PLP_ID) : 0;
            known.ids = new Ids(record.originalNetworkId(), record.transportStreamId());
            int polarization = 0;
            if (record.medium() == TransportStreamRecord.SATELLITE) {
                polarization = (int) record.value(TransportStreamField.SAT_POLARIZATION);
                known.symbolRate = record.value(TransportStreamField.SAT_SYMBOL_RATE);
            }
            add(new Tuning(record.medium(), (int) record.frequency(), polarization), known);
            size++;
        }
    }

    private void add(Tuning tuning, Known known) {
        records.computeIfAbsent(tuning, key -> new ArrayList<>()).add(known);
    }

    int id() {
        return id;
    }

    ListCounts counts() {
        return counts;
    }

    /** Returns the record of a transponder; a new one, not yet in the list, if there is none. */
    Known find(Mapping mapping, OrbitalPosition position, Ids ids) throws NotImportable {
        Tuning tuning = new Tuning(mapping.medium(), mapping.frequency(), mapping.polarization());
        Known best = null;
        int bestScore = -1;
        for (Known known : records.getOrDefault(tuning, List.of())) {
            int score = score(known, mapping, position, ids);
            if (score > bestScore) {
                best = known;
                bestScore = score;
            }
        }
        if (best != null) {
            return best;
        }
        if (size == ListIds.MOST_RECORDS) {
            throw new NotImportable("transport stream list " + id + " is full: it has " + ListIds.MOST_RECORDS
                    + " records");
        }
        Known known = new Known();
        add(tuning, known);
        return known;
    }

    /** Returns how well a record with the right tuning matches; negative if it is another transponder. */
    private static int score(Known known, Mapping mapping, OrbitalPosition position, Ids ids) {
        boolean samePosition = Objects.equals(known.position, position);
        boolean sameStream = known.streamId == mapping.streamId();
        if (known.stored) {
            return samePosition && sameStream && known.ids.agreeWith(ids) ? 8 : -1;
        }
        // A record without a satellite may be at any position, so the symbol rate must be equal too.
        boolean mayBeThere = known.position == null && known.symbolRate == mapping.symbolRate();
        if (!samePosition && !mayBeThere || known.streamIdKnown && !sameStream) {
            return -1;
        }
        // Of several matches, prefer the one at the same position, then the one with equal ids.
        return (samePosition ? 2 : 0) + (known.ids.equals(ids) ? 1 : 0);
    }

    /** Adds or updates the record of a transponder. */
    RecordId store(Known known, VltTvTransportStreamInfoBase info, OrbitalPosition position, long streamId, Ids ids) {
        if (known.id == null) {
            known.id = lists.add(id, info);
            known.added = true;
            size++;
            counts.added();
        } else {
            Optional<TransportStreamRecord> before = lists.get(known.id);
            lists.update(id, info.setTslIdTslRecId(known.id));
            if (!known.added) {
                counts.updated(known.id.recordId(), !lists.get(known.id).equals(before));
            }
        }
        known.position = position;
        known.streamId = streamId;
        known.streamIdKnown = true;
        known.ids = ids.equals(Ids.NONE) ? known.ids : ids;
        known.stored = true;
        return known.id;
    }
}
