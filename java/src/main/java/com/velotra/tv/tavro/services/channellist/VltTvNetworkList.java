package com.velotra.tv.tavro.services.channellist;

import java.util.List;
import java.util.Objects;
import java.util.Optional;
import java.util.stream.Stream;

/**
 * The network lists of the TV.
 *
 * <p>The native methods are the library's contract; the other methods are a thin layer over them.
 */
public final class VltTvNetworkList extends TvList {
    private static final class Holder {
        static final VltTvNetworkList INSTANCE = ready(new VltTvNetworkList());
    }

    private VltTvNetworkList() {
        super("network list");
    }

    /**
     * The network lists, with the library loaded.
     *
     * @throws UnsatisfiedLinkError when the library cannot be loaded
     */
    public static VltTvNetworkList getInstance() {
        return Holder.INSTANCE;
    }

    /** One network with the values of the named keys, or with all when {@code keys} is null; empty when there is no such record. */
    public Optional<VltTvNetworkInfo> get(RecordId id, List<String> keys) {
        return Optional.ofNullable(native_getInfo(Ids.text(id), keys));
    }

    /**
     * All networks of a list, in list order, with the values of the named keys or with all when {@code keys} is null.
     *
     * @throws ChannelListException when one of them cannot be read
     */
    public List<VltTvNetworkInfo> getAll(int listId, List<String> keys) {
        return read(native_getInfoList(Ids.list(listId), keys), "cannot read network list %d", listId);
    }

    /** Overlays the network that {@code info} names by its record id with the values that it carries. */
    public void update(int listId, VltTvNetworkInfoBase info) {
        Ids.checkRecords(Stream.ofNullable(info.getNwlIdNwlRecId()));
        check(native_updateInfo(Ids.list(listId), info), "cannot update the network %s of list %d", info.identifier(), listId);
    }

    /**
     * Overlays many networks. Those before the first that fails stay updated. One without a record id stands for record 0.
     *
     * @throws IllegalArgumentException when an identifier is malformed or out of range; nothing is updated then
     */
    public void updateAll(int listId, List<? extends VltTvNetworkInfoBase> infos) {
        Ids.checkRecords(infos.stream().filter(Objects::nonNull).map(VltTvNetworkInfoBase::getNwlIdNwlRecId));
        check(native_updateInfoList(Ids.list(listId), infos), "cannot update %d networks of list %d", infos.size(), listId);
    }

    /** Adds a network. */
    public RecordId add(int listId, VltTvNetworkInfoBase info) {
        return added(nativeAdd(Ids.list(listId), info), "cannot add a network to list %d", listId);
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

    native VltTvNetworkInfo native_getInfo(String identifier, List<String> keys);

    native List<VltTvNetworkInfo> native_getInfoList(int mwdbId, List<String> keys);

    @Override
    native int native_open(int mwdbId);

    @Override
    native int native_open(int mwdbId, String path);

    @Override
    native int native_store(int mwdbId, String path);

    native int native_updateInfo(int mwdbId, VltTvNetworkInfoBase network);

    @Override
    native int native_updateInfo(int mwdbId, String identifier);

    native int native_updateInfoList(int mwdbId, List<? extends VltTvNetworkInfoBase> networks);

    native String nativeAdd(int mwdbId, VltTvNetworkInfoBase network);

    @Override
    native String nativeAdd(int mwdbId, String identifier);

    @Override
    native int nativeRemove(String identifier);

    @Override
    native int nativeRemoveByRecId(int mwdbId, String identifier);
}
