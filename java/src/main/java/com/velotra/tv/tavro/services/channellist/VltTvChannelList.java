package com.velotra.tv.tavro.services.channellist;

import java.util.Collections;
import java.util.List;
import java.util.Objects;
import java.util.Optional;
import java.util.stream.Stream;

/**
 * The service lists of the TV.
 *
 * <p>The native methods are the library's contract; the other methods are a thin layer over them.
 */
public final class VltTvChannelList extends TvList {
    private static final class Holder {
        static final VltTvChannelList INSTANCE = ready(new VltTvChannelList());
    }

    private VltTvChannelList() {
        super("service list");
    }

    /**
     * The service lists, with the library loaded.
     *
     * @throws UnsatisfiedLinkError when the library cannot be loaded
     */
    public static VltTvChannelList getInstance() {
        return Holder.INSTANCE;
    }

    /** One service; empty when there is no such record. */
    public Optional<ServiceRecord> get(RecordId id) {
        return Optional.ofNullable(native_getSvlInfo(Ids.text(id))).map(ServiceRecord::new);
    }

    /** All services of a list, in list order; none when there is no such list or one cannot be read. */
    public List<ServiceRecord> getAll(int listId) {
        return ServiceRecord.listOf(getAllBytes(listId));
    }

    /** The same as the bytes of the records, one behind the other. */
    public byte[] getAllBytes(int listId) {
        return orEmpty(native_getSvlInfoList(Ids.list(listId)));
    }

    /** The services whose transport stream record has that transport stream id. */
    public List<ServiceRecord> byTransportStream(int listId, int transportStreamId) {
        return ServiceRecord.listOf(
                orEmpty(native_getInfoListByTransportStream(Ids.list(listId), Ids.transportStream(transportStreamId))));
    }

    /** The services that point at that record of the transport stream list with the same list id. */
    public List<ServiceRecord> byTransportStreamRecord(int listId, int recordId) {
        return ServiceRecord.listOf(
                orEmpty(native_getInfoListByTransportStreamRecord(Ids.list(listId), Ids.record(recordId))));
    }

    /** The services whose network record has that network id. */
    public List<ServiceRecord> byNetwork(int listId, int networkId) {
        return ServiceRecord.listOf(orEmpty(native_getInfoListByNetwork(Ids.list(listId), Ids.network(networkId))));
    }

    /** Overlays the service that {@code info} names by its record id with the values that it carries. */
    public void update(int listId, VltTvChannelInfoBase info) {
        checkIds(Collections.singletonList(info));
        check(native_updateInfo(Ids.list(listId), info), "cannot update the service %s of list %d", info.svlIdSvlRecId, listId);
    }

    /** Overlays many services. Those before the first that fails stay updated. One without a record id stands for record 0. */
    public void updateAll(int listId, List<? extends VltTvChannelInfoBase> infos) {
        checkIds(infos);
        check(native_updateInfoList(Ids.list(listId), infos), "cannot update %d services of list %d", infos.size(), listId);
    }

    /** Adds a service. */
    public RecordId add(int listId, VltTvChannelInfoBase info) {
        checkIds(Collections.singletonList(info));
        return added(nativeAdd(Ids.list(listId), info), "cannot add a service to list %d", listId);
    }

    private static void checkIds(List<? extends VltTvChannelInfoBase> infos) {
        Ids.checkRecords(infos.stream().filter(Objects::nonNull).map(info -> info.svlIdSvlRecId));
        Ids.checkReferences(infos.stream().filter(Objects::nonNull).flatMap(info -> Stream.of(info.tslRecId, info.satlRecId)));
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
