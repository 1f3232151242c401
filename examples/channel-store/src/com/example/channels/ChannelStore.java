package com.example.channels;

import com.velotra.tv.tavro.services.channellist.BroadcastType;
import com.velotra.tv.tavro.services.channellist.ChannelListException;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.ServiceFlag;
import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import java.util.List;

/**
 * The channels of one service list, and the list file that keeps them while the TV is off.
 *
 * <p>The middleware holds the list, so every change is visible to all processes at once. The file is written by
 * {@link #save}: call it after the last of several changes.
 */
public final class ChannelStore {
    private final VltTvChannelList lists = VltTvChannelList.getInstance();
    private final int listId;
    private final String file;

    /** Opens the list, and creates it if there is none. */
    public ChannelStore(int listId, String file) throws ChannelStoreException {
        this.listId = listId;
        this.file = file;
        attempt("open the list", () -> lists.open(listId));
    }

    /** Replaces the channels by the file's. If that fails, the channels stay as they are. */
    public void load() throws ChannelStoreException {
        attempt("load " + file, () -> lists.load(listId, file));
    }

    /** Writes the channels to the file. If that fails, the file stays as it is. */
    public void save() throws ChannelStoreException {
        attempt("save " + file, () -> lists.store(listId, file));
    }

    /** Returns all channels in list order. */
    public List<Channel> channels() {
        return lists.getAll(listId).stream().map(service -> Channel.of(listId, service)).toList();
    }

    /** Adds a visible channel to the end of the list. */
    public Channel add(String name, int serviceId, int number) throws ChannelStoreException {
        RecordId[] id = new RecordId[1];
        attempt("add " + name, () -> id[0] = lists.add(listId, new VltTvChannelInfoBase()
                .setBroadcastType(BroadcastType.DVB)
                .setServiceName(name)
                .setServiceId(serviceId)
                .setMajorChannelNumber(number)
                .put(ServiceFlag.VISIBLE, true)));
        return read(id[0]);
    }

    /** Gives a channel another number. */
    public Channel renumber(RecordId id, int number) throws ChannelStoreException {
        Channel channel = update(id, VltTvChannelInfoBase.forRecord(id).setMajorChannelNumber(number));
        // Two processes can change a list at the same time: the native does not report a lock that was refused.
        if (channel.number() != number) {
            throw new ChannelStoreException("channel " + id + " has number " + channel.number() + ", not " + number
                    + ": something else changed it at the same time", null);
        }
        return channel;
    }

    /** Hides a channel, or shows it again. */
    public Channel setVisible(RecordId id, boolean visible) throws ChannelStoreException {
        return update(id, VltTvChannelInfoBase.forRecord(id).put(ServiceFlag.VISIBLE, visible));
    }

    private Channel update(RecordId id, VltTvChannelInfoBase values) throws ChannelStoreException {
        attempt("change channel " + id, () -> lists.update(listId, values));
        return read(id);
    }

    private Channel read(RecordId id) throws ChannelStoreException {
        return lists.get(id).map(service -> Channel.of(listId, service)).orElseThrow(
                () -> new ChannelStoreException("channel " + id + " is gone: something else removed it", null));
    }

    private static void attempt(String action, Runnable call) throws ChannelStoreException {
        try {
            call.run();
        } catch (ChannelListException e) {
            throw new ChannelStoreException("cannot " + action + ": " + e.getMessage(), e);
        }
    }
}
