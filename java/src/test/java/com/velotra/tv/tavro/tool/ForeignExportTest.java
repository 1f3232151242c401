package com.velotra.tv.tavro.tool;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.ToolProcess.Result;
import com.velotra.tv.tavro.tool.records.Kind;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** Exports in the formats of other programs, and the import of what they wrote. */
class ForeignExportTest {
    private static final String SATELLITE = """
            Uno,U:11493:HC23M5O20N1S1:S19.2E:22000:101:102:0:0:1:1:1019:0
            a, b:11494:VC34M2S0:S19.2E:27500:0:102:0:0:2:1:1020:0
            Tre:12110:LC56M2S0:S19.2E:27500:101:102:0:1702,1722:3:0:0:0
            :@5
            c|d,e:12110:RC910M6S1:S13.0E:27500:101:102:0:100:4:0:0:0
            :@8 News
             #Cinque:11493:HC23M5S1:S19.2E:22000:101:102:0:0:5:1:1019:0
            """;
    private static final String OTHERS = """
            Koeln:410000:M256:C:6900:101:0:0:0:6:0:0:0
            Bonn:490166:B8C23D0G4M64T8Y0:T:0:101:0:0:0:7:0:0:0
            Neuss:690000:B8C34G19128M256P3T32S1:T:0:101:0:0:0:8:0:0:0
            """;

    @TempDir
    Path folder;

    @AfterEach
    void deleteLists() {
        for (int id = 41; id <= 43; id++) {
            for (Kind kind : Kind.values()) {
                if (kind.lists().exists(id)) {
                    kind.lists().delete(id);
                }
            }
        }
    }

    private void imported(String name, String content) throws Exception {
        Path file = Files.writeString(folder.resolve(name), content);
        Result result = ToolProcess.runHere("import", "--list", "41", file.toString());
        assertEquals(0, result.exit(), result.err());
    }

    private static Result export(int list, String format, String kind) {
        return ToolProcess.runHere("export", Integer.toString(list), "--format", format, "--kind", kind);
    }

    private static List<String> csv(Kind... kinds) {
        List<String> lists = new ArrayList<>();
        for (Kind kind : kinds) {
            for (int id = 41; id <= 43; id++) {
                lists.add(export(id, "csv", kind.toString()).out());
            }
        }
        return lists;
    }

    /** Exports every service list, imports it into empty lists, and checks that no record has changed. */
    private void assertRoundTrip(String format, List<Integer> lists, Kind... compared) throws Exception {
        List<String> before = csv(compared);
        List<String> exported = new ArrayList<>();
        for (int id : lists) {
            Result result = export(id, format, "services");
            assertEquals("", result.err());
            exported.add(result.out());
        }
        deleteLists();
        imported("sources", "S19.2E Astra\nS13E Hotbird\n");
        for (String file : exported) {
            imported("round-trip", file);
        }
        assertEquals(before, csv(compared));
    }

    @Test
    void channelsConfComesBackRecordByRecord() throws Exception {
        imported("sources", "S19.2E Astra\nS13E Hotbird\n");
        imported("satellite", SATELLITE.replace("1702,1722", "1702"));
        imported("others", OTHERS);
        assertRoundTrip("vdr", List.of(41, 42, 43), Kind.SERVICES, Kind.STREAMS, Kind.NETWORKS);
    }

    @Test
    void channelsConfHasNamesNumbersAndTuning() throws Exception {
        imported("sources", "S19.2E Astra\nS13E Hotbird\n");
        imported("satellite", SATELLITE);
        assertEquals(new Result(0, """
                Uno,U:11493:HC23M5O20N1S1:S19.2E:22000:8191:0:0:0:1:1:1019:0
                a,b:11494:VC34M2S0:S19.2E:27500:0:0:0:0:2:1:1020:0
                Tre:12110:LC56M2S0:S19.2E:27500:8191:0:0:1702:3:0:0:0
                :@5
                c|d,e:12110:RC910M6S1:S13.0E:27500:8191:0:0:100:4:0:0:0
                :@8
                 #Cinque:11493:HC23M5O20N1S1:S19.2E:22000:8191:0:0:0:5:1:1019:0
                """, ""), export(43, "vdr", "services"));
    }

    @Test
    void whatAFormatCannotHoldIsCountedByField() throws Exception {
        imported("satellite", SATELLITE);
        VltTvChannelList services = VltTvChannelList.getInstance();
        services.update(43, new VltTvChannelInfoBase().setSvlIdSvlRecId(new RecordId(43, 1))
                .setServiceName("one;two\nthree|four").setLogicalChannelNumber(9).setVnetVisible(false)
                .setServiceRunningStatus(4));
        services.add(43, new VltTvChannelInfoBase().setServiceName("none").setServiceId(77));
        assertEquals(new Result(0, "", """
                Records that are not in the file, by reason:
                       5  no satellite record for its transport stream
                       1  no transport stream record
                """), export(43, "vdr", "services"));
        deleteLists();
        imported("sources", "S19.2E Astra\nS13E Hotbird\n");
        imported("satellite", SATELLITE);
        services.update(43, new VltTvChannelInfoBase().setSvlIdSvlRecId(new RecordId(43, 1))
                .setServiceName("one;two\nthree|four").setLogicalChannelNumber(9).setVnetVisible(false)
                .setServiceRunningStatus(4));
        Result result = export(43, "vdr", "services");
        assertEquals("""
                Not in the file, by field (number of records):
                       1  channel_id
                       1  lcn
                       1  name
                       1  network_mask
                       1  option_mask
                       1  original_lcn
                       1  running_status
                """, result.err());
        assertEquals("one two three|four,U:11493:HC23M5O20N1S1:S19.2E:22000:8191:0:0:0:1:1:1019:0",
                result.out().lines().findFirst().orElseThrow());
    }

    @Test
    void dvbV5ChannelListsComeBackRecordByRecord() throws Exception {
        imported("others", OTHERS.replace("Neuss", "]x[ #1] y"));
        assertRoundTrip("dvbv5", List.of(41, 42), Kind.SERVICES, Kind.STREAMS);
    }

    @Test
    void dvbV5ScanTablesComeBackRecordByRecord() throws Exception {
        imported("sources", "S19.2E Astra\nS13E Hotbird\n");
        imported("Astra-19.2E", """
                [CHANNEL]
                \tDELIVERY_SYSTEM = DVBS2
                \tFREQUENCY = 11493750
                \tPOLARIZATION = LEFT
                \tSYMBOL_RATE = 22000000
                \tINNER_FEC = 3/5
                \tMODULATION = APSK/16
                \tROLLOFF = 25
                \tPILOT = ON

                [Name]
                \tDELIVERY_SYSTEM = DVBT2
                \tFREQUENCY = 690000000
                \tBANDWIDTH_HZ = 1712000
                \tCODE_RATE_HP = 4/5
                \tMODULATION = QAM/256
                \tTRANSMISSION_MODE = 32K
                \tGUARD_INTERVAL = 19/128
                \tHIERARCHY = 4
                \tSTREAM_ID = 7

                [CHANNEL]
                \tDELIVERY_SYSTEM = DVBC/ANNEX_A
                \tFREQUENCY = 330000000
                \tSYMBOL_RATE = 6900123
                \tINNER_FEC = 9/10
                \tMODULATION = QAM/128

                """);
        String written = "";
        for (int list : List.of(43, 41, 42)) {
            Result result = export(list, "dvbv5", "streams");
            assertEquals("", result.err());
            written += result.out();
        }
        assertEquals(Files.readString(folder.resolve("Astra-19.2E")), written);
        imported("Hotbird-13.0E", "[CHANNEL]\nDELIVERY_SYSTEM = DVBS\nFREQUENCY = 11493000\n");
        VltTvTransportStreamList streams = VltTvTransportStreamList.getInstance();
        streams.update(43, new VltTvTransportStreamInfoBase().setTslIdTslRecId(new RecordId(43, 1)).setNetworkId(5)
                .setModulation(28));
        streams.add(43, new VltTvTransportStreamInfoBase().setBroadcastMedium(3));
        assertEquals("""
                Records that are not in the file, by reason:
                       1  no name in the format for its medium or standard, or no frequency
                Not in the file, by field (number of records):
                       1  network_id
                       2  position of the satellite
                       1  sat_modulation
                """, export(43, "dvbv5", "streams").err());
    }

    @Test
    void rowsOfTheTvInputFrameworkHaveItsColumns() throws Exception {
        imported("sources", "S19.2E Astra\nS13E Hotbird\n");
        imported("satellite", SATELLITE);
        imported("others", OTHERS);
        VltTvChannelList services = VltTvChannelList.getInstance();
        services.update(43, new VltTvChannelInfoBase().setSvlIdSvlRecId(new RecordId(43, 2)).setVnetVisible(false)
                .setVnetEpg(false).setVentChannelBlock(true));
        services.update(43, new VltTvChannelInfoBase().setSvlIdSvlRecId(new RecordId(43, 3)).setVoptDeletedByUser(true)
                .setServiceType(3));
        services.add(43, new VltTvChannelInfoBase().setServiceName("none").setServiceId(77).setBroadcastType(7)
                .setServiceType(8));
        String header = "type,service_type,original_network_id,transport_stream_id,service_id,display_number,"
                + "display_name,network_affiliation,browsable,searchable,locked,internal_provider_data\n";
        assertEquals(new Result(0, header + """
                TYPE_DVB_S2,SERVICE_TYPE_AUDIO_VIDEO,1,1019,1,,Uno,Network 1,1,1,0,"43,1"
                TYPE_DVB_S,SERVICE_TYPE_AUDIO,1,1020,2,,a,Network 1,0,0,1,"43,2"
                TYPE_DVB_S,SERVICE_TYPE_OTHER,0,0,3,,Tre,,0,1,0,"43,3"
                TYPE_DVB_S2,SERVICE_TYPE_AUDIO_VIDEO,0,0,4,5,c:d,,1,1,0,"43,4"
                TYPE_DVB_S2,SERVICE_TYPE_AUDIO_VIDEO,1,1019,5,8,"#Cinque",Network 1,1,1,0,"43,5"
                TYPE_DTMB,SERVICE_TYPE_AUDIO,,,77,,none,,0,0,0,"43,6"
                """, ""), export(43, "tif", "services"));
        assertEquals(new Result(0, header + """
                TYPE_DVB_T,SERVICE_TYPE_AUDIO_VIDEO,0,0,7,,Bonn,,1,1,0,"41,1"
                TYPE_DVB_T2,SERVICE_TYPE_AUDIO_VIDEO,0,0,8,,Neuss,,1,1,0,"41,2"
                """, ""), export(41, "tif", "services"));
        assertEquals(new Result(0, """
                [
                  {
                    "type": "TYPE_DVB_C",
                    "service_type": "SERVICE_TYPE_AUDIO_VIDEO",
                    "original_network_id": 0,
                    "transport_stream_id": 0,
                    "service_id": 6,
                    "display_name": "Koeln",
                    "browsable": 1,
                    "searchable": 1,
                    "locked": 0,
                    "internal_provider_data": "42,1"
                  }
                ]
                """, ""), export(42, "tif-json", "services"));
    }
}
