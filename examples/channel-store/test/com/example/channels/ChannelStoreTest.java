package com.example.channels;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import com.velotra.tv.tavro.scripted.Script;
import com.velotra.tv.tavro.services.channellist.BroadcastType;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import java.util.List;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.function.Executable;

/** What the store does when the middleware fails. */
class ChannelStoreTest {
    private static final RecordId NEWS = new RecordId(1, 5);

    private ChannelStore store;
    private byte[] news;

    /** List 1 is open; its handle is 0x10001. The middleware returns the channel News, number 1, for every record. */
    @BeforeEach
    void openTheList() throws ChannelStoreException {
        Script.reset();
        store = new ChannelStore(1, "/data/channels");
        VltTvChannelList.getInstance().add(1, new VltTvChannelInfoBase()
                .setBroadcastType(BroadcastType.DVB).setServiceName("News").setMajorChannelNumber(1));
        news = Script.lastRecord();
        Script.reset();
        Script.always("x_svl_get_rec", news);
    }

    private static String messageOf(Executable call) {
        return assertThrows(ChannelStoreException.class, call).getMessage();
    }

    @Test
    void aRefusedAddIsReportedAndLeavesTheListUnlocked() {
        Script.answer("x_svl_add_rec", -113); // no space left
        assertEquals("cannot add News: cannot add a service to list 1; is there such a list, and does it have a free"
                + " record id? If so, see the log", messageOf(() -> store.add("News", 10301, 1)));
        assertEquals(List.of("x_svl_lock(0x10001)", "x_svl_unlock(0x10001)"), Script.linesWith("lock("));
    }

    @Test
    void aListThatIsFullIsNotLoaded() {
        Script.always("x_svl_qry_rec_id", 0, 65535); // no record id is free
        assertEquals("cannot load /data/channels: cannot load service list 1 from the file '/data/channels'; the list"
                + " accepts no further record, which this needs; clean or delete it first, or see the log",
                messageOf(store::load));
        assertEquals(List.of(), Script.linesWith("x_svl_fs_sync"));
    }

    @Test
    void aRefusedLockGoesUnnoticedButAChangeThatIsLostDoesNot() {
        Script.always("x_svl_lock", -107); // somebody else holds the lock
        assertEquals("channel 1,5 has number 1, not 7: something else changed it at the same time",
                messageOf(() -> store.renumber(NEWS, 7)));
        assertEquals(7, new ServiceRecord(Script.lastRecord()).majorChannelNumber()); // written all the same
    }

    @Test
    void hidingAChannelKeepsItsNumberAndName() throws ChannelStoreException {
        store.setVisible(NEWS, true);
        assertEquals("  1  News", Channel.of(1, new ServiceRecord(Script.lastRecord())).toString());
        store.setVisible(NEWS, false);
        assertEquals("  1  News (hidden)", Channel.of(1, new ServiceRecord(Script.lastRecord())).toString());
    }

    @Test
    void aFileThatCannotBeWrittenIsReported() {
        Script.answer("x_svl_fs_store", -112);
        assertEquals("cannot save /data/channels: cannot store service list 1 to the file '/data/channels' (status"
                + " -22); is there such a list, and may the file be written? If so, see the log",
                messageOf(store::save));
    }

    @Test
    void aChannelThatWasRemovedMeanwhileIsReported() {
        Script.answer("x_svl_get_rec", news);
        Script.always("x_svl_get_rec", -104, 0); // no such record any more
        assertEquals("channel 1,5 is gone: something else removed it",
                messageOf(() -> store.setVisible(NEWS, false)));
    }
}
