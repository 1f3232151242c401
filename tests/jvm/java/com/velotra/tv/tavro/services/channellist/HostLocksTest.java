package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.concurrent.Callable;
import java.util.concurrent.ExecutorService;
import java.util.concurrent.Executors;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;

/**
 * List updates that end at a bad identifier and leave their list locked: over the workstation's platform the next
 * writer logs it and goes on, it does not hang.
 */
class HostLocksTest {
    private final ExecutorService holder = Executors.newSingleThreadExecutor();
    private final Path log = Path.of(System.getenv("TAVRO_LOG_FILE"));

    @BeforeEach
    void beginWithoutALog() throws IOException {
        Files.deleteIfExists(log);
    }

    @AfterEach
    void endTheHolder() {
        holder.shutdownNow();
    }

    /** Runs a body on the thread that is to keep the lock. */
    private <T> T onHolder(Callable<T> body) throws Exception {
        return holder.submit(body).get();
    }

    private void assertTimeOutIsLogged(String list) throws IOException {
        List<String> lines = Files.readAllLines(log);
        assertEquals(1, lines.stream().filter(line -> line.startsWith("E/TavroHost")).count(), lines.toString());
        assertTrue(lines.get(0).contains(list), lines.toString());
        assertTrue(lines.get(0).contains("lock"), lines.toString());
    }

    @Test
    void theNextWriterLogsAServiceListThatWasLeftLocked() throws Exception {
        VltTvChannelList lists = VltTvChannelList.getInstance();
        lists.open(1);
        RecordId one = lists.add(1, new VltTvChannelInfoBase().setServiceName("One"));
        VltTvChannelInfoBase bad = new VltTvChannelInfoBase();
        bad.svlIdSvlRecId = "bad";
        assertEquals(-22, onHolder(() -> lists.native_updateInfoList(1, List.of(bad))));

        lists.update(1, new VltTvChannelInfoBase().setSvlIdSvlRecId(one).setServiceName("Uno"));
        assertEquals("Uno", lists.get(one).orElseThrow().name());
        assertTimeOutIsLogged("svl list 1");
        onHolder(() -> lists.native_close(1));
    }

    @Test
    void theNextWriterLogsANetworkListThatWasLeftLocked() throws Exception {
        VltTvNetworkList networks = VltTvNetworkList.getInstance();
        networks.open(1);
        RecordId one = networks.add(1, new VltTvNetworkInfoBase());
        VltTvNetworkInfoBase bad = new VltTvNetworkInfoBase();
        bad.setNwlIdNwlRecId("bad");
        VltTvNetworkInfoBase good = new VltTvNetworkInfoBase();
        good.setNwlIdNwlRecId(one.toString());
        assertEquals(0, onHolder(() -> networks.native_updateInfoList(1, List.of(good, good, bad))));

        good.setNwlNetworkId(8468);
        networks.update(1, good);
        assertEquals(8468, networks.get(one).orElseThrow().getNwlNetworkId());
        assertTimeOutIsLogged("nwl list 1");
        onHolder(() -> networks.native_close(1));
    }
}
