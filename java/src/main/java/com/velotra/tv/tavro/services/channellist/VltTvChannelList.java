package com.velotra.tv.tavro.services.channellist;

import java.util.List;
import java.util.Objects;
import java.util.Optional;
import java.util.stream.Stream;

/**
 * The service lists of the TV, which the natives call channel lists.
 *
 * <p>The native methods are the library's contract. The public methods add checks, typed results and locks; see
 * {@link TvList} for ids, failures and threads.
 */
public final class VltTvChannelList extends TvList {
    private static final class Holder {
        static final VltTvChannelList INSTANCE = ready(new VltTvChannelList());
    }

    private VltTvChannelList() {
        super(ListKind.SERVICE);
    }

    /**
     * Returns the service lists. Loads the library at the first call.
     *
     * @throws UnsatisfiedLinkError if the library cannot be loaded; the message says where it was looked for
     */
    public static VltTvChannelList getInstance() {
        return Holder.INSTANCE;
    }

    /** Returns one service; empty if there is no such record. */
    public Optional<ServiceRecord> get(RecordId id) {
        String text = Ids.text(id);
        return Optional.ofNullable(locked(() -> native_getSvlInfo(text))).map(ServiceRecord::new);
    }

    /** Returns all services of a list, in list order; none if there is no such list or a service cannot be read. */
    public List<ServiceRecord> getAll(int listId) {
        return ServiceRecord.listOf(getAllBytes(listId));
    }

    /** Returns the consecutive 552-byte records of {@link #getAll}. */
    public byte[] getAllBytes(int listId) {
        Ids.list(listId);
        return bytes(() -> native_getSvlInfoList(listId));
    }

    /**
     * Returns the services of a list whose transport stream record has that transport_stream_id, in list order; none if
     * there is no such list. Also holds the lock of transport streams.
     *
     * <p>The native opens the transport stream lists that the services refer to, creates those that do not exist, and
     * closes all transport stream lists. After an {@link #open(int, String)} or {@link #load} of a service list, it
     * also has the file at that path loaded into transport stream lists that are not open, which replaces their records
     * if the file holds some.
     */
    public List<ServiceRecord> byTransportStream(int listId, int transportStreamId) {
        Ids.list(listId);
        Ids.transportStream(transportStreamId);
        return ServiceRecord.listOf(
                bytes(() -> native_getInfoListByTransportStream(listId, transportStreamId), ListKind.TRANSPORT_STREAM));
    }

    /**
     * Returns the services of list {@code stream.listId()} that refer to the transport stream {@code stream}, in list
     * order; none if there is no such list. Whether the transport stream exists does not matter.
     */
    public List<ServiceRecord> byTransportStreamRecord(RecordId stream) {
        Ids.text(stream);
        return ServiceRecord.listOf(
                bytes(() -> native_getInfoListByTransportStreamRecord(stream.listId(), stream.recordId())));
    }

    /**
     * Returns the services of a list whose network record has that network_id, in list order; none if there is no such
     * list. Also holds the lock of networks, and does to network lists what {@link #byTransportStream} does to
     * transport stream lists.
     */
    public List<ServiceRecord> byNetwork(int listId, int networkId) {
        Ids.list(listId);
        Ids.network(networkId);
        return ServiceRecord.listOf(bytes(() -> native_getInfoListByNetwork(listId, networkId), ListKind.NETWORK));
    }

    /**
     * Writes the values that {@code info} carries into the service that it names by its record id; without one, into
     * record 0. All other values stay.
     *
     * @throws ChannelListException if there is no such record
     */
    public void update(int listId, VltTvChannelInfoBase info) {
        Ids.list(listId);
        checkIds(List.of(Objects.requireNonNull(info, "info")));
        checkUpdate(() -> native_updateInfo(listId, info), listId, info.id());
    }

    /**
     * Updates many services, each like {@link #update(int, VltTvChannelInfoBase)}. Those before the first that fails
     * are updated.
     *
     * @throws ChannelListException if a record does not exist
     */
    public void updateAll(int listId, List<? extends VltTvChannelInfoBase> infos) {
        Ids.list(listId);
        List<VltTvChannelInfoBase> all = List.copyOf(Objects.requireNonNull(infos, "infos"));
        checkIds(all);
        checkUpdates(() -> native_updateInfoList(listId, all), listId, all.size());
    }

    /**
     * Adds a service with the values that {@code info} carries, under the next free record id. The platform chooses it:
     * on a workstation the one after the highest, or the lowest free one if the list has a record with the id 65534.
     *
     * @return its identifier
     * @throws ChannelListException if there is no such list, or if it is full
     */
    public RecordId add(int listId, VltTvChannelInfoBase info) {
        Ids.list(listId);
        checkIds(List.of(Objects.requireNonNull(info, "info")));
        return added(() -> nativeAdd(listId, info), listId);
    }

    @Override
    String addNamed(int listId, String name) {
        return nativeAdd(listId, new VltTvChannelInfoBase().setServiceName(name));
    }

    @Override
    String nameOf(String identifier) {
        byte[] record = native_getSvlInfo(identifier);
        return record == null ? null : new ServiceRecord(record).name();
    }

    /**
     * Filters would load the file into lists of other kinds; see {@link #byTransportStream}. A new manager knows no
     * path.
     */
    @Override
    void forgetPath() {
        nativeSetup();
    }

    private static void checkIds(List<VltTvChannelInfoBase> infos) {
        Ids.checkRecords(infos.stream().map(VltTvChannelInfoBase::identifier));
        Ids.checkReferences(infos.stream().flatMap(info -> Stream.of(info.tslRecId, info.satlRecId)));
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

    native byte[] native_getSvlInfo(String identifier);

    native byte[] native_getSvlInfoList(int mwdbId);

    native byte[] native_getInfoListByTransportStream(int mwdbId, int transportStreamId);

    native byte[] native_getInfoListByTransportStreamRecord(int mwdbId, int transportStreamRecordId);

    native byte[] native_getInfoListByNetwork(int mwdbId, int networkId);

    @Override
    native int native_open(int mwdbId);

    @Override
    native int native_open(int mwdbId, String path);

    @Override
    native int native_store(int mwdbId, String path);

    native int native_updateInfo(int mwdbId, VltTvChannelInfoBase channel);

    @Override
    native int native_updateInfo(int mwdbId, String identifier);

    native int native_updateInfoList(int mwdbId, List<? extends VltTvChannelInfoBase> channels);

    native String nativeAdd(int mwdbId, VltTvChannelInfoBase channel);

    @Override
    native String nativeAdd(int mwdbId, String identifier);

    @Override
    native int nativeRemove(String identifier);

    @Override
    native int nativeRemoveByRecId(int mwdbId, String identifier);
}
