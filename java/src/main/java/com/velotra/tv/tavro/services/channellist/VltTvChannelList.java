package com.velotra.tv.tavro.services.channellist;

import java.util.List;
import java.util.Optional;

/**
 * The service lists of the TV.
 *
 * <p>Lists are named by small numbers of which the low 16 bits count, 0 standing for none. Operations open a list that is
 * not open. Those that fail throw {@link ChannelListException}.
 *
 * <p>The native methods are the library's contract; this class's own methods are a thin layer over them.
 */
public final class VltTvChannelList {
    private static final class Holder {
        static final VltTvChannelList INSTANCE = load();

        private static VltTvChannelList load() {
            NativeLibrary.load();
            VltTvChannelList list = new VltTvChannelList();
            list.nativeSetup(); // answers an address, not a status
            return list;
        }
    }

    VltTvChannelList() {}

    /**
     * The service lists, with the library loaded.
     *
     * @throws UnsatisfiedLinkError when the library cannot be loaded
     */
    public static VltTvChannelList getInstance() {
        return Holder.INSTANCE;
    }

    /** Whether there is such a list. Nothing is created; a list that was open is closed. */
    public boolean exists(int listId) {
        return native_close(listId) == 0;
    }

    /** Opens a list, creating it when there is none. */
    public void open(int listId) {
        check(native_open(listId), "cannot open or create service list %d", listId);
    }

    /** The same, loading the list from the file at {@code path} when it has no records yet. */
    public void open(int listId, String path) {
        check(native_open(listId, path), "cannot open service list %d with the file '%s'", listId, path);
    }

    /** Closes a list; its records stay. */
    public void close(int listId) {
        check(native_close(listId), "cannot close service list %d: is there such a list?", listId);
    }

    /** Removes all records of a list. */
    public void clean(int listId) {
        check(native_clean(listId), "cannot clean service list %d: is there such a list?", listId);
    }

    /** Removes a list with its records. */
    public void delete(int listId) {
        check(native_delete(listId), "cannot delete service list %d: is there such a list?", listId);
    }

    /** Replaces the records of list {@code to} by those of list {@code from}. */
    public void copy(int from, int to) {
        check(native_copy(from, to), "cannot copy service list %d to service list %d: are there both?", from, to);
    }

    /** Writes a list to the file at {@code path}. */
    public void store(int listId, String path) {
        check(native_store(listId, path), "cannot store service list %d to the file '%s'", listId, path);
    }

    /** One service; empty when there is no such record. */
    public Optional<ServiceRecord> get(RecordId id) {
        return Optional.ofNullable(native_getSvlInfo(id.toString())).map(ServiceRecord::new);
    }

    /** All services of a list, in list order; none when there is no such list. */
    public List<ServiceRecord> getAll(int listId) {
        return ServiceRecord.listOf(getAllBytes(listId));
    }

    /** The same as the bytes of the records, one behind the other. */
    public byte[] getAllBytes(int listId) {
        return orEmpty(native_getSvlInfoList(listId));
    }

    /** The services whose transport stream record has that transport stream id. */
    public List<ServiceRecord> byTransportStream(int listId, int transportStreamId) {
        return ServiceRecord.listOf(orEmpty(native_getInfoListByTransportStream(listId, transportStreamId)));
    }

    /** The services that point at that record of the transport stream list with the same list id. */
    public List<ServiceRecord> byTransportStreamRecord(int listId, int recordId) {
        return ServiceRecord.listOf(orEmpty(native_getInfoListByTransportStreamRecord(listId, recordId)));
    }

    /** The services whose network record has that network id. */
    public List<ServiceRecord> byNetwork(int listId, int networkId) {
        return ServiceRecord.listOf(orEmpty(native_getInfoListByNetwork(listId, networkId)));
    }

    /** Overlays the service that {@code info} names by its record id with the values that it carries. */
    public void update(int listId, VltTvChannelInfoBase info) {
        check(native_updateInfo(listId, info), "cannot update the service %s of list %d", info.svlIdSvlRecId, listId);
    }

    /** Makes a service point at the companion lists of list {@code listId}, and stores it there. */
    public void update(int listId, RecordId id) {
        check(native_updateInfo(listId, id.toString()), "cannot move the service %s to list %d", id, listId);
    }

    /** Overlays many services. Those before the first that fails stay updated. */
    public void updateAll(int listId, List<? extends VltTvChannelInfoBase> infos) {
        check(native_updateInfoList(listId, infos), "cannot update %d services of list %d", infos.size(), listId);
    }

    /** Adds a service. */
    public RecordId add(int listId, VltTvChannelInfoBase info) {
        return added(nativeAdd(listId, info), "cannot add a service to list %d", listId);
    }

    /** Adds a copy of a service under the record id that it has. */
    public RecordId add(int listId, RecordId copyOf) {
        return added(nativeAdd(listId, copyOf.toString()), "cannot copy the service %s to list %d", copyOf, listId);
    }

    /** Removes a service. */
    public void remove(RecordId id) {
        check(nativeRemove(id.toString()), "cannot remove the service %s: is there such a record?", id);
    }

    /** Removes the service with the record id of {@code id} from list {@code listId}. */
    public void remove(int listId, RecordId id) {
        check(nativeRemoveByRecId(listId, id.toString()), "cannot remove the service %d of list %d", id.recordId(), listId);
    }

    private static void check(int status, String message, Object... arguments) {
        if (status != 0) {
            throw new ChannelListException(String.format(message, arguments), status);
        }
    }

    private static RecordId added(String identifier, String message, Object... arguments) {
        if (identifier.isEmpty()) {
            throw new ChannelListException(String.format(message, arguments), 0);
        }
        return RecordId.parse(identifier);
    }

    private static byte[] orEmpty(byte[] records) {
        return records == null ? new byte[0] : records;
    }

    // Answers the address of the manager's slot, cut to an int: never 0, and no status.
    native int nativeSetup();

    native int native_clean(int mwdbId);

    native int native_close(int mwdbId);

    native int native_delete(int mwdbId);

    native int native_copy(int sourceId, int destinationId);

    native byte[] native_getSvlInfo(String identifier);

    native byte[] native_getSvlInfoList(int mwdbId);

    native byte[] native_getInfoListByTransportStream(int mwdbId, int transportStreamId);

    native byte[] native_getInfoListByTransportStreamRecord(int mwdbId, int transportStreamRecordId);

    native byte[] native_getInfoListByNetwork(int mwdbId, int networkId);

    native int native_open(int mwdbId);

    native int native_open(int mwdbId, String path);

    native int native_store(int mwdbId, String path);

    native int native_updateInfo(int mwdbId, VltTvChannelInfoBase channel);

    native int native_updateInfo(int mwdbId, String identifier);

    native int native_updateInfoList(int mwdbId, List<? extends VltTvChannelInfoBase> channels);

    native String nativeAdd(int mwdbId, VltTvChannelInfoBase channel);

    native String nativeAdd(int mwdbId, String identifier);

    native int nativeRemove(String identifier);

    native int nativeRemoveByRecId(int mwdbId, String identifier);
}
