package com.velotra.tv.tavro.tool.services;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;

import com.velotra.tv.tavro.services.channellist.ChannelListException;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.ServiceFlag;
import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import com.velotra.tv.tavro.services.channellist.TransportStreamField;
import com.velotra.tv.tavro.services.channellist.TransportStreamRecord;
import com.velotra.tv.tavro.services.channellist.TvList;
import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkInfo;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.input.ImportFixture;
import com.velotra.tv.tavro.tool.input.ImportReport;
import com.velotra.tv.tavro.tool.satellites.Satellites;
import com.velotra.tv.tavro.tool.transponders.DvbV5File;
import com.velotra.tv.tavro.tool.transponders.ListIds;
import com.velotra.tv.tavro.tool.transponders.StreamImport;
import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.io.PrintStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Collections;
import java.util.EnumSet;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;

/**
 * The records of services, and of the transport streams and networks that they refer to, read back through the natives.
 */
class ServiceImportTest {
    private static final int TERRESTRIAL = 61;
    private static final int CABLE = 62;
    private static final int LIST = 63; // satellite
    private static final String PLAIN = "Uno:11493:H:S19.2E:22000:101:102:0:0:7:1:1019:0";
    private static final String UNKNOWN_IDS = "Due:410:M64:C:6900:0:102:0:0:28013:0:0:0";
    private static final RecordId NONE = new RecordId(0, 0);

    private final VltTvChannelList lists = VltTvChannelList.getInstance();
    private final VltTvTransportStreamList streams = VltTvTransportStreamList.getInstance();
    private final VltTvNetworkList networks = VltTvNetworkList.getInstance();
    private final VltTvSatelliteList satellites = VltTvSatelliteList.getInstance();
    private final ByteArrayOutputStream log = new ByteArrayOutputStream();
    private final List<String> observed = new ArrayList<>();

    @AfterEach
    void deleteLists() {
        for (TvList kind : List.of(lists, streams, networks, satellites)) {
            for (int listId = TERRESTRIAL; listId <= LIST; listId++) {
                if (kind.exists(listId)) {
                    kind.delete(listId);
                }
            }
        }
    }

    private static List<Service> services(String... lines) {
        ChannelsConf conf = ChannelsConf.read(ImportFixture.source("channels.conf", lines));
        assertEquals(List.of(), conf.malformed());
        return conf.services();
    }

    private ImportReport report() {
        return new ImportReport(new PrintStream(log, true, StandardCharsets.UTF_8));
    }

    private ImportReport imported(String... lines) throws IOException, InterruptedException {
        return stored(services(lines));
    }

    private ImportReport stored(List<Service> services) throws IOException, InterruptedException {
        observed.clear();
        ImportReport report = report();
        storeAll(services, report, (service, id, stream) -> observed.add(
                service.place().line() + "=" + id + " on " + stream.id()));
        return report;
    }

    private void storeAll(List<Service> services, ImportReport report, ServiceImport.Observer observer)
            throws IOException, InterruptedException {
        StreamImport streamImport = new StreamImport(
                streams, new Satellites(satellites, LIST), ListIds.from(TERRESTRIAL), report, (transponder, id) -> { });
        new ServiceImport(lists, streams, networks, streamImport, report, observer)
                .storeAll(services, Path.of(System.getenv("TAVRO_HOME")));
    }

    private static String counts(String list, int added, int changed, int unchanged, int records) {
        return String.format("%s: %d added, %d changed, %d unchanged; it holds %d record%s", list, added, changed,
                unchanged, records, records == 1 ? "" : "s");
    }

    private static List<String> names(List<ServiceRecord> services) {
        return services.stream().map(ServiceRecord::name).toList();
    }

    @Test
    void aScrambledNumberedTelevisionServiceIsStoredCompletely() throws Exception {
        imported(":@900", "Uno Züri,U1;Provider:11493:H:S19.2E:22000:101=27:102:103:98c,1833:10301:1:1019:0");
        ServiceRecord stored = lists.getAll(LIST).get(0);
        assertEquals(1, stored.recordId());
        assertEquals("Uno Züri", stored.name());
        assertEquals("U1", stored.shortName());
        assertEquals(10301, stored.serviceId());
        assertEquals(2, stored.broadcastType());
        assertEquals(1, stored.serviceType());
        assertEquals(1, stored.sdtServiceType());
        assertEquals(900, stored.logicalChannelNumber());
        assertEquals(900, stored.majorChannelNumber());
        assertEquals(0x98c, stored.caSystemId());
        assertEquals(1, stored.freeCaMode());
        assertEquals(new RecordId(LIST, 1), stored.transportStream());
        assertEquals(new RecordId(LIST, 1), stored.network());
        assertEquals(
                EnumSet.of(ServiceFlag.ACTIVE, ServiceFlag.EPG, ServiceFlag.VISIBLE, ServiceFlag.NUMERIC_SELECTABLE,
                        ServiceFlag.SCRAMBLED, ServiceFlag.LCN_APPLIED),
                stored.flags());
    }

    @Test
    void aFreeRadioServiceWithoutNumberLeavesTheRestAtZero() throws Exception {
        imported(UNKNOWN_IDS);
        ServiceRecord stored = lists.getAll(CABLE).get(0);
        assertEquals("", stored.shortName());
        assertEquals(2, stored.serviceType());
        assertEquals(2, stored.sdtServiceType());
        assertEquals(0, stored.logicalChannelNumber());
        assertEquals(0, stored.majorChannelNumber());
        assertEquals(0, stored.caSystemId());
        assertEquals(0, stored.freeCaMode());
        assertEquals(NONE, stored.network());
        assertEquals(EnumSet.of(ServiceFlag.ACTIVE, ServiceFlag.EPG, ServiceFlag.VISIBLE,
                ServiceFlag.NUMERIC_SELECTABLE), stored.flags());
    }

    @Test
    void servicesGoToTheListOfTheirMedium() throws Exception {
        ImportReport report = imported(PLAIN, UNKNOWN_IDS, "Tre:529833:I0:T:27500:1:2:0:0:2:0:0:0",
                "Quattro:593:M10:A:0:1:2:0:0:3:0:0:0");
        assertEquals(
                List.of(
                        counts("transport stream list 63", 1, 0, 0, 1), counts("network list 63", 1, 0, 0, 1),
                        counts("service list 63", 1, 0, 0, 1), counts("transport stream list 62", 1, 0, 0, 1),
                        counts("service list 62", 1, 0, 0, 1), counts("transport stream list 61", 2, 0, 0, 2),
                        counts("service list 61", 2, 0, 0, 2)),
                ImportFixture.lists(report));
        assertEquals(List.of("1=63,1 on 63,1", "2=62,1 on 62,1", "3=61,1 on 61,1", "4=61,2 on 61,2"), observed);
        assertEquals(
                List.of(List.of("Tre", "Quattro"), List.of("Due"), List.of("Uno")),
                List.of(names(lists.getAll(TERRESTRIAL)), names(lists.getAll(CABLE)), names(lists.getAll(LIST))));
        assertEquals(Map.of("DVBS", 1, "DVBC/ANNEX_A", 1, "DVBT", 1, "ATSC", 1), report.imported());
    }

    @Test
    void servicesOfOneTransponderAreFoundByItsRecord() throws Exception {
        imported(PLAIN, PLAIN.replace("11493", "11494").replace("1019", "1020"),
                PLAIN.replace("Uno", "Due").replace(":7:", ":8:"));
        assertEquals(List.of("Uno", "Due"), names(lists.byTransportStreamRecord(new RecordId(LIST, 1))));
        assertEquals(List.of("Uno"), names(lists.byTransportStreamRecord(new RecordId(LIST, 2))));
        assertEquals(List.of(), names(lists.byTransportStreamRecord(new RecordId(LIST, 3))));
    }

    @Test
    void aTransportStreamIsStoredOnceWithItsIdsAndItsNetwork() throws Exception {
        imported(PLAIN, PLAIN.replace("Uno", "Due").replace(":7:", ":8:"),
                PLAIN.replace(":H:", ":HS1:").replace(":1:1019", ":85:1020"));
        List<TransportStreamRecord> stored = streams.getAll(LIST);
        assertEquals(2, stored.size());
        assertEquals(List.of(1019, 1020), stored.stream().map(TransportStreamRecord::transportStreamId).toList());
        assertEquals(List.of(1, 85), stored.stream().map(TransportStreamRecord::originalNetworkId).toList());
        assertEquals(List.of(11493000L, 11493000L), stored.stream().map(TransportStreamRecord::frequency).toList());
        assertEquals(List.of(3, 3), stored.stream().map(TransportStreamRecord::medium).toList());
        assertEquals(List.of(1, 2), stored.stream().map(TransportStreamRecord::mode).toList());
        assertEquals(22000000, stored.get(0).value(TransportStreamField.SAT_SYMBOL_RATE));
        assertEquals(List.of(new RecordId(LIST, 1), new RecordId(LIST, 2)),
                stored.stream().map(TransportStreamRecord::network).toList());
        assertEquals(List.of(1, 85), networks.getAll(LIST).stream()
                .map(VltTvNetworkInfo::getNwlNetworkId).toList());
        assertEquals(List.of("Uno", "Due"), names(lists.byTransportStream(LIST, 1019)));
    }

    private static List<Long> values(TransportStreamRecord record, TransportStreamField... fields) {
        return List.of(fields).stream().map(record::value).toList();
    }

    @Test
    void tunerParametersAreStored() throws Exception {
        ImportReport report = imported(
                "A:11493:VC23M5O20N1S1:S19.2E:22000:1:2:0:0:1:1:1:0", "B:410:C34M64:C:6900:1:2:0:0:2:0:0:0",
                "C:474000:B8C34D0G19128M256T32Y0P7S1:T:0:1:2:0:0:3:0:0:0",
                "D:482000:B7C23D12G32M64T8Y0:T:0:1:2:0:0:3:0:0:0");
        assertEquals(
                List.of(1L, 22_000_000L, 3L, 5L, 2L, 2L, 2L, 1L),
                values(streams.getAll(LIST).get(0), TransportStreamField.SAT_POLARIZATION,
                        TransportStreamField.SAT_SYMBOL_RATE,
                        TransportStreamField.SAT_FEC_INNER, TransportStreamField.SAT_CODE_RATE,
                        TransportStreamField.SAT_MODULATION,
                        TransportStreamField.SAT_MODE, TransportStreamField.SAT_ROLL_OFF,
                        TransportStreamField.SAT_PILOT));
        assertEquals(
                List.of(6_900_000L, 4L, 5L, 1L),
                values(streams.getAll(CABLE).get(0), TransportStreamField.CAB_SYMBOL_RATE,
                        TransportStreamField.CAB_FEC_INNER,
                        TransportStreamField.CAB_MODULATION, TransportStreamField.CAB_MODE));
        TransportStreamField[] terrestrial = {
            TransportStreamField.TER_BANDWIDTH, TransportStreamField.TER_CODE_RATE,
            TransportStreamField.TER_GUARD_INTERVAL, TransportStreamField.TER_GUARD_INTERVAL_T2,
            TransportStreamField.TER_MODULATION, TransportStreamField.TER_TRANSMISSION_MODE,
            TransportStreamField.TER_HIERARCHY, TransportStreamField.TER_PLP_ID, TransportStreamField.TER_MODE};
        assertEquals(List.of(3L, 4L, 0L, 6L, 7L, 8L, 1L, 7L, 2L),
                values(streams.getAll(TERRESTRIAL).get(0), terrestrial));
        assertEquals(List.of(2L, 3L, 1L, 0L, 5L, 2L, 1L, 0L, 1L),
                values(streams.getAll(TERRESTRIAL).get(1), terrestrial));
        assertEquals(Map.of("CODE_RATE_LP", 1), report.dropped());
    }

    @Test
    void parametersWithoutAFieldAreReported() throws Exception {
        ImportReport report = imported("A:410:C34I1M12Z3:C:6900:1:2:0:0:2:0:0:0",
                "B:11493:HM99P4S1:S19.2E:22000:1:2:0:0:1:1:1:0");
        assertEquals(
                Map.of("INVERSION", 1, "MODULATION 'DQPSK'", 1, "parameter Z", 1, "MODULATION 'QAM/99'", 1,
                        "STREAM_ID of DVBS2", 1),
                report.dropped());
    }

    @Test
    void onlySatelliteServicesAndStreamsReferToASatellite() throws Exception {
        satellites.open(LIST);
        VltTvSatelliteInfoBase info = new VltTvSatelliteInfoBase();
        info.setOrbitPosition(130);
        satellites.add(LIST, info);
        info.setOrbitPosition(192);
        RecordId satellite = satellites.add(LIST, info);
        ImportReport report = imported(PLAIN, PLAIN.replace("S19.2E", "S5W").replace("1019", "1020"), UNKNOWN_IDS);
        assertEquals(List.of(satellite, NONE), lists.getAll(LIST).stream().map(ServiceRecord::satellite).toList());
        assertEquals(List.of(NONE), lists.getAll(CABLE).stream().map(ServiceRecord::satellite).toList());
        assertEquals(List.of(satellite, NONE), streams.getAll(LIST).stream().map(TransportStreamRecord::satellite)
                .toList());
        assertEquals(List.of(NONE), streams.getAll(CABLE).stream().map(TransportStreamRecord::satellite).toList());
        assertEquals(List.of(1), streams.bySatellite(satellite).stream()
                .map(TransportStreamRecord::recordId).toList());
        assertEquals(Map.of("no satellite at S5W in satellite list 63", 1), report.withoutSatellite());
    }

    @Test
    void theNetworkOfEveryServiceIsNoted() throws Exception {
        imported(
                PLAIN, PLAIN.replace("Uno", "Due").replace(":1:1019", ":85:1020"),
                PLAIN.replace("Uno", "Tre").replace(":7:", ":8:"), UNKNOWN_IDS);
        assertEquals(List.of("Uno", "Tre"), names(lists.byNetwork(LIST, 1)));
        assertEquals(List.of("Due"), names(lists.byNetwork(LIST, 85)));
        assertEquals(List.of(), names(lists.byNetwork(LIST, 2)));
        assertEquals(
                List.of(new RecordId(LIST, 1), new RecordId(LIST, 2), new RecordId(LIST, 1)),
                lists.getAll(LIST).stream().map(ServiceRecord::network).toList());
        assertEquals(List.of(NONE), lists.getAll(CABLE).stream().map(ServiceRecord::network).toList());
    }

    @Test
    void notingANetworkChangesItsFourBytesAlone() throws Exception {
        imported(PLAIN, PLAIN.replace(":7:", ":8:"));
        List<ServiceRecord> before = lists.getAll(LIST);
        ScanStandIn.writeNetworks(Path.of(System.getenv("TAVRO_HOME")), LIST, Map.of(1, new RecordId(LIST, 300)));
        List<ServiceRecord> after = lists.getAll(LIST);
        byte[] expected = before.get(0).bytes();
        expected[30] = LIST;
        expected[31] = 0;
        expected[32] = 300 - 256;
        expected[33] = 1;
        assertArrayEquals(expected, after.get(0).bytes());
        assertEquals(before.get(1), after.get(1));
    }

    @Test
    void frequenciesAreStoredInKilohertzWhateverUnitTheFileHas() throws Exception {
        imported("A:410:M64:C:6900:1:2:0:0:1:0:0:0", "B:529833:I0:T:27500:1:2:0:0:2:0:0:0",
                "C:538000000:I0:T:27500:1:2:0:0:3:0:0:0");
        assertEquals(List.of(410000L), streams.getAll(CABLE).stream().map(TransportStreamRecord::frequency).toList());
        assertEquals(List.of(529833L, 538000L), streams.getAll(TERRESTRIAL).stream()
                .map(TransportStreamRecord::frequency).toList());
    }

    @Test
    void longNamesAreCutAfterAWholeCharacterAndReported() throws Exception {
        String name = "a".repeat(63);
        String shortName = "b".repeat(14);
        ImportReport report = imported(
                PLAIN.replace("Uno", name + "ü," + shortName + "€"),
                PLAIN.replace("Uno", name + "z," + shortName + "ü").replace(":7:", ":8:"));
        assertEquals(List.of(name, name + "z"), names(lists.getAll(LIST)));
        assertEquals(List.of(shortName, shortName + "ü"),
                lists.getAll(LIST).stream().map(ServiceRecord::shortName).toList());
        assertEquals(
                Map.of("the end of a service name longer than 64 bytes", 1,
                        "the end of a short name longer than 16 bytes", 1),
                report.dropped());
    }

    @Test
    void ofRepeatedServicesInOneImportTheFirstIsStored() throws Exception {
        ImportReport report = imported(PLAIN, PLAIN.replace("Uno", "Due"), PLAIN.replace(":7:", ":8:"));
        assertEquals(
                List.of(counts("transport stream list 63", 1, 0, 0, 1), counts("network list 63", 1, 0, 0, 1),
                        "service list 63: 2 added, 0 changed, 0 unchanged, 1 repeated in the files; it holds 2 "
                        + "records"),
                ImportFixture.lists(report));
        assertEquals(List.of("Uno", "Uno"), names(lists.getAll(LIST)));
        assertEquals(List.of("1=63,1 on 63,1", "3=63,2 on 63,1"), observed);
    }

    @Test
    void aSecondImportLeavesEqualServicesUnchanged() throws Exception {
        String[] lines = {PLAIN, PLAIN.replace(":7:", ":8:"), UNKNOWN_IDS};
        imported(lines);
        List<ServiceRecord> before = lists.getAll(LIST);
        ImportReport report = imported(lines);
        assertEquals(
                List.of(counts("transport stream list 63", 0, 0, 1, 1), counts("network list 63", 0, 0, 1, 1),
                        counts("service list 63", 0, 0, 2, 2),
                        counts("transport stream list 62", 0, 0, 1, 1), counts("service list 62", 0, 0, 1, 1)),
                ImportFixture.lists(report));
        assertEquals(before, lists.getAll(LIST));
        assertEquals(List.of("1=63,1 on 63,1", "2=63,2 on 63,1", "3=62,1 on 62,1"), observed);
    }

    @Test
    void aSecondImportChangesWhatTheFileSaysAndAddsWhatIsNew() throws Exception {
        imported(PLAIN, PLAIN.replace(":7:", ":8:"));
        ImportReport report = imported(PLAIN.replace("Uno", "Due"), PLAIN.replace(":7:", ":8:"),
                PLAIN.replace(":7:", ":9:"));
        assertEquals(
                List.of(counts("transport stream list 63", 0, 0, 1, 1), counts("network list 63", 0, 0, 1, 1),
                        counts("service list 63", 1, 1, 1, 3)),
                ImportFixture.lists(report));
        assertEquals(List.of("Due", "Uno", "Uno"), names(lists.getAll(LIST)));
        assertEquals(List.of("Due", "Uno", "Uno"), names(lists.byNetwork(LIST, 1)), "the new one has its network too");
    }

    @Test
    void anUpdateRemovesConditionalAccessAndShortName() throws Exception {
        imported("Uno,U1:11493:H:S19.2E:22000:101:102:0:98c:7:1:1019:0");
        ServiceRecord before = lists.getAll(LIST).get(0);
        assertEquals(List.of(true, 0x98c, "U1"), List.of(before.scrambled(), before.caSystemId(), before.shortName()));
        imported("Uno:11493:H:S19.2E:22000:101:102:0:0:7:1:1019:0");
        ServiceRecord after = lists.getAll(LIST).get(0);
        assertEquals(List.of(false, 0, ""), List.of(after.scrambled(), after.caSystemId(), after.shortName()));
    }

    @Test
    void editsOfTheUserStayWhenTheSourceIsImportedAgain() throws Exception {
        imported(":@900", PLAIN, PLAIN.replace(":7:", ":8:"));
        RecordId id = new RecordId(LIST, 1);
        lists.update(LIST, new VltTvChannelInfoBase().setSvlIdSvlRecId(id).setServiceName("Mine")
                .setVoptChNameEdited(true)
                .setLogicalChannelNumber(7).setVoptChNumEdited(true).setVnetVisible(false)
                        .setVnetNumericSelectable(false));
        ServiceRecord edited = lists.get(id).orElseThrow();
        imported(":@950", PLAIN.replace("Uno", "Due"), PLAIN.replace("Uno", "Due").replace(":7:", ":8:"));
        assertEquals(edited, lists.get(id).orElseThrow());
        ServiceRecord other = lists.get(new RecordId(LIST, 2)).orElseThrow();
        assertEquals(List.of("Due", 951, true), List.of(other.name(), other.logicalChannelNumber(), other.visible()));
    }

    @Test
    void conditionalAccessSystemsAfterTheFirstAreReported() throws Exception {
        ImportReport report = imported("Uno:11493:H:S19.2E:22000:101:102:0:98c,1833:7:1:1019:0");
        assertEquals(Map.of("CA system ids after the first", 1), report.dropped());
    }

    @Test
    void servicesWithOtherNetworksStreamsOrServiceIdsAreDifferent() throws Exception {
        String[] lines = {PLAIN, PLAIN.replace(":1:1019", ":2:1019"), PLAIN.replace(":1:1019", ":1:1020"),
                PLAIN.replace(":7:", ":8:")};
        imported(lines);
        ImportReport report = imported(lines);
        assertEquals(
                List.of(counts("transport stream list 63", 0, 0, 3, 3), counts("network list 63", 0, 0, 2, 2),
                        counts("service list 63", 0, 0, 4, 4)),
                ImportFixture.lists(report));
        assertEquals(List.of("1=63,1 on 63,1", "2=63,2 on 63,2", "3=63,3 on 63,3", "4=63,4 on 63,1"), observed);
    }

    @Test
    void aServiceThatMovedToAnotherTransponderIsFoundByItsIds() throws Exception {
        imported(PLAIN);
        ImportReport report = imported(PLAIN.replace("11493", "11494"));
        assertEquals(
                List.of(counts("transport stream list 63", 1, 0, 0, 2), counts("network list 63", 0, 0, 1, 1),
                        counts("service list 63", 0, 1, 0, 1)),
                ImportFixture.lists(report));
        assertEquals(List.of("1=63,1 on 63,2"), observed);
        assertEquals(new RecordId(LIST, 2), lists.getAll(LIST).get(0).transportStream());
    }

    @Test
    void aServiceWhoseIdsAreNotKnownIsFoundByItsTransportStream() throws Exception {
        String[] lines = {UNKNOWN_IDS, UNKNOWN_IDS.replace("410", "418"), UNKNOWN_IDS.replace("28013", "28014")};
        imported(lines);
        ImportReport report = imported(lines);
        assertEquals(
                List.of(counts("transport stream list 62", 0, 0, 2, 2), counts("service list 62", 0, 0, 3, 3)),
                ImportFixture.lists(report));
        assertEquals(List.of("1=62,1 on 62,1", "2=62,2 on 62,2", "3=62,3 on 62,1"), observed);
    }

    @Test
    void aServiceIsTheSameOnceItsIdsAreKnown() throws Exception {
        imported(UNKNOWN_IDS);
        ImportReport report = imported(UNKNOWN_IDS.replace("28013:0:0", "28013:1:1019"));
        assertEquals(
                List.of(counts("transport stream list 62", 0, 1, 0, 1), counts("network list 62", 1, 0, 0, 1),
                        counts("service list 62", 0, 1, 0, 1)),
                ImportFixture.lists(report));
        assertEquals(List.of("1=62,1 on 62,1"), observed);
        assertEquals(List.of("Due"), names(lists.byNetwork(CABLE, 1)));
    }

    @Test
    void aNetworkThatIsThereIsUsedAgain() throws Exception {
        imported(PLAIN);
        imported(PLAIN.replace(":7:", ":8:"), PLAIN.replace(":1:1019", ":85:1020"));
        assertEquals(
                List.of("1 Network 1", "85 Network 85"),
                networks.getAll(LIST).stream()
                        .map(n -> n.getNwlNetworkId() + " " + n.getNetworkName()).toList());
        assertEquals(List.of(1, 1, 2), lists.getAll(LIST).stream()
                .map(service -> service.network().recordId()).toList());
    }

    @Test
    void servicesOfTheDvbV5ToolsAreStoredWithTheirTransponders() throws Exception {
        DvbV5File file = DvbV5File.read(ImportFixture.source(
                "Uno-19.2E", "[Uno]", "SERVICE_ID = 7", "NETWORK_ID = 1", "TRANSPORT_ID = 1019", "VCHANNEL = 12",
                "VIDEO_PID = 101",
                "AUDIO_PID = 102", "FREQUENCY = 11493000", "POLARIZATION = HORIZONTAL", "SYMBOL_RATE = 22000000",
                "DELIVERY_SYSTEM = DVBS",
                "[Due]", "SERVICE_ID = 8"));
        ImportReport report = stored(DvbV5Services.of(file).services());
        assertEquals(List.of("1=63,1 on 63,1"), observed);
        ServiceRecord stored = lists.getAll(LIST).get(0);
        assertEquals(List.of("Uno", 7, 12, 1),
                List.of(stored.name(), stored.serviceId(), stored.logicalChannelNumber(), stored.serviceType()));
        assertEquals(Map.of("no delivery system", 1), report.notImported());
        assertEquals(Map.of(), report.dropped());
        assertEquals("  not imported Uno-19.2E:12: no delivery system\n", log.toString(StandardCharsets.UTF_8));
        assertEquals(
                List.of(counts("transport stream list 63", 0, 0, 1, 1), counts("network list 63", 0, 0, 1, 1),
                        counts("service list 63", 0, 0, 1, 1)),
                ImportFixture.lists(imported(PLAIN)), "the same service in the other form; it keeps its number");
    }

    @Test
    void aLongImportReportsItsProgress() throws Exception {
        imported(Collections.nCopies(1001, PLAIN).toArray(String[]::new));
        assertEquals("  1000 of 1001 services\n", log.toString(StandardCharsets.UTF_8));
    }

    @Test
    void failingStorageStopsTheImportAndKeepsWhatWasStored() {
        List<String> stored = new ArrayList<>();
        ChannelListException failure = assertThrows(ChannelListException.class, () -> storeAll(
                services(PLAIN, PLAIN.replace(":7:", ":8:"), UNKNOWN_IDS), report(), (service, id, stream) -> {
                    stored.add(service.place() + " " + id);
                    lists.delete(LIST);
                }));
        assertEquals("cannot add a service to list 63", failure.problem());
        assertEquals(List.of("channels.conf:1 63,1"), stored);
        assertEquals(1, streams.getAll(LIST).size());
        assertFalse(lists.exists(CABLE), "nothing after the failure is stored");
    }
}
