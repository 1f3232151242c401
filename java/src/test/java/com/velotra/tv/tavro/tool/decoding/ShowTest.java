package com.velotra.tv.tavro.tool.decoding;

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
import com.velotra.tv.tavro.tool.ToolProcess;
import com.velotra.tv.tavro.tool.ToolProcess.Result;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.ListFile;
import java.nio.file.Path;
import java.util.List;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** ./tavro show. */
class ShowTest {
    private static final int LIST = 40;

    @BeforeAll
    static void makeLists() {
        VltTvSatelliteList satellites = VltTvSatelliteList.getInstance();
        satellites.open(LIST);
        VltTvSatelliteInfoBase satellite = new VltTvSatelliteInfoBase();
        satellite.setName("Uno\u001b Züri");
        satellite.setOrbitPosition(-8);
        satellite.setMaskStatusOn(1);
        satellite.setLnbLowFreq(9750);
        satellite.setDiseqcPosition(6);
        satellites.add(LIST, satellite);
        VltTvNetworkList networks = VltTvNetworkList.getInstance();
        networks.open(LIST);
        VltTvNetworkInfoBase network = new VltTvNetworkInfoBase();
        network.setNwlNetworkId(8468);
        network.setNetworkName("Rete");
        network.setNwlFavNetwork(1);
        networks.add(LIST, network);
        VltTvTransportStreamList streams = VltTvTransportStreamList.getInstance();
        streams.open(LIST);
        streams.add(LIST, new VltTvTransportStreamInfoBase().setBroadcastMedium(3).setFrequency(12187000)
                .setTunerPolarizaTion(1).setSymbolRate(27500000).setModulation(2)
                .setTslSatlRecId(new RecordId(LIST, 1)).setTslNwlRecId(new RecordId(LIST, 1)));
        VltTvChannelList services = VltTvChannelList.getInstance();
        services.open(LIST);
        services.add(LIST, new VltTvChannelInfoBase().setBroadcastType(5).setServiceName("Zwölf Töne").setServiceId(101)
                .setServiceType(1).setVnetVisible(true).setTslRecId(new RecordId(LIST, 1))
                .setSatlRecId(new RecordId(LIST, 7)));
    }

    private static Result show(String... more) {
        String[] words = new String[more.length + 2];
        words[0] = "show";
        words[1] = LIST + ",1";
        System.arraycopy(more, 0, words, 2, more.length);
        return ToolProcess.runHere(words);
    }

    @Test
    void aServiceIsDecodedAndItsReferencesAreFollowed() {
        assertEquals(new Result(0,
                """
                record id                      1
                channel id                     0x00000000 (major 0, minor 0)
                network flags                  0x00000009 (VnetVisible, 0x1)
                option flags                   0x00000000
                option flags 2                 0x00000000
                service id                     101
                transport stream list          40
                transport stream record        1 (40,1 "12187000 V")
                network list                   0
                network record                 0
                satellite list                 40
                satellite record               7 (40,7 does not exist)
                broadcast type                 5 (type 5)
                service type                   1 (audio and video)
                name                           "Zwölf Töne"
                SDT service type               0
                """, ""), show());
    }

    @Test
    void aNetworkIsDecoded() {
        assertEquals(new Result(0,
                """
                flags                          0x00000004 (NwlFavNetwork)
                record id                      1
                list                           0
                network id                     8468
                version                        0
                name                           "Rete"
                """, ""), show("-k", "networks"));
    }

    @Test
    void aSatelliteIsDecodedAndItsNameIsSafeForTheTerminal() {
        List<String> lines = show("-k", "satellites").out().lines().toList();
        assertEquals("flags                          0x00002000 (MaskStatusOn)", lines.get(1));
        assertEquals("low band oscillator            9750 MHz", lines.get(3));
        assertEquals("DiSEqC port                    0", lines.get(7));
        assertEquals("tone burst                     1 (burst B)", lines.get(9));
        assertEquals("orbital position               -8 (S0.8W)", lines.get(lines.size() - 3));
        assertEquals("name                           \"Uno· Züri\"", lines.get(lines.size() - 2));
    }

    @Test
    void theNameOfAReferencedRecordIsSafeForTheTerminal() {
        String out = show("-k", "streams").out();
        assertTrue(out.endsWith("\nsatellite record               1 (40,1 \"Uno· Züri\")\n"), out);
    }

    @Test
    void bytesThatNoFieldHasArePrinted(@TempDir Path folder) {
        byte[] bytes = new byte[304];
        bytes[4] = 1;
        bytes[300] = 9;
        Path file = folder.resolve("file");
        ListFile.write(file, RecordList.of(Kind.NETWORKS, 42, "nwl_42", bytes));
        VltTvNetworkList.getInstance().load(42, file.toString());
        assertTrue(ToolProcess.runHere("show", "42,1", "-k", "networks").out()
                .endsWith("\nname                           \"\"\nunnamed bytes                  300:09\n"));
        String table = ToolProcess.runHere("show", "42,1", "-k", "networks", "--bytes").out();
        assertTrue(table.endsWith("\n               unnamed bytes  300:09\n"), table);
    }

    @Test
    void bytesAddPlaceHeaderNameAndJavaKey() {
        assertEquals(new Result(0,
                """
                offset  bytes  field       value                       header name     Java key
                     0      4  flags       0x00000004 (NwlFavNetwork)  ui4_nwl_flags
                                 bit 0x2     0                                         NwlFavNetworkCandidate
                                 bit 0x4     1                                         NwlFavNetwork
                     4      2  record id   1                           ui2_nwl_rec_id  NwlIdNwlRecId
                     6      2  list        0                           ui2_nwl_id
                    10      2  network id  8468                        ui2_nw_id       NwlNetworkId
                    12      1  version     0                           ui1_nw_version  NetworkVersion
                    13     32  name        "Rete"                      ac_nw_name      NetworkName
                """, ""), show("-k", "networks", "--bytes"));
        List<String> rows = show("-k", "streams", "--bytes").out().lines()
                .map(line -> line.strip().replaceAll(" {2,}", "|")).toList();
        for (String row : List.of(
                "18|2|network record|1 (40,1 \"Rete\")|ui2_nwl_rec_id|TslNwlRecId",
                "56|4|symbol rate|27500000 Bd|u_tuner.t_sat.ui4_sym_rate|SymbolRate",
                "92|4|mode|0|u_tuner.t_sat.e_mode|BroadcastMode, Standard")) {
            assertTrue(rows.contains(row), row + " in " + rows);
        }
    }

    @Test
    void hexPrintsTheBytesOfEveryKind() {
        for (String[] kind : new String[][] {{"services", "0220"}, {"streams", "02d0"}, {"networks", "0120"},
                {"satellites", "0190"}}) {
            String out = show("--hex", "-k", kind[0]).out();
            List<String> lines = out.lines().toList();
            assertTrue(lines.get(lines.size() - 1).startsWith(kind[1] + "  00 00 "), out);
        }
        String network = show("--hex", "-k", "networks").out();
        assertTrue(network.contains(
                "\n0000  04 00 00 00 01 00 00 00 00 00 14 21 00 52 65 74  ...........!.Ret\n"), network);
        assertFalse(show("-k", "networks").out().contains("0000  "));
    }

    @Test
    void jsonHasValuesTextsAndOnRequestPlacesAndBytes() {
        String plain = show("-k", "networks", "--json").out();
        assertTrue(plain.startsWith(
                """
                {
                  "list": 40,
                  "kind": "networks",
                  "record": 1,
                  "fields": {
                    "flags": {
                      "value": 4,
                      "text": "0x00000004 (NwlFavNetwork)",
                      "flags": [
                        "NwlFavNetwork"
                      ]
                    },
                    "record_id": {
                """), plain);
        assertTrue(plain.endsWith(
                """
                    "name": {
                      "value": "Rete",
                      "text": "\\"Rete\\""
                    }
                  },
                  "unnamed_bytes": ""
                }
                """), plain);
        String all = show("-k", "networks", "--json", "--bytes", "--hex").out();
        assertTrue(all.contains(
                """
                    "network_id": {
                      "value": 8468,
                      "text": "8468",
                      "offset": 10,
                      "width": 2,
                      "path": "ui2_nw_id",
                      "keys": [
                        "NwlNetworkId"
                      ]
                    },
                """), all);
        assertTrue(all.contains("  \"unnamed_bytes\": \"\",\n  \"hex\": \"0400000001000000000014210052657465000"), all);
    }

    @Test
    void wrongUsageAndMissingRecordsAreReported() {
        assertEquals(new Result(1, "", "tavro: network list 40 has no record 9\n"),
                ToolProcess.runHere("show", "40,9", "-k", "networks"));
        assertEquals(new Result(1, "", "tavro: satellite list 40 has no record 65534\n"),
                ToolProcess.runHere("show", "40,65534", "-k", "satellites"));
        for (String kind : List.of("services", "streams", "networks", "satellites")) {
            Result missing = ToolProcess.runHere("show", "41,1", "-k", kind);
            assertEquals(1, missing.exit());
            assertTrue(missing.err().matches("tavro: no .* list 41 in .*; it has .* list 40\n"), missing.err());
        }
        Result wrong = ToolProcess.runHere("show", "40,x", "--bytes");
        assertEquals(new Result(2, "", "tavro: show: '40,x' is not a record: write LIST,RECORD, a list id from 1 to "
                + "65535 and a record id from 0 to 65534\nSee: ./tavro show --help\n"), wrong);
    }
}
