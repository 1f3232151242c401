package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import com.velotra.tv.tavro.services.channellist.TransportStreamRecord;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.decoding.DecodedRecord;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.matching.Companions;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.storage.Snapshot;
import com.velotra.tv.tavro.tool.storage.Storage;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.util.Optional;

/** One record of the storage directory that the library uses. */
final class StoredRecord {
    private StoredRecord() {}

    /**
     * Reads a record: services and transport streams through the natives, networks and satellites from the storage,
     * because the natives return these as objects.
     *
     * @throws Failure if the list or the record does not exist; it names the lists that exist
     */
    static Record read(Kind kind, RecordId id) {
        Preconditions.needList(kind, id.listId());
        return find(kind, id).orElseThrow(() -> {
            Preconditions.needReadable(kind, id.listId());
            return new Failure(kind.noun() + " list " + id.listId() + " has no record " + id.recordId());
        });
    }

    private static Optional<Record> find(Kind kind, RecordId id) {
        return switch (kind) {
            case SERVICES -> VltTvChannelList.getInstance().get(id)
                    .map(ServiceRecord::bytes).map(bytes -> Record.of(kind, bytes));
            case STREAMS -> VltTvTransportStreamList.getInstance().get(id)
                    .map(TransportStreamRecord::bytes).map(bytes -> Record.of(kind, bytes));
            default -> StoredLists.read(kind, id.listId()).byId(id.recordId());
        };
    }

    /** Opens the lists to which a record may refer. */
    static Snapshot snapshot() {
        return Snapshot.open(Storage.directory());
    }

    static DecodedRecord decoded(Record record, Snapshot lists) {
        return DecodedRecord.of(record, new Companions(lists::list));
    }
}
