package com.velotra.tv.tavro.tool;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import com.velotra.tv.tavro.services.channellist.TransportStreamField;
import com.velotra.tv.tavro.services.channellist.TransportStreamRecord;
import com.velotra.tv.tavro.services.channellist.TvList;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.satellites.Satellites;
import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.io.PrintStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Collections;
import java.util.List;
import java.util.Map;
import java.util.Set;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** What the importer stores, read back through the natives. */
class ServiceImportTest {
    private static final int LIST = 1;
    private static final int MISSING = 77;
    private static final String PLAIN = "Uno:11493:H:S19.2E:22000:101:102:0:0:7:1:1019:0";

    @TempDir
    Path folder;

    private final VltTvChannelList lists = VltTvChannelList.getInstance();
    private final VltTvTransportStreamList streams = VltTvTransportStreamList.getInstance();
    private final VltTvNetworkList networks = VltTvNetworkList.getInstance();
    private final VltTvSatelliteList satellites = VltTvSatelliteList.getInstance();
    private CompanionImport companions;
    private final ByteArrayOutputStream progress = new ByteArrayOutputStream();

    @BeforeEach
    void openList() {
        lists.open(LIST);
    }

    @AfterEach
    void deleteLists() {
        for (TvList kind : List.of(lists, streams, networks, satellites)) {
            for (int listId : new int[] {LIST, MISSING}) {
                if (kind.exists(listId)) {
                    kind.delete(listId);
                }
            }
        }
    }

    private List<ServiceRecord> imported(List<String> lines) throws IOException {
        return imported(LIST, lines);
    }

    private List<ServiceRecord> imported(int listId, List<String> lines) throws IOException {
        ChannelsConf conf = ChannelsConf.read(Files.write(folder.resolve("channels.conf"), lines));
        assertEquals(List.of(), conf.malformed);
        companions = new CompanionImport(streams, networks, new Satellites(satellites, listId), listId);
        new ServiceImport(lists, companions, listId, new PrintStream(progress, true, StandardCharsets.UTF_8)).addAll(conf.services);
        return lists.getAll(listId);
    }

    @Test
    void aScrambledNumberedTelevisionServiceIsStoredWithAllThatTheFileTells() throws IOException {
        ServiceRecord stored = imported(
                List.of(":@900", "Uno Züri,U1;Provider:11493:H:S19.2E:22000:101=27:102:103:98c,1833:10301:1:1019:0")).get(0);
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
        assertEquals(
                Set.of("VnetActive", "VnetEpg", "VnetVisible", "VnetNumericSelectable", "VnetScrambled"),
                stored.networkFlags());
        assertEquals(Set.of("VoptLcnApplied"), stored.optionFlags());
    }

    @Test
    void aFreeRadioServiceWithoutNumberLeavesTheRestAtZero() throws IOException {
        ServiceRecord stored = imported(List.of("Due:410:M64:C:6900:0:102:0:0:28013:0:0:0")).get(0);
        assertEquals("", stored.shortName());
        assertEquals(2, stored.serviceType());
        assertEquals(2, stored.sdtServiceType());
        assertEquals(0, stored.logicalChannelNumber());
        assertEquals(0, stored.majorChannelNumber());
        assertEquals(0, stored.caSystemId());
        assertEquals(0, stored.freeCaMode());
        assertFalse(stored.scrambled());
        assertEquals(Set.of(), stored.optionFlags());
    }

    @Test
    void servicesOfOneTransponderAreFoundByItsRecord() throws IOException {
        imported(List.of(PLAIN, PLAIN.replace("11493", "11494"), PLAIN.replace("Uno", "Due")));
        assertEquals(List.of("Uno", "Due"), names(lists.byTransportStreamRecord(LIST, 1)));
        assertEquals(List.of("Uno"), names(lists.byTransportStreamRecord(LIST, 2)));
        assertEquals(List.of(), names(lists.byTransportStreamRecord(LIST, 3)));
    }

    @Test
    void aTransportStreamIsStoredOnceWithItsTuningAndItsNetwork() throws IOException {
        imported(List.of(PLAIN, PLAIN.replace("Uno", "Due"), PLAIN.replace(":H:", ":HS1:").replace(":1:1019", ":85:1020")));
        List<TransportStreamRecord> stored = streams.getAll(LIST);
        assertEquals(2, stored.size());
        assertEquals(List.of(1019, 1020), stored.stream().map(TransportStreamRecord::transportStreamId).toList());
        assertEquals(List.of(11493000L, 11493000L), stored.stream().map(TransportStreamRecord::frequency).toList());
        assertEquals(List.of(3, 3), stored.stream().map(TransportStreamRecord::medium).toList());
        assertEquals(List.of(1, 2), stored.stream().map(TransportStreamRecord::mode).toList());
        assertEquals(22000000, stored.get(0).value(TransportStreamField.SAT_SYMBOL_RATE));
        assertEquals(List.of(new RecordId(LIST, 1), new RecordId(LIST, 2)), stored.stream().map(TransportStreamRecord::network).toList());
        assertEquals(List.of(1, 85), networks.getAll(LIST, null).stream().map(n -> n.values().getNwlNetworkId()).toList());
        assertEquals(List.of("Uno", "Due"), names(lists.byTransportStream(LIST, 1019)));
    }

    @Test
    void aSatelliteServiceAndItsStreamPointAtTheirSatelliteAndOthersAtNone() throws IOException {
        satellites.open(LIST);
        VltTvSatelliteInfoBase info = new VltTvSatelliteInfoBase();
        info.setOrbitPosition(130);
        satellites.add(LIST, info);
        info.setOrbitPosition(192);
        RecordId satellite = satellites.add(LIST, info);
        RecordId none = new RecordId(0, 0);
        List<ServiceRecord> services = imported(List.of(PLAIN, PLAIN.replace("S19.2E", "S5W"), "Due:410:M64:C:6900:0:102:0:0:28013:0:0:0"));
        assertEquals(List.of(satellite, none, none), services.stream().map(ServiceRecord::satellite).toList());
        assertEquals(List.of(satellite, none, none), streams.getAll(LIST).stream().map(TransportStreamRecord::satellite).toList());
        assertEquals(List.of(1), streams.bySatellite(LIST, satellite.recordId()).stream().map(TransportStreamRecord::recordId).toList());
        assertEquals(Map.of("no satellite at S5W in satellite list 1", 1), companions.withoutSatellite().counts());
    }

    @Test
    void theScanNotesTheNetworkOfEveryService() throws Exception {
        imported(List.of(PLAIN, PLAIN.replace(":1:1019", ":85:1020"), PLAIN.replace("Uno", "Tre")));
        List<ServiceRecord> before = lists.getAll(LIST);
        ScanStandIn.noteNetworks(Storage.directory(), LIST,
                Map.of(1, new RecordId(LIST, 1), 2, new RecordId(LIST, 2), 3, new RecordId(LIST, 1)));
        assertEquals(List.of("Uno", "Tre"), names(lists.byNetwork(LIST, 1)));
        assertEquals(List.of("Uno"), names(lists.byNetwork(LIST, 85)));
        assertEquals(List.of(), names(lists.byNetwork(LIST, 2)));
        List<ServiceRecord> after = lists.getAll(LIST);
        for (int i = 0; i < after.size(); i++) {
            byte[] expected = before.get(i).bytes();
            expected[30] = LIST;
            expected[32] = (byte) after.get(i).network().recordId();
            assertArrayEquals(expected, after.get(i).bytes());
        }
    }

    @Test
    void frequenciesAreStoredInKilohertzWhateverUnitTheFileHas() throws IOException {
        imported(List.of(
                "A:410:M64:C:6900:1:2:0:0:1:0:0:0", "B:529833:I0:T:27500:1:2:0:0:2:0:0:0", "C:538000000:I0:T:27500:1:2:0:0:3:0:0:0"));
        assertEquals(List.of(410000L, 529833L, 538000L), streams.getAll(LIST).stream().map(TransportStreamRecord::frequency).toList());
        assertEquals(List.of(2, 1, 1), streams.getAll(LIST).stream().map(TransportStreamRecord::medium).toList());
    }

    @Test
    void longNamesEndBehindAWholeCharacter() throws IOException {
        String name = "a".repeat(63);
        String shortName = "b".repeat(14);
        ServiceRecord stored = imported(List.of(PLAIN.replace("Uno", name + "ü," + shortName + "€"))).get(0);
        assertEquals(name, stored.name());
        assertEquals(shortName, stored.shortName());
        ServiceRecord fitting = imported(List.of(PLAIN.replace("Uno", name + "z," + shortName + "ü"))).get(1);
        assertEquals(name + "z", fitting.name());
        assertEquals(shortName + "ü", fitting.shortName());
    }

    @Test
    void aLongImportTellsItsProgress() throws IOException {
        imported(Collections.nCopies(1001, PLAIN));
        assertEquals("  1000 of 1001 services\n", progress.toString(StandardCharsets.UTF_8));
    }

    @Test
    void aServiceThatCannotBeAddedIsNamed() {
        Main.Failure failure = assertThrows(Main.Failure.class, () -> imported(MISSING, List.of(PLAIN)));
        assertEquals(
                "cannot add a service to list 77: 'Uno', service id 7, number 1 of 1; those before it are in the list",
                failure.getMessage());
    }

    private static List<String> names(List<ServiceRecord> services) {
        return services.stream().map(ServiceRecord::name).toList();
    }
}
