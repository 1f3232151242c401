package com.velotra.tv.tavro.tool.transponders;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.TransportStreamField;
import com.velotra.tv.tavro.services.channellist.TransportStreamRecord;
import com.velotra.tv.tavro.services.channellist.TvList;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.input.ImportFixture;
import com.velotra.tv.tavro.tool.input.ImportReport;
import com.velotra.tv.tavro.tool.input.Place;
import com.velotra.tv.tavro.tool.satellites.Satellites;
import com.velotra.tv.tavro.tool.transponders.StreamImport.Ids;
import com.velotra.tv.tavro.tool.transponders.StreamImport.Stored;
import java.io.OutputStream;
import java.io.PrintStream;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;

/** Which transponders share a record, within one import and from one import to the next. */
class StreamIdentityTest {
    private static final int FIRST = 81;
    private static final int TERRESTRIAL = FIRST;
    private static final int CABLE = FIRST + 1;
    private static final int SATELLITE = FIRST + 2;

    private final VltTvTransportStreamList lists = VltTvTransportStreamList.getInstance();
    private final VltTvSatelliteList satellites = VltTvSatelliteList.getInstance();
    private final List<String> observed = new ArrayList<>();

    @AfterEach
    void deleteLists() {
        for (int id = FIRST; id < FIRST + 4; id++) {
            for (TvList kind : List.of(lists, satellites)) {
                if (kind.exists(id)) {
                    kind.delete(id);
                }
            }
        }
    }

    private static ImportReport report() {
        return new ImportReport(new PrintStream(OutputStream.nullOutputStream()));
    }

    private StreamImport streams(ImportReport report) {
        return streams(FIRST, report);
    }

    private StreamImport streams(int first, ImportReport report) {
        return new StreamImport(lists, new Satellites(satellites, SATELLITE), ListIds.from(first), report,
                (transponder, id) -> observed.add(transponder.place().line() + "=" + id));
    }

    /** Imports transponders. Returns the lines of the summary about lists. */
    private List<String> imported(Transponder... transponders) {
        return imported(FIRST, transponders);
    }

    private List<String> imported(int first, Transponder... transponders) {
        observed.clear();
        ImportReport report = report();
        streams(first, report).storeAll(List.of(transponders));
        return ImportFixture.lists(report);
    }

    private static String counts(int list, int added, int changed, int unchanged, int records) {
        return String.format("transport stream list %d: %d added, %d changed, %d unchanged; it holds %d record%s",
                list, added, changed, unchanged, records, records == 1 ? "" : "s");
    }

    private static Transponder transponder(int line, String position, String... values) {
        Map<String, String> all = new HashMap<>();
        for (int i = 0; i < values.length; i += 2) {
            all.put(values[i], values[i + 1]);
        }
        return new Transponder(new Place("table", line), "", position, all);
    }

    private static Transponder terrestrial(int line, String... more) {
        return with(transponder(line, "", "DELIVERY_SYSTEM", "DVBT2", "FREQUENCY", "474000000"), more);
    }

    private static Transponder cable(int line, String... more) {
        return with(transponder(line, "", "DELIVERY_SYSTEM", "DVBC/ANNEX_A", "FREQUENCY", "474000000"), more);
    }

    private static Transponder satellite(int line, String position, String... more) {
        return with(transponder(line, position, "DELIVERY_SYSTEM", "DVBS2", "FREQUENCY", "11362000", "POLARIZATION",
                "VERTICAL"), more);
    }

    private static Transponder with(Transponder from, String... more) {
        Map<String, String> values = new HashMap<>(from.values());
        values.putAll(transponder(0, "", more).values());
        return new Transponder(from.place(), from.name(), from.position(), values);
    }

    private RecordId satelliteAt(int tenths) {
        satellites.open(SATELLITE);
        VltTvSatelliteInfoBase info = new VltTvSatelliteInfoBase();
        info.setOrbitPosition(tenths);
        return satellites.add(SATELLITE, info);
    }

    private List<Long> values(int list, TransportStreamField field) {
        return lists.getAll(list).stream().map(record -> record.value(field)).toList();
    }

    @Test
    void ofRepeatedTranspondersInOneImportTheFirstIsStored() {
        assertEquals(
                List.of(
                        "transport stream list 82: 1 added, 0 changed, 0 unchanged, 2 repeated in the files; it holds "
                        + "1 record"),
                imported(cable(1, "SYMBOL_RATE", "6900000"), cable(2, "SYMBOL_RATE", "6875000"), cable(3)));
        assertEquals(List.of("1=82,1"), observed);
        assertEquals(List.of(6_900_000L), values(CABLE, TransportStreamField.CAB_SYMBOL_RATE));
    }

    @Test
    void aSecondImportLeavesEqualTranspondersUnchanged() {
        satelliteAt(192);
        Transponder[] transponders = {
            terrestrial(1, "STREAM_ID", "7"), terrestrial(2, "STREAM_ID", "8"), cable(3, "SYMBOL_RATE", "6900000"),
            satellite(4, "S19.2E", "STREAM_ID", "4"), satellite(5, "S19.2E", "STREAM_ID", "5"), satellite(6, "S13.0E")};
        assertEquals(
                List.of(counts(TERRESTRIAL, 2, 0, 0, 2), counts(CABLE, 1, 0, 0, 1), counts(SATELLITE, 3, 0, 0, 3)),
                imported(transponders));
        List<String> before = List.copyOf(observed);
        List<List<TransportStreamRecord>> records =
                List.of(lists.getAll(TERRESTRIAL), lists.getAll(CABLE), lists.getAll(SATELLITE));
        assertEquals(
                List.of(counts(TERRESTRIAL, 0, 0, 2, 2), counts(CABLE, 0, 0, 1, 1), counts(SATELLITE, 0, 0, 3, 3)),
                imported(transponders));
        assertEquals(before, observed, "the same records");
        assertEquals(records, List.of(lists.getAll(TERRESTRIAL), lists.getAll(CABLE), lists.getAll(SATELLITE)));
    }

    @Test
    void aSecondImportChangesWhatTheFileSaysAndKeepsTheRest() {
        imported(cable(1, "SYMBOL_RATE", "6900000", "MODULATION", "QAM/64"), cable(2, "FREQUENCY", "482000000"));
        assertEquals(
                List.of(counts(CABLE, 1, 1, 0, 3)),
                imported(cable(1, "SYMBOL_RATE", "6875000", "MODULATION", "AUTO"), cable(2, "FREQUENCY", "490000000")));
        assertEquals(List.of(474_000L, 482_000L, 490_000L), values(CABLE, TransportStreamField.FREQUENCY));
        assertEquals(List.of(6_875_000L, 0L, 0L), values(CABLE, TransportStreamField.CAB_SYMBOL_RATE));
        assertEquals(List.of(5L, 0L, 0L), values(CABLE, TransportStreamField.CAB_MODULATION));
    }

    @Test
    void frequenciesOfOneKilohertzAreOneTransponder() {
        assertEquals(
                List.of(
                        "transport stream list 82: 2 added, 0 changed, 0 unchanged, 1 repeated in the files; it holds "
                        + "2 records"),
                imported(cable(1), cable(2, "FREQUENCY", "474000499"), cable(3, "FREQUENCY", "474000500")));
        assertEquals(List.of(474_000L, 474_001L), values(CABLE, TransportStreamField.FREQUENCY));
    }

    @Test
    void transpondersWithOtherPolarizationsAreDifferent() {
        Transponder[] transponders = {
            satellite(1, "", "POLARIZATION", "HORIZONTAL"), satellite(2, "", "POLARIZATION", "VERTICAL"),
            satellite(3, "", "POLARIZATION", "LEFT"), satellite(4, "", "POLARIZATION", "RIGHT")};
        assertEquals(List.of(counts(SATELLITE, 4, 0, 0, 4)), imported(transponders));
        assertEquals(List.of(0L, 1L, 2L, 3L), values(SATELLITE, TransportStreamField.SAT_POLARIZATION));
        assertEquals(List.of(counts(SATELLITE, 0, 0, 1, 4)), imported(transponders[2]));
        assertEquals(List.of("3=83,3"), observed);
    }

    @Test
    void satelliteStreamsOfOneTransponderAreDifferent() {
        assertEquals(
                List.of(
                        "transport stream list 83: 3 added, 0 changed, 0 unchanged, 2 repeated in the files; it holds "
                        + "3 records"),
                imported(satellite(1, ""), satellite(2, "", "STREAM_ID", "4"), satellite(3, "", "STREAM_ID", "5"),
                        satellite(4, "", "STREAM_ID", "4"), satellite(5, "", "STREAM_ID", "4294967295")));
        assertEquals(List.of("1=83,1", "2=83,2", "3=83,3"), observed);
    }

    @Test
    void physicalLayerPipesOfOneTransponderAreDifferent() {
        assertEquals(
                List.of(
                        "transport stream list 81: 3 added, 0 changed, 0 unchanged, 1 repeated in the files; it holds "
                        + "3 records"),
                imported(terrestrial(1), terrestrial(2, "STREAM_ID", "4"), terrestrial(3, "STREAM_ID", "5"),
                        terrestrial(4, "STREAM_ID", "0")));
        assertEquals(List.of(0L, 4L, 5L), values(TERRESTRIAL, TransportStreamField.TER_PLP_ID));
        assertEquals(List.of(counts(TERRESTRIAL, 0, 0, 1, 3)), imported(terrestrial(1, "STREAM_ID", "5")));
        assertEquals(List.of("1=81,3"), observed);
    }

    @Test
    void transpondersAtOtherPositionsAreDifferent() {
        satelliteAt(192);
        satelliteAt(130);
        assertEquals(List.of(counts(SATELLITE, 2, 0, 0, 2)), imported(satellite(1, "S19.2E"), satellite(2, "S13.0E")));
        assertEquals(List.of(counts(SATELLITE, 0, 0, 1, 2)), imported(satellite(3, "S13E")));
        assertEquals(List.of("3=83,2"), observed);
        assertEquals(List.of(counts(SATELLITE, 1, 0, 0, 3)), imported(satellite(4, "S5.0W")));
        assertEquals(List.of(1L, 2L, 0L), values(SATELLITE, TransportStreamField.SATL_RECORD_ID));
    }

    @Test
    void positionsDistinguishTranspondersEvenWithoutSatellites() {
        Transponder[] transponders = {satellite(1, "S19.2E"), satellite(2, "S13.0E"), satellite(3, "")};
        assertEquals(List.of(counts(SATELLITE, 3, 0, 0, 3)), imported(transponders));
        assertEquals(List.of(counts(SATELLITE, 0, 0, 3, 3)), imported(transponders));
    }

    @Test
    void aRecordIsFoundAgainAfterItsSatelliteIsImported() {
        imported(satellite(1, "S19.2E"));
        RecordId satellite = satelliteAt(192);
        assertEquals(List.of(counts(SATELLITE, 0, 1, 0, 1)), imported(satellite(2, "S19.2E")));
        assertEquals(satellite, lists.getAll(SATELLITE).get(0).satellite());
        assertEquals(List.of(counts(SATELLITE, 0, 0, 1, 1)), imported(satellite(3, "S19.2E")));
    }

    @Test
    void withoutASatelliteTheSymbolRateMustMatchToo() {
        imported(satellite(1, "S19.2E", "SYMBOL_RATE", "22000000"));
        assertEquals(List.of(counts(SATELLITE, 1, 0, 0, 2)),
                imported(satellite(2, "S13.0E", "SYMBOL_RATE", "27500000")));
        assertEquals(List.of(counts(SATELLITE, 0, 0, 1, 2)),
                imported(satellite(3, "S13.0E", "SYMBOL_RATE", "27500000")));
        assertEquals(List.of(counts(SATELLITE, 0, 0, 1, 2)),
                imported(satellite(4, "S19.2E", "SYMBOL_RATE", "22000000")));
    }

    @Test
    void aRecordWithTheRightSatelliteIsPreferredToOneWithout() {
        satelliteAt(192);
        assertEquals(List.of(counts(SATELLITE, 2, 0, 0, 2)), imported(satellite(1, ""), satellite(2, "S19.2E")));
        assertEquals(List.of(counts(SATELLITE, 0, 0, 1, 2)), imported(satellite(3, "S19.2E")));
        assertEquals(List.of("3=83,2"), observed);
    }

    @Test
    void transpondersOfOtherMediaInOneListAreDifferent() {
        imported(FIRST, cable(1));
        assertEquals(List.of(counts(CABLE, 1, 0, 0, 2)), imported(CABLE, terrestrial(2)),
                "the terrestrial list is the former cable list");
        assertEquals(List.of(2L, 1L), values(CABLE, TransportStreamField.MEDIUM));
    }

    private static Ids ids(int network, int stream) {
        return new Ids(network, stream);
    }

    private static RecordId network(int listId, int networkId) {
        return new RecordId(listId, networkId + 1000);
    }

    @Test
    void idsAreStoredWithTheRecordOfTheNetwork() throws NotImportable {
        Stored stored = streams(report()).store(satellite(1, ""), ids(85, 1019), StreamIdentityTest::network);
        assertEquals(new Stored(new RecordId(SATELLITE, 1), ids(85, 1019)), stored);
        TransportStreamRecord record = lists.getAll(SATELLITE).get(0);
        assertEquals(
                List.of(85L, 85, 1019, new RecordId(SATELLITE, 1085)),
                List.of(record.value(TransportStreamField.NETWORK_ID), record.originalNetworkId(),
                        record.transportStreamId(), record.network()));
    }

    @Test
    void anUnknownNetworkHasNoRecord() throws NotImportable {
        streams(report()).store(satellite(1, ""), ids(0, 1019), (list, id) -> {
            throw new AssertionError("network " + id + " of list " + list + " is asked for");
        });
        TransportStreamRecord record = lists.getAll(SATELLITE).get(0);
        assertEquals(List.of(0, 1019, new RecordId(0, 0)),
                List.of(record.originalNetworkId(), record.transportStreamId(), record.network()));
    }

    @Test
    void streamsWhoseIdsAreKnownAndDifferAreDifferent() throws NotImportable {
        ImportReport report = report();
        StreamImport streams = streams(report);
        assertEquals(
                List.of(new Stored(new RecordId(SATELLITE, 1), ids(1, 1019)),
                        new Stored(new RecordId(SATELLITE, 2), ids(1, 1020)),
                        new Stored(new RecordId(SATELLITE, 3), ids(2, 1019)),
                        new Stored(new RecordId(SATELLITE, 2), ids(1, 1020))),
                List.of(streams.store(satellite(1, ""), ids(1, 1019), StreamIdentityTest::network),
                        streams.store(satellite(2, ""), ids(1, 1020), StreamIdentityTest::network),
                        streams.store(satellite(3, ""), ids(2, 1019), StreamIdentityTest::network),
                        streams.store(satellite(4, ""), ids(1, 1020), StreamIdentityTest::network)));
        assertEquals(
                List.of(
                        "transport stream list 83: 3 added, 0 changed, 0 unchanged, 1 repeated in the files; it holds "
                        + "3 records"),
                ImportFixture.lists(report));

        ImportReport again = report();
        assertEquals(
                new Stored(new RecordId(SATELLITE, 3), ids(2, 1019)),
                streams(again).store(satellite(5, ""), ids(2, 1019), StreamIdentityTest::network));
        assertEquals(List.of(counts(SATELLITE, 0, 0, 1, 3)), ImportFixture.lists(again));
    }

    @Test
    void aStreamWithOtherIdsUpdatesTheRecordOfAnEarlierImport() throws NotImportable {
        streams(report()).store(satellite(1, ""), ids(1, 1019), StreamIdentityTest::network);
        ImportReport report = report();
        assertEquals(
                new Stored(new RecordId(SATELLITE, 1), ids(1, 1020)),
                streams(report).store(satellite(2, ""), ids(1, 1020), StreamIdentityTest::network));
        assertEquals(List.of(counts(SATELLITE, 0, 1, 0, 1)), ImportFixture.lists(report));
    }

    @Test
    void aTransponderGetsTheIdsThatAreKnownLater() throws NotImportable {
        ImportReport report = report();
        StreamImport streams = streams(report);
        streams.storeAll(List.of(satellite(1, "")));
        assertEquals(
                new Stored(new RecordId(SATELLITE, 1), ids(1, 1019)),
                streams.store(satellite(2, ""), ids(1, 1019), StreamIdentityTest::network));
        assertEquals(List.of("1=83,1"), observed, "observed once");
        assertEquals(List.of(1019L), values(SATELLITE, TransportStreamField.TRANSPORT_STREAM_ID));
        assertEquals(Map.of("DVBS2", 1), report.imported());
    }

    @Test
    void aTransponderWithoutIdsIsTheOneThatHasThem() throws NotImportable {
        streams(report()).store(satellite(1, ""), ids(1, 1019), StreamIdentityTest::network);
        assertEquals(List.of(counts(SATELLITE, 0, 0, 1, 1)), imported(satellite(2, "")));
        assertEquals(List.of(1019L), values(SATELLITE, TransportStreamField.TRANSPORT_STREAM_ID));
    }
}
