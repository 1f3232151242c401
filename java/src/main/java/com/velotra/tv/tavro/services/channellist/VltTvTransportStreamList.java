package com.velotra.tv.tavro.services.channellist;

import java.util.Collections;
import java.util.List;
import java.util.Objects;
import java.util.Optional;
import java.util.stream.Stream;

/**
 * The transport stream lists of the TV.
 *
 * <p>The native methods are the library's contract; the other methods are a thin layer over them.
 */
public final class VltTvTransportStreamList extends TvList {
    private static final class Holder {
        static final VltTvTransportStreamList INSTANCE = ready(new VltTvTransportStreamList());
    }

    private VltTvTransportStreamList() {
        super("transport stream list");
    }

    /**
     * The transport stream lists, with the library loaded.
     *
     * @throws UnsatisfiedLinkError when the library cannot be loaded
     */
    public static VltTvTransportStreamList getInstance() {
        return Holder.INSTANCE;
    }

    /** One transport stream; empty when there is no such record. */
    public Optional<TransportStreamRecord> get(RecordId id) {
        return Optional.ofNullable(native_getInfo(Ids.text(id))).map(TransportStreamRecord::new);
    }

    /** All transport streams of a list, in list order; none when there is no such list or one cannot be read. */
    public List<TransportStreamRecord> getAll(int listId) {
        return TransportStreamRecord.listOf(getAllBytes(listId));
    }

    /** The same as the bytes of the records, one behind the other. */
    public byte[] getAllBytes(int listId) {
        return orEmpty(native_getInfoList(Ids.list(listId)));
    }

    /** Those that point at that record of the satellite list with the same list id. */
    public List<TransportStreamRecord> bySatellite(int listId, int satelliteRecordId) {
        return TransportStreamRecord.listOf(
                orEmpty(native_getInfoListBySatellite(Ids.list(listId), Ids.record(satelliteRecordId))));
    }

    /** Overlays the transport stream that {@code info} names by its record id with the values that it carries. */
    public void update(int listId, VltTvTransportStreamInfoBase info) {
        checkIds(Collections.singletonList(info));
        check(
                native_updateInfo(Ids.list(listId), info),
                "cannot update the transport stream %s of list %d", info.identifier(), listId);
    }

    /**
     * Overlays many transport streams. Those before the first that fails stay updated. One without a record id stands for record
     * 0, one whose record id was set to null is left out.
     */
    public void updateAll(int listId, List<? extends VltTvTransportStreamInfoBase> infos) {
        checkIds(infos);
        check(
                native_updateInfoList(Ids.list(listId), infos),
                "cannot update %d transport streams of list %d", infos.size(), listId);
    }

    /** Adds a transport stream. */
    public RecordId add(int listId, VltTvTransportStreamInfoBase info) {
        checkIds(Collections.singletonList(info));
        return added(nativeAdd(Ids.list(listId), info), "cannot add a transport stream to list %d", listId);
    }

    private static void checkIds(List<? extends VltTvTransportStreamInfoBase> infos) {
        Ids.checkRecords(infos.stream().filter(Objects::nonNull).map(VltTvTransportStreamInfoBase::identifier));
        Ids.checkReferences(infos.stream().filter(Objects::nonNull).flatMap(info -> Stream.of(info.tslNwlRecId, info.tslSatlRecId)));
    }

    @Override
    native int nativeSetup();

    @Override
    native int native_clean(int mwdbId);

    @Override
    native int native_close(int mwdbId);

    @Override
    native int native_delete(int mwdbId);

    @Override
    native int native_copy(int sourceId, int destinationId);

    native byte[] native_getInfo(String identifier);

    native byte[] native_getInfoList(int mwdbId);

    native byte[] native_getInfoListBySatellite(int mwdbId, int satelliteRecordId);

    @Override
    native int native_open(int mwdbId);

    @Override
    native int native_open(int mwdbId, String path);

    @Override
    native int native_store(int mwdbId, String path);

    native int native_updateInfo(int mwdbId, VltTvTransportStreamInfoBase stream);

    @Override
    native int native_updateInfo(int mwdbId, String identifier);

    native int native_updateInfoList(int mwdbId, List<? extends VltTvTransportStreamInfoBase> streams);

    native String nativeAdd(int mwdbId, VltTvTransportStreamInfoBase stream);

    @Override
    native String nativeAdd(int mwdbId, String identifier);

    @Override
    native int nativeRemove(String identifier);

    @Override
    native int nativeRemoveByRecId(int mwdbId, String identifier);
}
