package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.util.List;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;

/** What tests over the scripted platform share: no script, no journal and no open list at their start. */
abstract class ScriptedPlatform {
    static final String BRIDGE = "com_velotra_tv_tavro_channellist_";

    final VltTvChannelList lists = VltTvChannelList.getInstance();
    final VltTvTransportStreamList streams = VltTvTransportStreamList.getInstance();
    final VltTvNetworkList networks = VltTvNetworkList.getInstance();

    @BeforeEach
    void beginWithoutAScriptOrOpenLists() {
        Script.reset();
        for (int id = 1; id <= 9; id++) {
            lists.native_close(id);
            streams.native_close(id);
            networks.native_close(id);
        }
        lists.nativeSetup(); // a manager that knows no path yet
        Script.reset();
    }

    @AfterEach
    void endWithoutAScript() {
        Script.reset();
    }

    /** Opens lists, so that their handles are known (0x10001 for list 1) and opening is not in the journal. */
    void open(int... ids) {
        open(lists, ids);
    }

    /**
     * The same for lists of any kind; their handles are 0x20001 for transport stream list 1, 0x30001 for network list
     * 1.
     */
    static void open(TvList kind, int... ids) {
        for (int id : ids) {
            assertEquals(0, kind.native_open(id));
        }
        Script.reset();
    }

    static void assertJournal(String... lines) {
        assertEquals(List.of(lines), List.of(Script.lines()));
    }
}
