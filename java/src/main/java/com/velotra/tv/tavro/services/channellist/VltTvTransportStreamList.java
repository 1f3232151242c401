package com.velotra.tv.tavro.services.channellist;

import java.util.List;
import java.util.Objects;
import java.util.Optional;
import java.util.stream.Stream;

/**
 * The transport stream lists of the TV.
 *
 * <p>The native methods are the library's contract. The public methods add checks, typed results and locks; see
 * {@link TvList} for ids, failures and threads.
 */
public final class VltTvTransportStreamList extends TvList {
    private static final class Holder {
        static final VltTvTransportStreamList INSTANCE = ready(new VltTvTransportStreamList());
    }

    private VltTvTransportStreamList() {
        super(ListKind.TRANSPORT_STREAM);
    }

    /**
     * Returns the transport stream lists. Loads the library at the first call.
     *
     * @throws UnsatisfiedLinkError if the library cannot be loaded; the message says where it was looked for
     */
    public static VltTvTransportStreamList getInstance() {
        return Holder.INSTANCE;
    }

    /** Returns one transport stream; empty if there is no such record. */
    public Optional<TransportStreamRecord> get(RecordId id) {
        String text = Ids.text(id);
        return Optional.ofNullable(locked(() -> native_getInfo(text))).map(TransportStreamRecord::new);
    }

    /** Returns all transport streams of a list, in list order; none if there is no such list or one cannot be read. */
    public List<TransportStreamRecord> getAll(int listId) {
        return TransportStreamRecord.listOf(getAllBytes(listId));
    }

    /** Returns the consecutive 724-byte records of {@link #getAll}. */
    public byte[] getAllBytes(int listId) {
        Ids.list(listId);
        return bytes(() -> native_getInfoList(listId));
    }

    /**
     * Returns the transport streams of list {@code satellite.listId()} that refer to the satellite {@code satellite},
     * in list order; none if there is no such list. Whether the satellite exists does not matter.
     */
    public List<TransportStreamRecord> bySatellite(RecordId satellite) {
        Ids.text(satellite);
        return TransportStreamRecord.listOf(
                bytes(() -> native_getInfoListBySatellite(satellite.listId(), satellite.recordId())));
    }

    /**
     * Writes the values that {@code info} carries into the transport stream that it names by its record id; without
     * one, into record 0. All other values stay.
     *
     * @throws ChannelListException if there is no such record
     */
    public void update(int listId, VltTvTransportStreamInfoBase info) {
        Ids.list(listId);
        checkIds(List.of(Objects.requireNonNull(info, "info")));
        checkUpdate(() -> native_updateInfo(listId, info), listId, info.id());
    }

    /**
     * Updates many transport streams, each like {@link #update(int, VltTvTransportStreamInfoBase)}; those whose
     * identifier was set to null are skipped. Those before the first that fails are updated.
     *
     * @throws ChannelListException if a record does not exist
     */
    public void updateAll(int listId, List<? extends VltTvTransportStreamInfoBase> infos) {
        Ids.list(listId);
        List<VltTvTransportStreamInfoBase> all = List.copyOf(Objects.requireNonNull(infos, "infos"));
        checkIds(all);
        checkUpdates(() -> native_updateInfoList(listId, all), listId, all.size());
    }

    /**
     * Adds a transport stream with the values that {@code info} carries, under the highest record id of the list plus
     * one.
     *
     * @return its identifier
     * @throws ChannelListException if there is no such list, or if it has a record with the id 65534
     */
    public RecordId add(int listId, VltTvTransportStreamInfoBase info) {
        Ids.list(listId);
        checkIds(List.of(Objects.requireNonNull(info, "info")));
        return added(() -> nativeAdd(listId, info), listId);
    }

    @Override
    String addNamed(int listId, String name) {
        return nativeAdd(listId, new VltTvTransportStreamInfoBase().setAcTsName(name));
    }

    @Override
    String nameOf(String identifier) {
        byte[] record = native_getInfo(identifier);
        return record == null ? null : new TransportStreamRecord(record).name();
    }

    @Override
    void openForRemoval(String identifier) {
        native_getInfo(identifier);
    }

    private static void checkIds(List<VltTvTransportStreamInfoBase> infos) {
        Ids.checkRecords(infos.stream().map(VltTvTransportStreamInfoBase::identifier));
        Ids.checkReferences(infos.stream().flatMap(info -> Stream.of(info.tslNwlRecId, info.tslSatlRecId)));
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
