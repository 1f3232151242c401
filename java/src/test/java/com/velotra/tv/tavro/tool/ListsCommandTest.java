package com.velotra.tv.tavro.tool;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.tool.ToolProcess.Result;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Map;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

class ListsCommandTest {
    @TempDir
    Path folder;

    @BeforeAll
    static void twoServiceListsAndANetworkList() {
        VltTvChannelList services = VltTvChannelList.getInstance();
        for (int list : new int[] {11, 2}) {
            services.open(list);
        }
        services.add(11, new VltTvChannelInfoBase().setServiceName("Uno"));
        services.add(11, new VltTvChannelInfoBase().setServiceName("Due"));
        VltTvNetworkList.getInstance().open(7);
    }

    private static String withoutVersionsAndTimes(String text) {
        return text.replaceAll(" +\\d+  (\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d|-)\n", " VERSION TIME\n")
                .replaceAll("\"version\": \\d+", "\"version\": VERSION")
                .replaceAll("\"changed\": (\"[-0-9]+T[0-9:.]+Z\"|null)", "\"changed\": TIME");
    }

    @Test
    void allListsArePrintedByKindAndId() {
        Result result = ToolProcess.runHere("lists");
        assertEquals("", result.err());
        assertEquals(
                """
                kind      list  storage name  records  version  last change
                services     2  fs_Svl_1            0 VERSION TIME
                services    11  fs_Svl_10           2 VERSION TIME
                networks     7  fs_Nwl_6            0 VERSION TIME
                3 lists
                """,
                withoutVersionsAndTimes(result.out()));
        assertEquals(0, result.exit());
    }

    @Test
    void oneKindIsPrintedOnRequest() {
        assertEquals(
                """
                kind      list  storage name  records  version  last change
                networks     7  fs_Nwl_6            0 VERSION TIME
                1 network list
                """,
                withoutVersionsAndTimes(ToolProcess.runHere("lists", "-k", "networks").out()));
    }

    @Test
    void jsonHasNumbersAndTimesInUtc() {
        assertEquals(
                """
                [
                  {
                    "kind": "networks",
                    "list": 7,
                    "name": "fs_Nwl_6",
                    "records": 0,
                    "version": VERSION,
                    "changed": TIME
                  }
                ]
                """,
                withoutVersionsAndTimes(ToolProcess.runHere("lists", "--kind", "networks", "--json").out()));
    }

    @Test
    void withoutListsTheUserLearnsHowToGetSome() throws Exception {
        Path home = Files.createDirectory(folder.resolve("home"));
        String none = "s in " + home + "; ./tavro import makes some\n";
        Map<String, String> environment = Map.of("TAVRO_HOME", home.toString());
        assertEquals(new Result(0, "", "no list" + none), ToolProcess.run(folder, environment, "lists"));
        assertEquals(0, home.toFile().list().length);
        assertEquals(new Result(0, "[]\n", ""), ToolProcess.runHere("lists", "--json", "-k", "satellites"));
        assertEquals("no satellite lists in " + System.getenv("TAVRO_HOME") + "; ./tavro import makes some\n",
                ToolProcess.runHere("lists", "-k", "satellites").err());
    }

    @Test
    void badInputIsReported() throws Exception {
        assertEquals(
                new Result(2, "", "tavro: lists: unknown kind 'x': use services, streams, networks or satellites\n"
                        + "See: ./tavro lists --help\n"),
                ToolProcess.runHere("lists", "-k", "x"));
        assertEquals(2, ToolProcess.runHere("lists", "1").exit());
        Path missing = folder.resolve("missing");
        assertEquals(
                new Result(1, "", "tavro: cannot read the storage directory " + missing + ": no such directory; set "
                        + "TAVRO_HOME to the one that holds your lists\n"),
                ToolProcess.run(folder, Map.of("TAVRO_HOME", missing.toString()), "lists"));
    }
}
