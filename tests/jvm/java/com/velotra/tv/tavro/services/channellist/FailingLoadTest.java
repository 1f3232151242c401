package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.stream.Stream;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;

/** The table in docs/porting.md on lists that cannot be opened or loaded is what the natives do. */
class FailingLoadTest {
    private static final int LIST = 7;
    private static final int NO_SUCH_FILE = -8;
    private static final int NOT_A_LIST_FILE = -12;
    private static final int OTHER_FAILURE = -99;

    /** Opens a list of the kind whose middleware calls begin with {@code prefix}, and returns the native's result. */
    private interface Opening {
        int open(TvList list, String prefix);
    }

    // By the words of the document.
    private static final Map<String, Opening> OPENINGS = new LinkedHashMap<>();

    static {
        OPENINGS.put("no path; the list can be neither opened nor created", (list, prefix) -> {
            failOpen(prefix);
            return list.native_open(LIST);
        });
        OPENINGS.put("the list can be neither opened nor created", (list, prefix) -> {
            failOpen(prefix);
            return list.native_open(LIST, "/data/list");
        });
        OPENINGS.put("the file does not exist", (list, prefix) -> load(list, prefix, NO_SUCH_FILE));
        OPENINGS.put("the file is not a list file", (list, prefix) -> load(list, prefix, NOT_A_LIST_FILE));
        OPENINGS.put("the file cannot be read", (list, prefix) -> load(list, prefix, OTHER_FAILURE));
        OPENINGS.put("the path is `null` or empty", (list, prefix) -> {
            int result = list.native_open(LIST, null);
            assertEquals(result, list.native_open(LIST, ""));
            return result;
        });
        OPENINGS.put("the path is `null` or empty; the list is open", (list, prefix) -> {
            list.native_open(LIST);
            int result = list.native_open(LIST, null);
            assertEquals(result, list.native_open(LIST, ""));
            return result;
        });
        OPENINGS.put("the list is open and empty", (list, prefix) -> {
            list.native_open(LIST);
            return list.native_open(LIST, "/data/list");
        });
        OPENINGS.put("the list is open and has records", (list, prefix) -> {
            list.native_open(LIST);
            Script.always("x_svl_get_num_rec_by_brdcst_type", 0, 1);
            return list.native_open(LIST, "/data/list");
        });
    }

    private static void failOpen(String prefix) {
        Script.answer(prefix + "_open", OTHER_FAILURE);
        Script.answer(prefix + "_create", OTHER_FAILURE);
    }

    private static int load(TvList list, String prefix, int status) {
        Script.answer(prefix + "_fs_sync", status);
        return list.native_open(LIST, "/data/list");
    }

    @AfterEach
    void endWithoutAScript() {
        Script.reset();
    }

    @Test
    void failingLoadsReturnWhatIsDocumented() {
        List<List<String>> found = new ArrayList<>();
        OPENINGS.forEach((words, opening) -> found.add(Stream.of(
                words,
                outcome(VltTvChannelList.getInstance(), "x_svl", opening),
                outcome(VltTvTransportStreamList.getInstance(), "x_tsl", opening),
                outcome(VltTvNetworkList.getInstance(), "x_nwl", opening),
                outcome(VltTvSatelliteList.getInstance(), "x_satl", opening)).toList()));
        assertEquals(BadInputDocument.table("When a load fails"), found);
    }

    /** The result, whether a load was tried, and whether the list is open then. */
    private static String outcome(TvList list, String prefix, Opening opening) {
        list.native_close(LIST);
        Script.reset();
        int result = opening.open(list, prefix);
        boolean loaded = !Script.linesWith(prefix + "_fs_sync(").isEmpty();
        Script.reset();
        list.native_close(LIST);
        boolean open = Script.linesWith(prefix + "_open(").isEmpty();
        return result + (loaded ? ", load" : "") + (open ? ", open" : "");
    }
}
