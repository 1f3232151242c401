package com.velotra.tv.tavro.services.channellist;

import java.util.List;
import java.util.Objects;
import java.util.Optional;
import java.util.stream.Stream;

/**
 * The satellite lists of the TV.
 *
 * <p>The native methods are the library's contract; the other methods are a thin layer over them.
 */
public final class VltTvSatelliteList extends TvList {
    private static final class Holder {
        static final VltTvSatelliteList INSTANCE = ready(new VltTvSatelliteList());
    }

    private VltTvSatelliteList() {
        super("satellite list");
    }

    /**
     * The satellite lists, with the library loaded.
     *
     * @throws UnsatisfiedLinkError when the library cannot be loaded
     */
    public static VltTvSatelliteList getInstance() {
        return Holder.INSTANCE;
    }

    /** One satellite with the values of the named keys, or with all when {@code keys} is null; empty when there is no such record. */
    public Optional<VltTvSatelliteInfo> get(RecordId id, List<String> keys) {
        return Optional.ofNullable(nativeGetInfo(Ids.text(id), keys));
    }

    /**
     * All satellites of a list, in list order, with the values of the named keys or with all when {@code keys} is null.
     *
     * <p>A value that a satellite does not have, such as the antenna type of one without an LNB, is that of the satellite
     * before it: the native side goes on with the same object.
     *
     * @throws ChannelListException when one of them cannot be read
     */
    public List<VltTvSatelliteInfo> getAll(int listId, List<String> keys) {
        return read(nativeGetInfoList(Ids.list(listId), keys), "cannot read satellite list %d", listId);
    }

    /** Overlays the satellite that {@code info} names by its identifier with the values that it carries. */
    public void update(VltTvSatelliteInfoBase info) {
        Ids.checkWhole(Stream.ofNullable(info.getRecId()));
        check(nativeUpdateInfo(info), "cannot update the satellite %s", info.getRecId());
    }

    /**
     * Overlays many satellites. Those before the first that fails stay updated.
     *
     * @throws IllegalArgumentException when an identifier is malformed or out of range; nothing is updated then
     */
    public void updateAll(List<? extends VltTvSatelliteInfoBase> infos) {
        Ids.checkWhole(infos.stream().filter(Objects::nonNull).map(VltTvSatelliteInfoBase::getRecId));
        check(nativeUpdateInfoList(infos), "cannot update %d satellites", infos.size());
    }

    /** Adds a satellite. */
    public RecordId add(int listId, VltTvSatelliteInfoBase info) {
        return added(nativeAdd(Ids.list(listId), info), "cannot add a satellite to list %d", listId);
    }

    @Override
    native int nativeSetup();

    native int nativeOpen(int mwdbId);

    native int nativeOpen(int mwdbId, String path);

    native int nativeClean(int mwdbId);

    native int nativeClose(int mwdbId);

    native int nativeDelete(int mwdbId);

    native int nativeCopy(int sourceId, int destinationId);

    native int nativeStore(int mwdbId, String path);

    native VltTvSatelliteInfo nativeGetInfo(String identifier, List<String> keys);

    native List<VltTvSatelliteInfo> nativeGetInfoList(int mwdbId, List<String> keys);

    native int nativeUpdateInfo(VltTvSatelliteInfoBase satellite);

    native int nativeUpdateInfo(int mwdbId, String identifier);

    native int nativeUpdateInfoList(List<? extends VltTvSatelliteInfoBase> satellites);

    native String nativeAdd(int mwdbId, VltTvSatelliteInfoBase satellite);

    @Override
    native String nativeAdd(int mwdbId, String identifier);

    @Override
    native int nativeRemove(String identifier);

    @Override
    native int nativeRemoveByRecId(int mwdbId, String identifier);

    // The names by which the other lists have these natives.

    @Override
    int native_open(int mwdbId) {
        return nativeOpen(mwdbId);
    }

    @Override
    int native_open(int mwdbId, String path) {
        return nativeOpen(mwdbId, path);
    }

    @Override
    int native_clean(int mwdbId) {
        return nativeClean(mwdbId);
    }

    @Override
    int native_close(int mwdbId) {
        return nativeClose(mwdbId);
    }

    @Override
    int native_delete(int mwdbId) {
        return nativeDelete(mwdbId);
    }

    @Override
    int native_copy(int sourceId, int destinationId) {
        return nativeCopy(sourceId, destinationId);
    }

    @Override
    int native_store(int mwdbId, String path) {
        return nativeStore(mwdbId, path);
    }

    @Override
    int native_updateInfo(int mwdbId, String identifier) {
        return nativeUpdateInfo(mwdbId, identifier);
    }
}
