package com.velotra.tv.tavro.tool;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.services.channellist.VltTvNetworkInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.tool.ToolProcess.Result;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** The export command, and the import of what it wrote. */
class ExportCommandTest {
    private static final String HEADER =
            "kind,list_id,flags,record_id,nwl_id,network_id,version,name,unnamed_bytes\n";
    private static final String UNO = "networks,5,0x00000000,1,0,101,0,Uno,\n";
    private static final String DUE = "networks,5,0x00000000,2,0,102,0,Due,\n";

    private final VltTvNetworkList networks = VltTvNetworkList.getInstance();

    @TempDir
    Path folder;

    @BeforeEach
    void addTwoNetworks() {
        networks.open(5);
        for (int i = 0; i < 2; i++) {
            VltTvNetworkInfoBase info = new VltTvNetworkInfoBase();
            info.setNwlNetworkId(101 + i);
            info.setNetworkName(List.of("Uno", "Due").get(i));
            networks.add(5, info);
        }
    }

    @AfterEach
    void deleteLists() {
        for (int id : List.of(5, 6)) {
            if (networks.exists(id)) {
                networks.delete(id);
            }
        }
    }

    private Path file(String content) throws Exception {
        return Files.writeString(folder.resolve("list.csv"), content);
    }

    private static Result export() {
        return ToolProcess.runHere("export", "5", "-k", "networks");
    }

    private void assertImported(String summary, String csvAfter, String csv, String... options) throws Exception {
        String[] words = new String[options.length + 2];
        words[0] = "import";
        words[1] = file(csv).toString();
        System.arraycopy(options, 0, words, 2, options.length);
        assertEquals(new Result(0, "1 file: " + summary + "\n", ""), ToolProcess.runHere(words));
        assertEquals(new Result(0, csvAfter, ""), export());
    }

    @Test
    void aListIsWrittenToStandardOutput() {
        assertEquals(new Result(0, HEADER + UNO + DUE, ""), export());
    }

    @Test
    void aFileIsReplacedOnlyWhenAllIsWritten() throws Exception {
        Path file = file("old");
        assertEquals(new Result(0, "", ""),
                ToolProcess.runHere("export", "5", "-k", "networks", "-o", file.toString()));
        assertEquals(HEADER + UNO + DUE, Files.readString(file));
        assertEquals(1, folder.toFile().list().length);
        Path missing = folder.resolve("missing/list.csv");
        assertEquals(new Result(1, "", "tavro: cannot write " + missing + ": no such file or folder\n"),
                ToolProcess.runHere("export", "5", "-k", "networks", "-o", missing.toString()));
    }

    @Test
    void allListsGoIntoOneFileAndComeBack() throws Exception {
        networks.open(6);
        networks.add(6, new VltTvNetworkInfoBase());
        Path file = folder.resolve("all.json");
        assertEquals(0, ToolProcess.runHere("export", "--all", "-o", file.toString()).exit());
        String exported = Files.readString(file);
        deleteLists();
        assertEquals(new Result(0, """
                1 file: 3 networks; 0 malformed lines
                network list 5: 2 added, 0 changed, 0 removed, 0 unchanged
                network list 6: 1 added, 0 changed, 0 removed, 0 unchanged
                """, ""), ToolProcess.runHere("import", file.toString()));
        assertEquals(exported, ToolProcess.runHere("export", "--all", "--format", "json").out());
    }

    @Test
    void rowsReplaceAddAndReorderAndOthersFollow() throws Exception {
        assertImported("2 networks; 0 malformed lines\n"
                + "network list 5: 1 added, 1 changed (2 fields), 0 removed, 1 unchanged, in another order",
                HEADER + "networks,5,0x00000000,2,0,7,3,Due,\n" + "networks,5,0x00000000,3,0,9,0,Tre,\n" + UNO,
                "record_id,network_id,version,name\n2,7,3,Due\n,9,,Tre\n", "--list", "5");
    }

    @Test
    void replaceRemovesRecordsWithoutARow() throws Exception {
        assertImported("1 network; 0 malformed lines\nnetwork list 5: 0 added, 0 changed, 1 removed, 1 unchanged",
                HEADER + DUE, "record_id,kind\n2,networks\n", "--list", "5", "--replace");
    }
}
