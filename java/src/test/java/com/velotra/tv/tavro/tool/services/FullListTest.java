package com.velotra.tv.tavro.tool.services;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.services.channellist.TvList;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.input.ImportFixture;
import com.velotra.tv.tavro.tool.input.ImportReport;
import com.velotra.tv.tavro.tool.satellites.Satellites;
import com.velotra.tv.tavro.tool.transponders.ListIds;
import com.velotra.tv.tavro.tool.transponders.StreamImport;
import java.io.IOException;
import java.io.OutputStream;
import java.io.OutputStreamWriter;
import java.io.PrintStream;
import java.io.Writer;
import java.nio.charset.StandardCharsets;
import java.nio.file.Path;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;

/** Lists with the maximum number of records. */
class FullListTest {
    private static final int TERRESTRIAL = 91;
    private static final int CABLE = 92;
    private static final int MOST = 65_534;

    // Numbers of the list kinds in the database.
    private static final int SERVICES = 1;
    private static final int STREAMS = 2;

    private static final String UNO = "Uno:410:M64:C:6900:0:102:0:0:7:0:0:0";
    private static final String DUE = "Due:418:M64:C:6900:0:102:0:0:8:0:0:0";
    private static final String TRE = "Tre:529833:I0:T:27500:1:2:0:0:2:0:0:0";

    private final VltTvChannelList lists = VltTvChannelList.getInstance();
    private final VltTvTransportStreamList streams = VltTvTransportStreamList.getInstance();
    private final VltTvNetworkList networks = VltTvNetworkList.getInstance();

    @AfterEach
    void deleteLists() {
        for (TvList kind : List.of(lists, streams)) {
            for (int listId : new int[] {TERRESTRIAL, CABLE}) {
                if (kind.exists(listId)) {
                    kind.delete(listId);
                }
            }
        }
    }

    private ImportReport imported(String... lines) throws IOException, InterruptedException {
        ImportReport report = new ImportReport(new PrintStream(OutputStream.nullOutputStream()));
        Satellites satellites = new Satellites(VltTvSatelliteList.getInstance(), TERRESTRIAL + 2);
        StreamImport streamImport = new StreamImport(streams, satellites, ListIds.from(TERRESTRIAL), report,
                (transponder, id) -> { });
        new ServiceImport(lists, streams, networks, streamImport, report, (service, id, stream) -> { })
                .storeAll(ChannelsConf.read(ImportFixture.source("channels.conf", lines)).services(),
                        Path.of(System.getenv("TAVRO_HOME")));
        return report;
    }

    /** Copies record 1, the only one of a list, to all other record ids. Adding them one by one would take too long. */
    private static void fill(int kind, int listId) throws IOException, InterruptedException {
        long list = (long) kind << 32 | (long) listId << 16;
        Process sqlite = new ProcessBuilder("sqlite3", "-bail",
                Path.of(System.getenv("TAVRO_HOME"), "lists.db").toString())
                .redirectOutput(ProcessBuilder.Redirect.INHERIT)
                .redirectError(ProcessBuilder.Redirect.INHERIT)
                .start();
        try (Writer sql = new OutputStreamWriter(sqlite.getOutputStream(), StandardCharsets.US_ASCII)) {
            sql.write("BEGIN IMMEDIATE;\n");
            for (int record = 2; record <= MOST; record++) {
                sql.write(String.format(
                        "INSERT INTO records (number, position, bytes)"
                                + " SELECT %d, %d, CAST(x'%02x%02x' || substr(bytes, 3) AS BLOB) FROM records WHERE "
                                + "number = %d;%n",
                        list | record, record + 10, record & 0xFF, record >> 8, list | 1));
            }
            sql.write(String.format(
                    "UPDATE lists SET version = version + 1, next_position = %d WHERE number = %d;%nCOMMIT;%n",
                    MOST + 11, (long) kind << 16 | listId));
        }
        assertEquals(0, sqlite.waitFor());
    }

    private static String counts(String list, int added, int unchanged, int records) {
        return String.format("%s: %d added, 0 changed, %d unchanged; it holds %d record%s", list, added, unchanged,
                records, records == 1 ? "" : "s");
    }

    @Test
    void aFullServiceListDoesNotStopTheImport() throws Exception {
        imported(UNO);
        fill(SERVICES, CABLE);
        ImportReport report = imported(DUE, UNO, TRE);
        assertEquals(Map.of("service list 92 is full: it has 65534 records", 1), report.notImported());
        assertEquals(
                List.of(counts("transport stream list 92", 1, 1, 2), counts("service list 92", 0, 1, MOST),
                        counts("transport stream list 91", 1, 0, 1), counts("service list 91", 1, 0, 1)),
                ImportFixture.lists(report));
    }

    @Test
    void aFullTransportStreamListDoesNotStopTheImport() throws Exception {
        imported(UNO);
        fill(STREAMS, CABLE);
        ImportReport report = imported(DUE, UNO, TRE);
        assertEquals(Map.of("transport stream list 92 is full: it has 65534 records", 1), report.notImported());
        assertEquals(
                List.of(counts("transport stream list 92", 0, 1, MOST), counts("service list 92", 0, 1, 1),
                        counts("transport stream list 91", 1, 0, 1), counts("service list 91", 1, 0, 1)),
                ImportFixture.lists(report));
    }
}
