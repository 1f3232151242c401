package com.velotra.tv.tavro.tool;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.tool.ToolProcess.Result;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** The command line. With another storage directory, each command runs in a new virtual machine. */
class MainTest {
    private static final String NOT_A_RECORD =
            "' is not a record: write LIST,RECORD, a list id from 1 to 65535 and a record id from 0 to 65534\n"
            + "See: ./tavro show --help\n";
    private static final String USAGE_LIST =
            """
            Usage: ./tavro list [-h] [--json] [--by-network=ID] [--by-satellite=SAT]
                                [--by-stream=STREAM] [--columns=NAMES] [--first=N]
                                [-k=KIND] [--sort=NAMES] [--where=EXPR] ID
            """;

    @TempDir
    Path folder;

    private Result run(Path home, String... arguments) throws IOException, InterruptedException {
        return home.equals(storage())
                ? ToolProcess.runHere(arguments)
                : ToolProcess.run(folder, Map.of("TAVRO_HOME", home.toString()), arguments);
    }

    private static Path storage() {
        return Path.of(System.getenv("TAVRO_HOME"));
    }

    @Test
    void listAndShowPrintServices() throws Exception {
        VltTvChannelList lists = VltTvChannelList.getInstance();
        lists.open(1);
        lists.clean(1);
        VltTvChannelInfoBase info = new VltTvChannelInfoBase()
                .setBroadcastType(2).setServiceType(1).setServiceName("Uno").setServiceId(101)
                        .setTslRecId(new RecordId(1, 4));
        lists.add(1, info);
        lists.add(1, info.setServiceName("Zwölf Töne").setServiceType(2).setLogicalChannelNumber(12)
                .setVnetScrambled(true));

        Result list = run(storage(), "list", "1");
        assertEquals(
                """
                record  LCN  name        service id  type   scrambled  shown  transport stream
                     1    -  Uno                101  TV     no         no     1,4
                     2   12  Zwölf Töne         101  radio  yes        no     1,4
                2 services
                """,
                list.out());
        assertEquals(0, list.exit());
        assertTrue(run(storage(), "list", "--first", "1", "1").out().contains("… and 1 more"));

        Result show = run(storage(), "show", "1,2");
        assertEquals(0, show.exit());
        assertTrue(show.out().contains("\nname                           \"Zwölf Töne\"\n"), show.out());
        assertFalse(show.out().contains("0000  "));
        assertTrue(run(storage(), "show", "1,2", "--hex").out().contains("\n0000  02 00 "));
    }

    @Test
    void namesAreCompleteInEveryLocaleAndSafeForTheTerminal() throws Exception {
        VltTvChannelList lists = VltTvChannelList.getInstance();
        lists.open(3);
        lists.add(3, new VltTvChannelInfoBase().setServiceName("Zwölf\u001b[2J").setServiceId(101));
        Map<String, String> environment = Map.of("TAVRO_HOME", storage().toString(), "LC_ALL", "C");
        Result list = ToolProcess.run(folder, environment, "list", "3");
        assertTrue(list.out().contains("  Zwölf·[2J  "), list.out());
        Result show = ToolProcess.run(folder, environment, "show", "3,1");
        assertTrue(show.out().contains("\nname                           \"Zwölf·[2J\"\n"), show.out());
    }

    @Test
    void anUnknownListOrRecordEndsWithOneAndCreatesNothing() throws Exception {
        VltTvChannelList.getInstance().open(2);
        for (Result unknown : List.of(run(storage(), "list", "99"), run(storage(), "show", "99,1"))) {
            assertEquals(1, unknown.exit());
            String message = "tavro: no service list 99 in " + storage() + "; it has ";
            assertTrue(unknown.err().startsWith(message), unknown.err());
        }
        assertEquals(new Result(1, "", "tavro: service list 2 has no record 5\n"), run(storage(), "show", "2,5"));
        assertFalse(VltTvChannelList.getInstance().exists(99));
    }

    @Test
    void anIdOutOfRangeIsWrongUsage() throws Exception {
        String list = " is not a list id: it must be from 1 to 65535\nSee: ./tavro list --help\n";
        for (String id : List.of("0", "65536", "70000", "-5", "99999999999", "+1", "1.5", "x", "")) {
            String words = "tavro: list: '" + id + "'";
            assertEquals(new Result(2, "", words + list), run(storage(), "list", "--", id), id);
        }
        for (String id : List.of("0,1", "65536,1", "1,65535", "1,65541")) {
            assertEquals(
                    new Result(2, "", "tavro: show: '" + id + NOT_A_RECORD), run(storage(), "show", id));
        }
        assertFalse(VltTvChannelList.getInstance().exists(65535));
        assertTrue(run(storage(), "list", "65535").err().startsWith("tavro: no service list 65535 in "));
    }

    @Test
    void aStorageDirectoryThatIsEmptyStaysEmpty() throws Exception {
        Path home = Files.createDirectory(folder.resolve("home"));
        String none = "; it has none; ./tavro import makes some\n";
        assertEquals(new Result(1, "", "tavro: no service list 1 in " + home + none), run(home, "list", "1"));
        assertEquals(0, home.toFile().list().length);
    }

    @Test
    void wrongUsageExitsWithTwoAndNamesTheWord() throws Exception {
        for (String record : List.of("17", "", "1,2,3", "1,x", "99999999999,1")) {
            assertEquals(new Result(2, "", "tavro: show: '" + record + NOT_A_RECORD), run(storage(), "show", record));
        }
        assertEquals(
                new Result(2, "", "tavro: list: '-1' is not a number of records: it must be from 0 to 2147483647\n"
                        + "See: ./tavro list --help\n"),
                run(storage(), "list", "1", "--first=-1"));
        assertEquals(
                new Result(2, "",
                        "tavro: list: unknown kind 'service': use services, streams, networks or satellites\n"
                        + "See: ./tavro list --help\n"),
                run(storage(), "list", "1", "--kind", "service"));
        for (String[] words : new String[][] {{"nonsense"}, {"list"}, {"list", "1", "2"}, {"list", "1", "--frist", "2"},
                {"import"}}) {
            Result result = run(storage(), words);
            assertEquals(2, result.exit(), result.err());
            assertEquals("", result.out());
            assertEquals(2, result.err().lines().count(), result.err());
            assertTrue(result.err().startsWith("tavro: "), result.err());
        }
    }

    @Test
    void everyCommandExplainsItself() throws Exception {
        Result help = run(storage(), "list", "--help");
        assertEquals(0, help.exit());
        assertTrue(help.out().startsWith(USAGE_LIST), help.out());
        assertTrue(help.out().contains("Examples: ./tavro list 1"), help.out());
        assertTrue(run(storage(), "show", "--help").out().contains("Examples: ./tavro show 1,17 --bytes"));
    }

    @Test
    void networksAreListed() throws Exception {
        VltTvNetworkList networks = VltTvNetworkList.getInstance();
        networks.open(1);
        networks.clean(1);
        VltTvNetworkInfoBase info = new VltTvNetworkInfoBase();
        info.setNwlNetworkId(8468);
        info.setNetworkName("Uno");
        info.setNwlFavNetwork(1);
        networks.add(1, info);
        assertEquals(
                """
                record  network id  name  version  favorite  candidate
                     1        8468  Uno         0  yes       no
                1 network
                """,
                run(storage(), "list", "1", "--kind", "networks").out());
        assertEquals(
                new Result(1, "", "tavro: network list 1 has no record 9\n"),
                run(storage(), "show", "1,9", "--kind", "networks"));
    }

    @Test
    void satellitesAreListed() throws Exception {
        VltTvSatelliteList satellites = VltTvSatelliteList.getInstance();
        satellites.open(1);
        satellites.clean(1);
        VltTvSatelliteInfoBase info = new VltTvSatelliteInfoBase();
        info.setName("Uno\u001b Züri");
        info.setOrbitPosition(192);
        info.setMaskStatusOn(1);
        info.setAntennaType(3);
        info.setLnbLowFreq(9750);
        info.setLnbHighFreq(10600);
        info.setLnbSwitchFreq(11700);
        info.setDiseqcPosition(2);
        info.setTone22k(1);
        info.setSingleCableBandFreqSub(1210);
        satellites.add(1, info);
        VltTvSatelliteInfoBase bare = new VltTvSatelliteInfoBase();
        bare.setOrbitPosition(-8);
        satellites.add(1, bare);
        VltTvSatelliteInfoBase burst = new VltTvSatelliteInfoBase();
        burst.setName("Tre");
        burst.setMaskLnbSingcab(1);
        burst.setMaskLnbSingcabJess(1);
        burst.setDiseqcPosition(6);
        burst.setLnbLowFreq(5150);
        satellites.add(1, burst);
        assertEquals(
                """
                record  position  name       in use  LNB                                                     DiSEqC
                     1    S19.2E  Uno· Züri  yes     universal 9750/10600 MHz                                port 2
                     2     S0.8W             no      -                                                       -
                     3     S0.0E  Tre        no      single cable, single cable, second generation 5150 MHz  burst B
                3 satellites
                """,
                run(storage(), "list", "1", "--kind", "satellites").out());
        assertEquals(
                new Result(1, "", "tavro: satellite list 1 has no record 9\n"),
                run(storage(), "show", "1,9", "--kind", "satellites"));
        assertTrue(run(storage(), "list", "2", "-k", "satellites").err()
                .startsWith("tavro: no satellite list 2 in " + storage() + "; it has satellite list"));
    }
}
