package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.lang.reflect.Method;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** Whatever arguments the natives get over the workstation's platform, its lists can be used afterwards. */
class HostArgumentsTest {
    private static final int[] WORKING = {3, BadInputCalls.LIST};
    private static final int RECORDS = 5;
    private static final int OTHER = 7000;

    private final List<TvList> kinds = List.of(
            VltTvChannelList.getInstance(), VltTvTransportStreamList.getInstance(), VltTvNetworkList.getInstance(),
            VltTvSatelliteList.getInstance());

    @TempDir
    private Path folder;

    // Other classes in this virtual machine must not find these lists.
    @BeforeEach
    @AfterEach
    void deleteLists() {
        for (TvList list : kinds) {
            for (int id : new int[] {1, 3, BadInputCalls.LIST, OTHER, OTHER + 1, 65_534, 65_535}) {
                if (list.exists(id)) {
                    list.delete(id);
                }
            }
        }
    }

    private static void fill(TvList list) {
        for (int id : WORKING) {
            list.open(id);
            list.clean(id);
            for (int record = 0; record < RECORDS; record++) {
                assertEquals(id + ",", list.addNamed(id, "record").substring(0, 2), list.kind().toString());
            }
        }
    }

    /** A call may leave the lists locked; closing unlocks them. */
    private static void close(TvList list) {
        for (int id : WORKING) {
            if (list.exists(id)) {
                list.close(id);
            }
        }
    }

    private void assertUsable(TvList list, String after) throws Exception {
        list.open(OTHER);
        String record = list.addNamed(OTHER, "probe");
        assertEquals("probe", list.nameOf(record), after);
        Path file = folder.resolve("probe");
        list.store(OTHER, file.toString());
        list.load(OTHER + 1, file.toString());
        assertEquals("probe", list.nameOf((OTHER + 1) + record.substring(record.indexOf(','))), after);
        Files.delete(file);
        list.delete(OTHER);
        list.delete(OTHER + 1);
    }

    @Test
    void theListsCanBeUsedAfterEveryNative() throws Exception {
        List<String> called = new ArrayList<>();
        for (TvList list : kinds) {
            for (Method method : BadInputCalls.natives(list)) {
                fill(list);
                for (EdgeArguments.Call call : EdgeArguments.of(list, method, folder.toString())) {
                    call.make();
                    close(list);
                }
                assertUsable(list, BadInputCalls.fullName(method));
                called.add(method.toString());
            }
        }
        assertEquals(72, called.stream().distinct().count());
    }
}
