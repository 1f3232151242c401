package com.velotra.tv.tavro.tool.transponders;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.TransportStreamRecord;
import com.velotra.tv.tavro.services.channellist.TvList;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.input.ImportFixture;
import com.velotra.tv.tavro.tool.input.ImportReport;
import com.velotra.tv.tavro.tool.satellites.Satellites;
import java.io.ByteArrayOutputStream;
import java.io.PrintStream;
import java.nio.charset.StandardCharsets;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;

/** The record of a transponder, read back through the natives by offset. */
class StreamImportTest {
    private static final int FIRST = 21;

    private final VltTvTransportStreamList lists = VltTvTransportStreamList.getInstance();
    private final VltTvSatelliteList satellites = VltTvSatelliteList.getInstance();
    private final ByteArrayOutputStream log = new ByteArrayOutputStream();

    @AfterEach
    void deleteLists() {
        for (int id = FIRST; id < FIRST + 3; id++) {
            for (TvList kind : List.of(lists, satellites)) {
                if (kind.exists(id)) {
                    kind.delete(id);
                }
            }
        }
    }

    private ImportReport imported(String... lines) {
        return importedFrom("table", lines);
    }

    private ImportReport importedFrom(String fileName, String... lines) {
        ImportReport report = new ImportReport(new PrintStream(log, true, StandardCharsets.UTF_8));
        DvbV5File file = DvbV5File.read(ImportFixture.source(fileName, lines));
        report.read(file.transponders().size(), "transponder", file.malformed());
        new StreamImport(lists, new Satellites(satellites, FIRST + 2), ListIds.from(FIRST), report,
                (transponder, id) -> { })
                .storeAll(file.transponders());
        return report;
    }

    private RawRecord only(int list) {
        List<TransportStreamRecord> records = lists.getAll(list);
        assertEquals(1, records.size());
        return new RawRecord(records.get(0).bytes());
    }

    @Test
    void aTerrestrialTransponderIsStoredWithItsTuning() {
        ImportReport report = imported(
                "[C21 MPE2]", "DELIVERY_SYSTEM = DVBT2", "FREQUENCY = 474000000", "BANDWIDTH_HZ = 8000000",
                "CODE_RATE_HP = 3/5",
                "CODE_RATE_LP = NONE", "MODULATION = QAM/256", "TRANSMISSION_MODE = 32K", "GUARD_INTERVAL = 19/256",
                "HIERARCHY = NONE", "STREAM_ID = 7", "INVERSION = AUTO");
        RawRecord record = only(FIRST);
        assertEquals(List.of(2L, 1L, 474000L), List.of(record.u8(4), record.u8(5), record.u32(44)));
        assertEquals(3, record.u32(48), "8 MHz");
        assertEquals(2, record.u32(120), "T2");
        assertEquals(2, record.u32(132), "3/5");
        assertEquals(8, record.u32(76), "32K");
        assertEquals(7, record.u32(148), "19/256");
        assertEquals(1, record.u32(64), "no hierarchy");
        assertEquals(7, record.u8(124), "PLP");
        assertEquals("C21 MPE2", record.text(212));
        assertEquals(Map.of("DVBT2", 1), report.imported());
        assertEquals(Map.of(), report.dropped());
    }

    @Test
    void aSatelliteTransponderIsStoredWithItsTuning() {
        imported("[CHANNEL]", "DELIVERY_SYSTEM = DVBS2", "FREQUENCY = 11362000", "POLARIZATION = RIGHT",
                "SYMBOL_RATE = 22000000",
                "INNER_FEC = 2/3", "MODULATION = PSK/8");
        RawRecord record = only(FIRST + 2);
        assertEquals(List.of(3L, 11362000L, 22000000L), List.of(record.u8(5), record.u32(44), record.u32(56)));
        assertEquals(3, record.u32(68), "FEC");
        assertEquals(5, record.u32(108), "code rate");
        assertEquals(2, record.u32(72), "8PSK");
        assertEquals(3, record.u32(76), "right");
        assertEquals(2, record.u32(92), "S2");
        assertEquals("", record.text(212));
    }

    @Test
    void aCableTransponderIsStoredWithItsTuning() {
        imported("[CHANNEL]", "DELIVERY_SYSTEM = DVBC/ANNEX_A", "FREQUENCY = 330000000", "SYMBOL_RATE = 6900000",
                "INNER_FEC = NONE",
                "MODULATION = QAM/64");
        RawRecord record = only(FIRST + 1);
        assertEquals(List.of(2L, 330000L, 6900000L), List.of(record.u8(5), record.u32(44), record.u32(48)));
        assertEquals(5, record.u32(60), "64-QAM");
        assertEquals(1, record.u32(80), "C");
        assertEquals(0, record.u32(56), "no FEC");
    }

    @Test
    void whatHasNoPlaceIsCountedByReasonAndTheRestIsStored() {
        ImportReport report = imported(
                "[CHANNEL]", "DELIVERY_SYSTEM = ISDBT", "FREQUENCY = 473142857", "BANDWIDTH_HZ = 6000000",
                "ISDBT_LAYERA_FEC = 3/4",
                "ISDBT_LAYERB_FEC = 3/4",
                "[CHANNEL]", "DELIVERY_SYSTEM = DVBS2", "FREQUENCY = 11362000", "INNER_FEC = 9/10", "STREAM_ID = 3",
                "PLS_CODE = 8",
                "[CHANNEL]", "DELIVERY_SYSTEM = DVBS", "FREQUENCY = 11362000", "STREAM_ID = 4294967295", "A\u001b = 1");
        assertEquals(Map.of("ISDBT", 1, "DVBS2", 1, "DVBS", 1), report.imported());
        assertEquals(
                Map.of(
                        "the standard ISDBT", 1, "a fraction of a kHz in FREQUENCY", 1, "ISDB-T layers and segments", 1,
                        "the code rate of INNER_FEC '9/10'", 1, "STREAM_ID of DVBS2", 1, "PLS_CODE", 1, "A·", 1),
                report.dropped());
        assertEquals(473143, only(FIRST).u32(44));
        assertEquals(11, new RawRecord(lists.getAll(FIRST + 2).get(0).bytes()).u32(68), "9/10 as inner FEC");
    }

    private RecordId satelliteAt(int tenths) {
        satellites.open(FIRST + 2);
        VltTvSatelliteInfoBase info = new VltTvSatelliteInfoBase();
        info.setOrbitPosition(tenths);
        return satellites.add(FIRST + 2, info);
    }

    @Test
    void aTransponderRefersToTheSatelliteOfItsFileName() {
        satelliteAt(130);
        RecordId satellite = satelliteAt(-50);
        ImportReport report = importedFrom("Uno_5.0W",
                "[CHANNEL]", "DELIVERY_SYSTEM = DVBS", "FREQUENCY = 11362000", "[CHANNEL]", "DELIVERY_SYSTEM = DVBT",
                "FREQUENCY = 474000000");
        assertEquals(satellite, lists.getAll(FIRST + 2).get(0).satellite());
        assertEquals(new RecordId(0, 0), lists.getAll(FIRST).get(0).satellite());
        assertEquals(lists.getAll(FIRST + 2), lists.bySatellite(satellite));
        assertEquals(Map.of(), report.withoutSatellite());
    }

    private static String[] satelliteTransponder(int kilohertz) {
        return new String[] {"[CHANNEL]", "DELIVERY_SYSTEM = DVBS", "FREQUENCY = " + kilohertz};
    }

    @Test
    void aTransponderWithoutASatelliteIsStoredAndCounted() {
        assertEquals(
                Map.of("no orbital position at the end of the file's name", 1),
                importedFrom("Uno", satelliteTransponder(11_001_000)).withoutSatellite());
        assertEquals(
                Map.of("no satellites in satellite list 23", 1),
                importedFrom("Uno-5.0E", satelliteTransponder(11_002_000)).withoutSatellite());
        satelliteAt(192);
        assertEquals(
                Map.of("no satellite at S5W in satellite list 23", 1),
                importedFrom("Due-5W", satelliteTransponder(11_003_000)).withoutSatellite());
        ImportReport report = importedFrom("Tre-5..0W", satelliteTransponder(11_004_000));
        assertEquals(List.of(0, 0, 0, 0), lists.getAll(FIRST + 2).stream()
                .map(record -> record.satellite().recordId()).toList());
        assertEquals(
                """
                1 file: 1 transponder; 0 malformed lines
                Transport streams, by delivery system:
                       1  DVBS
                Imported without a satellite record, by reason:
                       1  'S5..0W' is not an orbital position
                transport stream list 23: 1 added, 0 changed, 0 unchanged; it holds 4 records
                """,
                ImportFixture.summary(report));
    }

    @Test
    void rollOffAndPilotsOfASatelliteTransponderAreStored() {
        ImportReport report = imported(
                "[CHANNEL]", "DELIVERY_SYSTEM = DVBS2", "FREQUENCY = 11362000", "ROLLOFF = 20", "PILOT = ON");
        assertEquals(2, only(FIRST + 2).u32(100), "0.20");
        assertEquals(1, only(FIRST + 2).u8(112), "pilots");
        assertEquals(Map.of(), report.dropped());
    }

    @Test
    void aParameterOfAnotherMediumDoesNotReachSharedBytes() {
        ImportReport report = imported(
                "[CHANNEL]", "DELIVERY_SYSTEM = DVBC/ANNEX_A", "FREQUENCY = 330000000", "BANDWIDTH_HZ = 6000000",
                "CODE_RATE_HP = 3/4",
                "[CHANNEL]", "DELIVERY_SYSTEM = DVBS", "FREQUENCY = 11362000", "TRANSMISSION_MODE = 8K",
                "[CHANNEL]", "DELIVERY_SYSTEM = DVBT", "FREQUENCY = 474000000", "TRANSMISSION_MODE = 8K",
                "POLARIZATION = VERTICAL",
                "SYMBOL_RATE = 6900000");
        assertEquals(0, only(FIRST + 1).u32(48), "symbol rate");
        assertEquals(0, only(FIRST + 2).u32(76), "polarization");
        assertEquals(2, only(FIRST).u32(76), "transmission mode");
        assertEquals(
                Map.of("BANDWIDTH_HZ", 1, "CODE_RATE_HP", 1, "TRANSMISSION_MODE", 1, "POLARIZATION", 1, "SYMBOL_RATE",
                        1), report.dropped());
    }

    @Test
    void aBandwidthWithoutACodeIsDroppedAndZeroMeansNone() {
        ImportReport report = imported(
                "[CHANNEL]", "DELIVERY_SYSTEM = DVBT", "FREQUENCY = 474000000", "BANDWIDTH_HZ = 7999999",
                "[CHANNEL]", "DELIVERY_SYSTEM = DVBT", "FREQUENCY = 482000000", "BANDWIDTH_HZ = 0");
        assertEquals(List.of(0L, 0L), lists.getAll(FIRST).stream()
                .map(record -> new RawRecord(record.bytes()).u32(48)).toList());
        assertEquals(Map.of("BANDWIDTH_HZ '7999999'", 1), report.dropped());
    }

    @Test
    void aFrequencyThatRoundsToNothingIsNotOne() {
        ImportReport report = imported("[CHANNEL]", "DELIVERY_SYSTEM = DVBT", "FREQUENCY = 499");
        assertEquals(Map.of("FREQUENCY '499' is not a frequency", 1), report.notImported());
    }

    @Test
    void whatCannotBecomeARecordIsCountedByReason() {
        ImportReport report = imported(
                "[A]", "FREQUENCY = 1", "[B]", "DELIVERY_SYSTEM = MORSE", "FREQUENCY = 1", "[C]",
                "DELIVERY_SYSTEM = DVBT",
                "[D]", "DELIVERY_SYSTEM = DVBT", "FREQUENCY = x", "[E]", "DELIVERY_SYSTEM = DVBS",
                "FREQUENCY = 4294967295",
                "[F]", "DELIVERY_SYSTEM = DVBT", "FREQUENCY = 474000000");
        assertEquals(
                Map.of("no delivery system", 1, "unknown delivery system 'MORSE'", 1, "no frequency", 1,
                        "FREQUENCY 'x' is not a frequency", 1,
                        "FREQUENCY '4294967295' is beyond 32 bits of kHz", 1),
                report.notImported());
        assertEquals(Map.of("DVBT", 1), report.imported());
        assertEquals(List.of("transport stream list 21: 1 added, 0 changed, 0 unchanged; it holds 1 record"),
                ImportFixture.lists(report));
    }

    @Test
    void theSummaryAndTheLogNameWhatWasDroppedAndLeftOut() {
        ImportReport report =
                imported("[A]", "nonsense", "[B]", "DELIVERY_SYSTEM = ATSC", "FREQUENCY = 57028615",
                        "MODULATION = VSB/8");
        assertEquals(
                """
                1 file: 2 transponders; 1 malformed line
                Transport streams, by delivery system:
                       1  ATSC
                Not imported, by reason:
                       1  no delivery system
                Imported with values dropped (no field in the record):
                       1  MODULATION 'VSB/8'
                       1  a fraction of a kHz in FREQUENCY
                       1  the standard ATSC
                transport stream list 21: 1 added, 0 changed, 0 unchanged; it holds 1 record
                """,
                ImportFixture.summary(report));
        assertEquals(
                "  malformed line table:2: 'nonsense' is neither a heading nor of the form KEY = VALUE\n"
                        + "  not imported table:1: no delivery system\n",
                log.toString(StandardCharsets.UTF_8));
    }
}
