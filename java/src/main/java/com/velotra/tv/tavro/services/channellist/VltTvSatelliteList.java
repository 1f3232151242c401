package com.velotra.tv.tavro.services.channellist;

import java.util.List;
import java.util.Objects;
import java.util.Optional;
import java.util.stream.Stream;

/**
 * The satellite lists of the TV.
 *
 * <p>The native methods are the library's contract. The public methods add checks, typed results and locks; see
 * {@link TvList} for ids, failures and threads.
 */
public final class VltTvSatelliteList extends TvList {
    private static final class Holder {
        static final VltTvSatelliteList INSTANCE = ready(new VltTvSatelliteList());
    }

    private VltTvSatelliteList() {
        super(ListKind.SATELLITE);
    }

    /**
     * Returns the satellite lists. Loads the library at the first call.
     *
     * @throws UnsatisfiedLinkError if the library cannot be loaded; the message says where it was looked for
     */
    public static VltTvSatelliteList getInstance() {
        return Holder.INSTANCE;
    }

    /** Returns one satellite with all its values; empty if there is no such record. */
    public Optional<VltTvSatelliteInfo> get(RecordId id) {
        String text = Ids.text(id);
        return Optional.ofNullable(locked(() -> nativeGetInfo(text, null)));
    }

    /** Returns one satellite with the values of the given keys only; empty if there is no such record. */
    public Optional<VltTvSatelliteInfo> get(RecordId id, List<String> keys) {
        String text = Ids.text(id);
        List<String> wanted = List.copyOf(Objects.requireNonNull(keys, "keys"));
        return Optional.ofNullable(locked(() -> nativeGetInfo(text, wanted)));
    }

    /**
     * Returns all satellites of a list with all their values, in list order; none if there is no such list.
     *
     * @throws ChannelListException if one of them cannot be read
     */
    public List<VltTvSatelliteInfo> getAll(int listId) {
        Ids.list(listId);
        return objects(() -> nativeGetInfoList(listId, null), listId);
    }

    /**
     * Returns all satellites of a list like {@link #getAll(int)}, with the values of the given keys only.
     *
     * @throws ChannelListException if one of them cannot be read
     */
    public List<VltTvSatelliteInfo> getAll(int listId, List<String> keys) {
        Ids.list(listId);
        List<String> wanted = List.copyOf(Objects.requireNonNull(keys, "keys"));
        return objects(() -> nativeGetInfoList(listId, wanted), listId);
    }

    /**
     * Writes the values that {@code info} carries into the satellite that it names by its identifier. All other values
     * stay, and so does the polarization.
     *
     * @throws ChannelListException if there is no such record, or {@code info} has no identifier
     */
    public void update(VltTvSatelliteInfoBase info) {
        Ids.checkWhole(Stream.ofNullable(info.identifier()));
        RecordId id = info.id() == null ? new RecordId(0, 0) : info.id();
        checkUpdate(() -> nativeUpdateInfo(info), id.listId(), id);
    }

    /**
     * Updates many satellites, each like {@link #update(VltTvSatelliteInfoBase)}; they may belong to several lists.
     * Those before the first that fails are updated.
     *
     * @throws ChannelListException if a record does not exist
     */
    public void updateAll(List<? extends VltTvSatelliteInfoBase> infos) {
        List<VltTvSatelliteInfoBase> all = List.copyOf(Objects.requireNonNull(infos, "infos"));
        Ids.checkWhole(all.stream().map(VltTvSatelliteInfoBase::identifier));
        checkUpdates(() -> nativeUpdateInfoList(all), null, all.size());
    }

    /**
     * Adds a satellite with the values that {@code info} carries, under the highest record id of the list plus one.
     *
     * @return its identifier
     * @throws ChannelListException if there is no such list, or if it has a record with the id 65534
     */
    public RecordId add(int listId, VltTvSatelliteInfoBase info) {
        Ids.list(listId);
        Objects.requireNonNull(info, "info");
        return added(() -> nativeAdd(listId, info), listId);
    }

    @Override
    String addNamed(int listId, String name) {
        VltTvSatelliteInfoBase info = new VltTvSatelliteInfoBase();
        info.setName(name);
        return nativeAdd(listId, info);
    }

    @Override
    String nameOf(String identifier) {
        VltTvSatelliteInfo record = nativeGetInfo(identifier, null);
        return record == null ? null : record.getName();
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
