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
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.ToolProcess.Result;
import java.nio.file.Path;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** ./tavro list over three services on two transport streams, a network and two satellites. */
class ListCommandTest {
    private static final String SEE_HELP = "See: ./tavro list --help\n";

    @TempDir
    Path folder;

    @BeforeAll
    static void lists() {
        VltTvSatelliteList.getInstance().open(1);
        for (int position : new int[] {192, -50}) {
            VltTvSatelliteInfoBase satellite = new VltTvSatelliteInfoBase();
            satellite.setName(position > 0 ? "Astra" : "");
            satellite.setOrbitPosition(position);
            VltTvSatelliteList.getInstance().add(1, satellite);
        }
        VltTvNetworkList.getInstance().open(1);
        VltTvNetworkInfoBase network = new VltTvNetworkInfoBase();
        network.setNwlNetworkId(133);
        network.setNetworkName("Network");
        VltTvNetworkList.getInstance().add(1, network);
        VltTvTransportStreamList streams = VltTvTransportStreamList.getInstance();
        streams.open(1);
        for (int stream = 1; stream <= 2; stream++) {
            streams.add(1, new VltTvTransportStreamInfoBase().setBroadcastMedium(3).setStandard(4 + stream)
                    .setFrequency(12_000_000 + stream).setTunerPolarizaTion(stream - 1).setSymbolRate(22_000_000)
                    .setTransportStreamId(1000 + stream).setNetworkId(132 + stream)
                    .setTslNwlRecId(new RecordId(1, 1)).setTslSatlRecId(new RecordId(1, stream)));
        }
        VltTvChannelList services = VltTvChannelList.getInstance();
        services.open(1);
        for (int service = 1; service <= 3; service++) {
            services.add(1, new VltTvChannelInfoBase().setBroadcastType(2).setServiceType(1).setServiceId(service)
                    .setVnetVisible(true).setServiceName(new String[] {"Zwölf", "Élan", "sport, \"24\""}[service - 1])
                    .setLogicalChannelNumber(30 - service).setTslRecId(new RecordId(1, (service + 1) / 2)));
        }
    }

    private static String list(String... words) {
        String[] arguments = new String[words.length + 2];
        arguments[0] = "list";
        arguments[1] = "1";
        System.arraycopy(words, 0, arguments, 2, words.length);
        Result result = ToolProcess.runHere(arguments);
        assertEquals("", result.err());
        assertEquals(0, result.exit());
        return result.out();
    }

    @Test
    void usualColumnsAreFollowedByWhatServicesReferTo() {
        assertEquals(
                """
                record  LCN  name         service id  type  scrambled  shown  transport stream  \
                frequency  polarization  satellite
                     1   29  Zwölf                 1  TV    no         yes    1,1                \
                12000001  H             Astra
                     2   28  Élan                  2  TV    no         yes    1,1                \
                12000001  H             Astra
                     3   27  sport, "24"           3  TV    no         yes    1,2                \
                12000002  V             S5.0W
                3 services
                """,
                list());
        assertEquals(
                """
                record  standard  frequency  polarization  symbol rate  stream id  \
                original network id  network record  network  satellite  name
                     1  DVB-S      12000001  H                22000000       1001                    \
                0  1,1             Network  Astra
                     2  DVB-S2     12000002  V                22000000       1002                    \
                0  1,1             Network  S5.0W
                2 transport streams
                """,
                list("-k", "streams"));
    }

    @Test
    void chosenColumnsAreSortedAndFiltered() {
        assertEquals(
                """
                LCN  name         frequency  position
                 27  sport, "24"   12000002     S5.0W
                 28  Élan          12000001    S19.2E
                … and 1 more
                3 services
                """,
                list("--columns", "lcn,name,freq,pos", "--sort", "lcn", "--first", "2"));
        assertEquals(
                """
                name
                Zwölf
                Élan
                2 services
                """,
                list("--columns=name", "--sort=-freq,-name", "--where", "pol=H and not name~sport"));
        assertEquals("name\n0 services\n", list("--columns", "name", "--where", "sid>3"));
    }

    @Test
    void jsonHasNumbersBooleansTextsAndNulls() {
        assertEquals(
                """
                [
                  {
                    "name": "sport, \\"24\\"",
                    "service_id": 3,
                    "shown": true,
                    "polarization": "V",
                    "position": "S5.0W",
                    "network_record": null
                  }
                ]
                """,
                list("--json", "--where", "sid=3", "--columns", "name,sid,shown,pol,position,network_record"));
        assertEquals("[]\n", list("--json", "--where", "sid=4"));
        assertEquals(
                """
                [
                  {
                    "record_id": 1,
                    "network_id": 133,
                    "name": "Network",
                    "version": 0,
                    "favorite": false,
                    "candidate": false
                  }
                ]
                """,
                list("--json", "-k", "networks"));
    }

    /** The record ids that filters select. */
    private static String selected(String... filters) {
        String[] words = new String[filters.length + 2];
        words[0] = "--columns";
        words[1] = "record";
        System.arraycopy(filters, 0, words, 2, filters.length);
        return list(words).lines().skip(1).map(String::strip).reduce((a, b) -> a + " " + b).orElseThrow();
    }

    @Test
    void nativesFilterByStreamNetworkAndSatellite() {
        assertEquals("1 2 2 services", selected("--by-stream", "1,1"));
        assertEquals("3 1 service", selected("--by-stream", "1002"));
        assertEquals("0 services", selected("--by-stream", "2,1"));
        assertEquals("0 services", selected("--by-stream", "65535"));
        assertEquals("2 1 transport stream", selected("--by-satellite", "1,2", "-k", "streams"));
        assertEquals("1 1 transport stream", selected("--by-satellite", "S19.2E", "-k", "streams"));
        assertEquals("1 2 2 services", selected("--by-satellite", "19.2e"));
        assertEquals("3 1 service", selected("--by-satellite", "5W", "--where", "lcn<28"));
        assertEquals("2 1 satellite", selected("--by-satellite", "5.0W", "-k", "satellites"));
        assertEquals("1 1 transport stream", selected("--by-network", "133", "-k", "streams"));
        assertEquals("0 services", selected("--by-network", "133"));
        assertEquals("0 services", selected("--by-stream", "1,1", "--by-satellite", "5W"));
        assertEquals("2 1 service", selected("--by-stream", "1,1", "--by-satellite", "19.2E", "--where", "sid=2"));
    }

    @Test
    void recordsOfOtherListsAreFilteredAndNoListIsCreated() throws Exception {
        VltTvChannelList services = VltTvChannelList.getInstance();
        services.open(2);
        services.clean(2);
        services.add(2, new VltTvChannelInfoBase().setTslRecId(new RecordId(1, 2)));
        services.add(2, new VltTvChannelInfoBase().setTslRecId(new RecordId(77, 1)));
        for (String stream : new String[] {"1,2", "1002"}) {
            assertEquals("record\n     1\n1 service\n",
                    ToolProcess.runHere("list", "2", "--columns", "record", "--by-stream", stream).out());
        }
        assertEquals("record\n     2\n1 service\n",
                ToolProcess.runHere("list", "2", "--columns", "record", "--by-stream", "77,1").out());
        // In a process of its own, whose standard error has the log lines of the platform.
        assertEquals(new Result(0, "record\n0 services\n", ""), ToolProcess.run(folder,
                Map.of("TAVRO_HOME", System.getenv("TAVRO_HOME")), "list", "2", "--columns=record", "--by-stream=5"));
        assertFalse(VltTvTransportStreamList.getInstance().exists(77));
    }

    @Test
    void helpOfColumnsListsThemWithTheirShortNames() {
        List<String> columns = list("--columns", "help").lines().toList();
        assertEquals("column                     short   values  unit  meaning", columns.get(0));
        for (String column : List.of(
                "frequency                  freq    number  kHz   frequency",
                "symbol_rate                sr      number  Bd    symbol rate",
                "polarization               pol     code          polarization",
                "lcn                                number        LCN",
                "VnetScrambled                      flag          VnetScrambled")) {
            assertTrue(columns.contains(column), column + " is not in " + columns);
        }
    }

    private static void assertWrong(String message, String... words) {
        String[] arguments = new String[words.length + 2];
        arguments[0] = "list";
        arguments[1] = "1";
        System.arraycopy(words, 0, arguments, 2, words.length);
        assertEquals(new Result(2, "", "tavro: list: " + message + "\n" + SEE_HELP), ToolProcess.runHere(arguments));
    }

    @Test
    void badInputIsReported() {
        assertWrong("unknown column 'fre' of services: --columns help lists all", "--columns", "name,fre");
        assertWrong("unknown column '' of services: --columns help lists all", "--columns", "name,");
        assertWrong("unknown column 'x' of networks: --columns help lists all", "--sort=-x", "-k", "networks");
        assertWrong("expected a value after '>'\n  freq>\n       ^", "--where", "freq>");
        assertWrong("'x' is not a transport stream: write LIST,RECORD or a transport stream id: it must be from 0 to "
                + "65535", "--by-stream", "x");
        assertWrong("'65536' is not a network id: it must be from 0 to 65535", "--by-network", "65536");
        assertWrong("'19.2' is not a satellite: write LIST,RECORD or a position such as 19.2E",
                "--by-satellite", "19.2");
        assertWrong("'0,1' is not a record: write LIST,RECORD, a list id from 1 to 65535 and a record id from 0 to "
                + "65534", "--by-satellite", "0,1");
        assertWrong("--by-stream does not select streams, but services", "--by-stream", "1", "-k", "streams");
        assertWrong("--by-network does not select satellites, but services and streams", "--by-network", "1", "-k",
                "satellites");
    }
}
