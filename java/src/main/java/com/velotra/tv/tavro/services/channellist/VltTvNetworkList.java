package com.velotra.tv.tavro.services.channellist;

import java.util.List;
import java.util.Objects;
import java.util.Optional;
import java.util.stream.Stream;

/**
 * The network lists of the TV.
 *
 * <p>The native methods are the library's contract. The public methods add checks, typed results and locks; see
 * {@link TvList} for ids, failures and threads.
 */
public final class VltTvNetworkList extends TvList {
    private static final class Holder {
        static final VltTvNetworkList INSTANCE = ready(new VltTvNetworkList());
    }

    private VltTvNetworkList() {
        super(ListKind.NETWORK);
    }

    /**
     * Returns the network lists. Loads the library at the first call.
     *
     * @throws UnsatisfiedLinkError if the library cannot be loaded; the message says where it was looked for
     */
    public static VltTvNetworkList getInstance() {
        return Holder.INSTANCE;
    }

    /** Returns one network with all its values; empty if there is no such record. */
    public Optional<VltTvNetworkInfo> get(RecordId id) {
        String text = Ids.text(id);
        return Optional.ofNullable(locked(() -> native_getInfo(text, null)));
    }

    /** Returns one network with the values of the given keys only; empty if there is no such record. */
    public Optional<VltTvNetworkInfo> get(RecordId id, List<String> keys) {
        String text = Ids.text(id);
        List<String> wanted = List.copyOf(Objects.requireNonNull(keys, "keys"));
        return Optional.ofNullable(locked(() -> native_getInfo(text, wanted)));
    }

    /**
     * Returns all networks of a list with all their values, in list order; none if there is no such list.
     *
     * @throws ChannelListException if one of them cannot be read
     */
    public List<VltTvNetworkInfo> getAll(int listId) {
        Ids.list(listId);
        return objects(() -> native_getInfoList(listId, null), listId);
    }

    /**
     * Returns all networks of a list like {@link #getAll(int)}, with the values of the given keys only.
     *
     * @throws ChannelListException if one of them cannot be read
     */
    public List<VltTvNetworkInfo> getAll(int listId, List<String> keys) {
        Ids.list(listId);
        List<String> wanted = List.copyOf(Objects.requireNonNull(keys, "keys"));
        return objects(() -> native_getInfoList(listId, wanted), listId);
    }

    /**
     * Writes the values that {@code info} carries into the network that it names by its record id; without one, into
     * record 0. All other values stay.
     *
     * @throws ChannelListException if there is no such record
     */
    public void update(int listId, VltTvNetworkInfoBase info) {
        Ids.list(listId);
        Ids.checkRecords(Stream.ofNullable(info.identifier()));
        checkUpdate(() -> native_updateInfo(listId, info), listId, info.id());
    }

    /**
     * Updates many networks, each like {@link #update(int, VltTvNetworkInfoBase)}. Those before the first that fails
     * are updated.
     *
     * @throws ChannelListException if a record does not exist
     */
    public void updateAll(int listId, List<? extends VltTvNetworkInfoBase> infos) {
        Ids.list(listId);
        List<VltTvNetworkInfoBase> all = List.copyOf(Objects.requireNonNull(infos, "infos"));
        Ids.checkRecords(all.stream().map(VltTvNetworkInfoBase::identifier));
        checkUpdates(() -> native_updateInfoList(listId, all), listId, all.size());
    }

    /**
     * Adds a network with the values that {@code info} carries, under the highest record id of the list plus one.
     *
     * @return its identifier
     * @throws ChannelListException if there is no such list, or if it has a record with the id 65534
     */
    public RecordId add(int listId, VltTvNetworkInfoBase info) {
        Ids.list(listId);
        Objects.requireNonNull(info, "info");
        return added(() -> nativeAdd(listId, info), listId);
    }

    @Override
    String addNamed(int listId, String name) {
        VltTvNetworkInfoBase info = new VltTvNetworkInfoBase();
        info.setNetworkName(name);
        return nativeAdd(listId, info);
    }

    @Override
    String nameOf(String identifier) {
        VltTvNetworkInfo record = native_getInfo(identifier, null);
        return record == null ? null : record.getNetworkName();
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
