package com.velotra.tv.tavro.tool.decoding;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.velotra.tv.tavro.services.channellist.VltTvNetworkInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.tool.ToolProcess;
import com.velotra.tv.tavro.tool.ToolProcess.Result;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.ListFile;
import java.io.ByteArrayInputStream;
import java.io.IOException;
import java.io.InputStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Arrays;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** ./tavro dump. */
class DumpTest {
    private static final String NETWORK =
            """
               0  04 00 00 00                                      flags                    0x00000004 (NwlFavNetwork)
               4  07 00                                            record_id                7
               6  00 00                                            nwl_id                   0
               8  00 00                                            reserved
              10  14 21                                            network_id               8468
              12  00                                               version                  0
              13  41 20 6c 6f 6e 67 20 6e 61 6d 65 20 6f 66 20 61  name                     "A long name of a net"
              29  20 6e 65 74 00 00 00 00 00 00 00 00 00 00 00 00
              45  00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00  reserved
              61  00 00 00 00 00 09 00 00 00 00 00 00 00 00 00 00
              77  00 × 227
            """;

    @TempDir
    Path folder;

    /** A network whose reserved bytes are not all zero. */
    private static byte[] network() {
        byte[] bytes = new byte[304];
        for (String[] field : new String[][] {{"flags", "4"}, {"record_id", "7"}, {"network_id", "8468"},
                {"name", "A long name of a net"}}) {
            Layout.of(Kind.NETWORKS).field(field[0]).orElseThrow().parse(field[1], bytes);
        }
        bytes[66] = 9;
        return bytes;
    }

    private static Result withInput(byte[] input, String... arguments) {
        InputStream in = System.in;
        System.setIn(new ByteArrayInputStream(input));
        try {
            return ToolProcess.runHere(arguments);
        } finally {
            System.setIn(in);
        }
    }

    private String file(byte[] bytes) throws IOException {
        return Files.write(folder.resolve("records"), bytes).toString();
    }

    private static byte[] twice(byte[] bytes) {
        byte[] both = Arrays.copyOf(bytes, 2 * bytes.length);
        System.arraycopy(bytes, 0, both, bytes.length, bytes.length);
        return both;
    }

    @Test
    void aRecordOfStandardInputIsDividedIntoItsFields() {
        assertEquals(new Result(0, "standard input, 1 network of 304 bytes\n\nnetwork 7\n" + NETWORK, ""),
                withInput(network(), "dump", "-", "--kind", "networks"));
    }

    @Test
    void everyRecordOfAFileIsDumpedOrTheFirstOnes() throws Exception {
        String file = file(twice(network()));
        String title = "file " + file + ", 2 networks of 304 bytes\n";
        String one = "\nnetwork 7\n" + NETWORK;
        assertEquals(new Result(0, title + one + one, ""), ToolProcess.runHere("dump", file, "-k", "networks"));
        assertEquals(new Result(0, title + one, ""),
                ToolProcess.runHere("dump", file, "-k", "networks", "--first", "1"));
        assertEquals(new Result(0, title, ""), ToolProcess.runHere("dump", file, "-k", "networks", "--first=0"));
    }

    @Test
    void theNameOfAFileIsSafeForTheTerminal() throws Exception {
        String file = Files.write(folder.resolve("a\u001bb"), network()).toString();
        assertTrue(ToolProcess.runHere("dump", file, "-k", "networks").out()
                .startsWith("file " + folder + "/a·b, 1 network"));
    }

    @Test
    void aListFileNamesItsListAndKind() {
        Path file = folder.resolve("file.list");
        ListFile.write(file, RecordList.of(Kind.NETWORKS, 12, "nwl_12", network()));
        String title = "list file " + file + ": network list 12, stored as \"nwl_12\", 1 network of 304 bytes\n";
        assertEquals(new Result(0, title + "\nnetwork 7\n" + NETWORK, ""),
                ToolProcess.runHere("dump", file.toString()));
    }

    @Test
    void aStoredRecordIsDumped() {
        VltTvNetworkList networks = VltTvNetworkList.getInstance();
        networks.open(50);
        VltTvNetworkInfoBase info = new VltTvNetworkInfoBase();
        info.setNetworkName("Rete");
        networks.add(50, info);
        Result result = ToolProcess.runHere("dump", "50,1", "-k", "networks");
        assertTrue(result.out().startsWith("network 1 of list 50\n   0  00 00 00 00  "), result.out());
        assertTrue(result.out().contains("\n  13  52 65 74 65 00 00 00 00 00 00 00 00 00 00 00 00  name             "
                + "        \"Rete\"\n  29  00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00\n"), result.out());
        assertTrue(result.out().endsWith("\n  45  00 × 259                                         reserved\n"),
                result.out());
    }

    @Test
    void bytesOfAnUnknownViewAreNamedAsSuch() throws Exception {
        byte[] bytes = new byte[724];
        bytes[5] = 9;
        String out = ToolProcess.runHere("dump", file(bytes), "-k", "streams").out();
        assertTrue(out.contains("\n  48  00 × 128" + " ".repeat(41) + "unknown for medium 9\n"), out);
        bytes[5] = 1;
        out = ToolProcess.runHere("dump", file(bytes), "-k", "streams").out();
        assertTrue(out.contains("\n  48  00 00 00 00" + " ".repeat(38) + "ter_bandwidth            0\n"), out);
    }

    @Test
    void referencesOfAFileAreNotFollowed() throws Exception {
        byte[] bytes = new byte[552];
        bytes[26] = 1;
        bytes[28] = 2;
        String out = ToolProcess.runHere("dump", file(bytes)).out();
        assertTrue(out.contains("\n  28  02 00" + " ".repeat(44) + "tsl_record_id            2\n"), out);
    }

    @Test
    void jsonHasTheFieldsAndBytesOfEachRecord() throws Exception {
        String out = ToolProcess.runHere("dump", file(twice(network())), "-k", "networks", "--json").out();
        assertTrue(out.startsWith("[\n  {\n    \"kind\": \"networks\",\n    \"record\": 7,\n"), out);
        assertEquals(3, out.split("\"unnamed_bytes\": \"66:09\",\n    \"hex\": \"0400000007000000", -1).length, out);
    }

    @Test
    void theSizeTellsTheKindIfNoneIsGiven() throws Exception {
        assertEquals(new Result(0, "standard input, 1 network of 304 bytes\n\nnetwork 7\n" + NETWORK, ""),
                withInput(network(), "dump", "-"));
        String file = file(new byte[412 * 76]);
        assertEquals(new Result(1, "", "tavro: " + file + " has 31312 bytes, which fit several kinds of record; choose "
                + "--kind networks or --kind satellites\n"), ToolProcess.runHere("dump", file));
    }

    @Test
    void aSizeThatDoesNotFitNamesTheKindsThatDo() throws Exception {
        String sizes = "bytes are not a whole number of records (services 552, streams 724, networks 304, satellites "
                + "412 bytes)";
        String file = file(new byte[304]);
        assertEquals(new Result(1, "", "tavro: " + file + " is neither a list file nor a file of service records: its "
                + "304 " + sizes + "; they fit --kind networks\n"),
                ToolProcess.runHere("dump", file, "-k", "services"));
        assertEquals(new Result(1, "", "tavro: standard input is neither a list file nor a file of records: its 5 "
                + sizes + "\n"), withInput(new byte[5], "dump", "-"));
    }

    @Test
    void inputThatCannotBeReadIsReported() throws Exception {
        assertEquals(new Result(1, "", "tavro: standard input is empty\n"), withInput(new byte[0], "dump", "-"));
        Path missing = folder.resolve("missing\u001b");
        assertEquals(new Result(1, "", "tavro: cannot read " + folder + "/missing·: no such file or folder\n"),
                ToolProcess.runHere("dump", missing.toString()));
        assertEquals(new Result(1, "", "tavro: cannot read " + folder + ": it is a directory\n"),
                ToolProcess.runHere("dump", folder.toString()));
        assertEquals(new Result(2, "", "tavro: dump: '1,65535' is not a record: write LIST,RECORD, a list id from 1 to "
                + "65535 and a record id from 0 to 65534\nSee: ./tavro dump --help\n"),
                ToolProcess.runHere("dump", "1,65535"));
        Result none = ToolProcess.runHere("dump", "51,1", "-k", "networks");
        assertEquals(1, none.exit());
        assertTrue(none.err().startsWith("tavro: no network list 51 in "), none.err());
    }
}
