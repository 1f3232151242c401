package com.velotra.tv.tavro.tool;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.ToolProcess.Result;
import java.util.stream.Collectors;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Test;

/** ./tavro find over one list of each kind, and an empty one. */
class FindCommandTest {
    @BeforeAll
    static void lists() {
        VltTvChannelList services = VltTvChannelList.getInstance();
        services.open(1);
        services.add(1, new VltTvChannelInfoBase().setBroadcastType(2).setServiceName("Zwölf Töne").setServiceId(101)
                .setLogicalChannelNumber(12));
        services.add(1, new VltTvChannelInfoBase().setBroadcastType(2).setServiceName("STRASSE\u001b 101")
                .setServiceId(12).setMajorChannelNumber(7));
        services.open(2);
        VltTvTransportStreamList.getInstance().open(3);
        VltTvTransportStreamList.getInstance().add(3, new VltTvTransportStreamInfoBase().setBroadcastMedium(3)
                .setFrequency(12187000).setTunerPolarizaTion(1).setTransportStreamId(101).setNetworkId(85));
        VltTvNetworkList.getInstance().open(1);
        VltTvNetworkInfoBase network = new VltTvNetworkInfoBase();
        network.setNwlNetworkId(85);
        VltTvNetworkList.getInstance().add(1, network);
        VltTvSatelliteList.getInstance().open(1);
        VltTvSatelliteInfoBase satellite = new VltTvSatelliteInfoBase();
        satellite.setName("Zwölf");
        satellite.setOrbitPosition(192);
        VltTvSatelliteList.getInstance().add(1, satellite);
    }

    /** The kinds and identifiers of what is found, without headings. */
    private static String found(String... texts) {
        String[] words = new String[texts.length + 1];
        words[0] = "find";
        System.arraycopy(texts, 0, words, 1, texts.length);
        Result result = ToolProcess.runHere(words);
        assertEquals("", result.err());
        assertEquals(0, result.exit());
        return result.out().lines().skip(1).filter(line -> line.contains(","))
                .map(line -> String.join(" ", line.split(" +", 3)[0], line.split(" +", 3)[1]))
                .collect(Collectors.joining("; "));
    }

    @Test
    void whatIsFoundIsNamedWithTheReason() {
        assertEquals(
                new Result(0,
                        """
                        kind      record  name          found
                        services  1,1     Zwölf Töne    service id 101
                        services  1,2     STRASSE· 101  name
                        streams   3,1     12187000 V    stream id 101
                        3 records
                        """, ""),
                ToolProcess.runHere("find", "101"));
        assertEquals(
                """
                kind      record  name        found
                services  1,1     Zwölf Töne  name, LCN 12
                1 record
                """,
                ToolProcess.runHere("find", "zwolf", "12").out());
    }

    @Test
    void namesAreFoundInAnyCaseAndWithoutAccents() {
        assertEquals("services 1,1; satellites 1,1", found("ZWOLF"));
        assertEquals("services 1,1", found("töne"));
        assertEquals("services 1,2", found("straße"));
        assertEquals("services 1,1", found("zwölf", "tone"));
    }

    @Test
    void numbersAreFoundByTheirValue() {
        assertEquals("services 1,1; services 1,2", found("12"));
        assertEquals("services 1,2", found("7", "-k", "services"));
        assertEquals("services 1,1; streams 3,1", found("0x65"));
        assertEquals("streams 3,1; networks 1,1", found("85"));
        assertEquals("streams 3,1", found("12187000"));
        assertEquals("streams 3,1", found("12187"));
        assertEquals("satellites 1,1", found("19.2e"));
        assertEquals("satellites 1,1", found("S19.2E", "--kind", "satellites"));
    }

    @Test
    void firstLimitsWhatIsPrinted() {
        assertEquals(
                """
                kind      record  name        found
                services  1,1     Zwölf Töne  service id 101
                … and 2 more
                3 records
                """,
                ToolProcess.runHere("find", "101", "--first", "1").out());
    }

    @Test
    void jsonNamesListAndRecordAsNumbers() {
        assertEquals(
                """
                [
                  {
                    "kind": "satellites",
                    "list": 1,
                    "record": 1,
                    "name": "Zwölf",
                    "found": [
                      "name",
                      "position S19.2E"
                    ]
                  }
                ]
                """,
                ToolProcess.runHere("find", "--json", "zwölf", "19.2E").out());
    }

    @Test
    void nothingFoundExitsWithOne() {
        assertEquals(
                new Result(1, "", "tavro: nothing found: no record in any list has 'nowhere' and '1·' in its name "
                        + "or as a number\n"),
                ToolProcess.runHere("find", "nowhere", "1\u001b"));
        assertEquals(
                new Result(1, "[]\n", "tavro: nothing found: no record in any network list has 'zwölf' in its name "
                        + "or as a number\n"),
                ToolProcess.runHere("find", "zwölf", "-k", "networks", "--json"));
        assertEquals(1, ToolProcess.runHere("find", "99999999999").exit());
    }

    @Test
    void badInputIsReported() {
        assertEquals(
                new Result(2, "", "tavro: find: Missing required parameter: 'TEXT'\nSee: ./tavro find --help\n"),
                ToolProcess.runHere("find"));
        assertEquals(
                new Result(2, "", "tavro: find: '-1' is not a number of records: it must be from 0 to 2147483647\n"
                        + "See: ./tavro find --help\n"),
                ToolProcess.runHere("find", "x", "--first=-1"));
    }
}
