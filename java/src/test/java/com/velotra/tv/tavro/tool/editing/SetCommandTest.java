package com.velotra.tv.tavro.tool.editing;

import static com.velotra.tv.tavro.tool.ToolProcess.runHere;
import static com.velotra.tv.tavro.tool.editing.EditedLists.bytes;
import static com.velotra.tv.tavro.tool.editing.EditedLists.names;
import static com.velotra.tv.tavro.tool.editing.EditedLists.services;
import static com.velotra.tv.tavro.tool.editing.EditedLists.undoable;
import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;

import com.velotra.tv.tavro.tool.ToolProcess.Result;
import com.velotra.tv.tavro.tool.changes.Change;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.Storage;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.io.IOException;
import java.util.Arrays;
import java.util.List;
import java.util.stream.Stream;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;

/** The commands set and add. */
class SetCommandTest {
    @BeforeEach
    void startWithOneList() throws IOException {
        EditedLists.deleteAll();
        services(1, "Uno", "Due", "Tre");
    }

    private static Result done(String out) {
        return new Result(0, out, "");
    }

    private static Result failed(String message) {
        return new Result(1, "", "tavro: " + message + "\n");
    }

    private static Result wrong(String command, String message) {
        return new Result(2, "", "tavro: " + command + ": " + message + "\nSee: ./tavro " + command + " --help\n");
    }

    @Test
    void everyKeyOfTheLayoutHasASetter() {
        List<String> identifiers = List.of("SvlIdSvlRecId", "TslIdTslRecId", "NwlIdNwlRecId", "RecId");
        for (Kind kind : Kind.values()) {
            Keys keys = Keys.of(kind);
            List<String> without = Layout.of(kind).fields().stream()
                    .flatMap(field -> Stream.concat(field.keys().stream().map(Field.Key::name),
                            field.flags().stream().map(Field.Flag::key)))
                    .filter(key -> !keys.has(key)).distinct().toList();
            assertEquals(List.of(identifiers.get(kind.ordinal())), without);
        }
    }

    @Test
    void valuesAreSetByFieldAndByKeyAndAllOthersStay() {
        byte[] before = bytes(Kind.SERVICES, 1);
        assertEquals(done("""
                service 1,2
                  service id: 102 -> 257
                  name: "Due" -> "Zwölf = 12"
                  logical channel number: 2 -> 12
                """), runHere("set", "1,2", "name=Zwölf = 12", "ServiceId=0x101", "lcn=012"));
        byte[] after = bytes(Kind.SERVICES, 1);
        assertArrayEquals(Arrays.copyOf(before, 552), Arrays.copyOf(after, 552));
        assertArrayEquals(Arrays.copyOfRange(before, 2 * 552, 3 * 552), Arrays.copyOfRange(after, 2 * 552, 3 * 552));
        assertEquals(List.of("set 1,2 'name=Zwölf = 12' ServiceId=0x101 lcn=012"), undoable());
        assertEquals(done("service 1,2: unchanged\n"), runHere("set", "1,2", "service-id=257", "LCN=12"));
        assertEquals(1, undoable().size());
        runHere("undo");
        assertArrayEquals(before, bytes(Kind.SERVICES, 1));
    }

    @Test
    void flagsAndReferencesAreSet() {
        assertEquals(done("""
                service 1,1
                  network flags: 0x00000001 (0x1) -> 0x00000009 (VnetVisible, 0x1)
                  option flags: 0x00000000 -> 0x00000400 (VoptChNumEdited)
                  transport stream list: 0 -> 2
                  transport stream record: 0 -> 7
                  satellite list: 0 -> 3
                """), runHere("set", "1,1", "VnetVisible=yes", "option_mask=+VoptChNumEdited", "TslRecId=2,7",
                "satl_id=3"));
        assertEquals(done("""
                service 1,1
                  network flags: 0x00000009 (VnetVisible, 0x1) -> 0x00000001 (0x1)
                  transport stream list: 2 -> 0
                  transport stream record: 7 -> 0
                  satellite record: 0 -> 4
                """), runHere("set", "1,1", "vnetvisible=OFF", "TslRecId=none", "satl_record_id=4"));
    }

    @Test
    void arraysAreSetThroughTheirKeys() {
        assertEquals(done("""
                service 1,1
                  target region code 1: 0 -> 1
                  target region code 2: 0 -> 2
                """), runHere("set", "1,1", "TargetRegionCode=1,2"));
        assertEquals(failed("TargetRegionCode: it has room for 3 values"),
                runHere("set", "1,1", "TargetRegionCode=1,2,3,4"));
        assertEquals(failed("region_code_1: it is set through the key TargetRegionCode"),
                runHere("set", "1,1", "region_code_1=4"));
    }

    @Test
    void valuesThatTheLibraryTranslatesAreSetByNameAndNumber() {
        assertEquals(done("2,1\n"), runHere("add", "2", "--create", "-k", "streams", "BroadcastType=2",
                "medium=3", "frequency=11493000", "sat_symbol_rate=22000000", "TransportStreamId=1019"));
        assertEquals(done("""
                transport stream 2,1
                  transport stream id: 1019 -> 1020
                  frequency: 11493000 kHz -> 11494000 kHz
                  roll-off code: 0 -> 2 (0.20)
                """), runHere("set", "2,1", "-k", "streams", "Frequency=11494000", "RollOff=4",
                "transport_stream_id=1020"));
        assertEquals(failed("RollOff: '9' is none of its values: 3 (0.25), 4 (0.20)"),
                runHere("set", "2,1", "-k", "streams", "RollOff=9"));
        assertEquals(failed("transport stream 2,1 has no bandwidth code: it is not of that broadcast type or medium"),
                runHere("set", "2,1", "-k", "streams", "ter_bandwidth=3"));
        assertEquals(failed("the library does not accept 99 as the modulation of transport stream 2,1: it would be 0; "
                + "nothing was changed"), runHere("set", "2,1", "-k", "streams", "sat_modulation=99"));
        assertEquals(failed("TslNwlRecId: '300' cannot be the network list: it must be a number from 0 to 255"),
                runHere("set", "2,1", "-k", "streams", "TslNwlRecId=300,1"));
        assertEquals(2, undoable().size());
    }

    @Test
    void networksAndSatellitesAreAddedAndSet() {
        assertEquals(done("3,1\n"), runHere("add", "3", "--create", "-k", "networks", "name=Rete", "NwlNetworkId=1"));
        assertEquals(done("""
                network 3,1
                  flags: 0x00000000 -> 0x00000004 (NwlFavNetwork)
                  network id: 1 -> 2
                """), runHere("set", "3,1", "-k", "networks", "NwlFavNetwork=1", "network_id=2"));
        assertEquals(0, runHere("set", "3,1", "-k", "networks", "name=R").exit());
        assertEquals(done("3,1\n"), runHere("add", "3", "--create", "-k", "satellites", "Name=Sat"));
        assertEquals(done("""
                satellite 3,1
                  orbital position: 0 (S0.0E) -> -50 (S5.0W)
                """), runHere("set", "3,1", "-k", "satellites", "OrbitPosition=-50"));
        assertEquals(done("""
                satellite 3,1
                  DiSEqC type: 0 (tone burst only) -> 2 (committed switch)
                """), runHere("set", "3,1", "-k", "satellites", "diseqc_type=2"));
    }

    @Test
    void severalRecordsAreSetOrNone() {
        assertEquals(done("""
                service 1,1: unchanged
                service 1,2
                  logical channel number: 2 -> 1
                service 1,3
                  logical channel number: 3 -> 1
                2 services changed
                """), runHere("set", "1,1-9", "lcn=1"));
        assertEquals("1,4\n", runHere("add", "1", "broadcast_type=DTMB", "name=Vier").out());
        byte[] before = bytes(Kind.SERVICES, 1);
        assertEquals(failed("service 1,4 has no logical channel number: it is not of that broadcast type or medium"),
                runHere("set", "1,1-4", "lcn=5"));
        assertArrayEquals(before, bytes(Kind.SERVICES, 1));
        assertEquals(2, undoable().size());
        assertEquals(0, runHere("set", "1,4", "lcn=5", "broadcast_type=DVB").exit());
    }

    @Test
    void changesArePrintedAsJson() {
        assertEquals(done("""
                [
                  {
                    "record": "1,1",
                    "changes": {
                      "name": {
                        "before": "Uno",
                        "after": "One"
                      }
                    }
                  }
                ]
                """), runHere("set", "1,1", "name=One", "--json"));
    }

    @Test
    void wrongKeysAndValuesChangeNothing() {
        byte[] before = bytes(Kind.SERVICES, 1);
        assertEquals(failed("service records have no key or field 'nam'; did you mean 'name'?"),
                runHere("set", "1,1", "lcn=5", "nam=x"));
        assertEquals(failed("service records have no key or field 'colour'; ./tavro show LIST,RECORD --bytes prints "
                + "their names"), runHere("set", "1,1", "colour=red"));
        assertEquals(failed("lcn: '70000' cannot be the logical channel number: it must be a number from 0 to 65535"),
                runHere("set", "1,1", "lcn=70000"));
        assertEquals(failed("VnetVisible: 'maybe' is neither yes nor no"),
                runHere("set", "1,1", "VnetVisible=maybe"));
        assertEquals(failed("TslRecId: 'x' is not a record identifier; write list and record as in 3,17"),
                runHere("set", "1,1", "TslRecId=x"));
        assertEquals(failed("record_id: no key sets the record id"), runHere("set", "1,1", "record_id=5"));
        assertEquals(failed("network_mask: no key sets the bits 0x80 of the network flags"),
                runHere("set", "1,1", "network_mask=0x81"));
        assertEquals(failed("name is given twice"), runHere("set", "1,1", "name=a", "name=b"));
        assertEquals(failed("NAME: a value of the name is given twice"), runHere("set", "1,1", "name=a", "NAME=b"));
        assertEquals(failed("name: a value of the name is given twice"),
                runHere("set", "1,1", "ServiceName=a", "name=b"));
        assertEquals(failed("vnetvisible: a value of the network flags is given twice"),
                runHere("set", "1,1", "VnetVisible=no", "vnetvisible=yes"));
        String name = "x".repeat(65);
        assertEquals(failed("name: '" + name + "' is too long for the name: at most 64 bytes"),
                runHere("set", "1,1", "name=" + name));
        assertArrayEquals(before, bytes(Kind.SERVICES, 1));
        assertEquals(List.of(), undoable());
    }

    @Test
    void missingRecordsAndMalformedWordsAreReported() {
        assertEquals(failed("service list 1 has no record 9"), runHere("set", "1,9", "name=x"));
        assertEquals(failed("no service list 9 in " + Storage.directory() + "; it has service list 1"),
                runHere("set", "9,1", "name=x"));
        assertEquals(wrong("set", "'name' is not of the form KEY=VALUE"), runHere("set", "1,1", "name"));
        assertEquals(wrong("set", "'=x' is not of the form KEY=VALUE"), runHere("set", "1,1", "=x"));
        assertEquals(2, runHere("set", "1,1").exit());
        assertEquals(2, runHere("set", "1", "name=x").exit());
    }

    @Test
    void aRecordIsAddedAtTheEndAndItsIdIsPrinted() {
        assertEquals(done("1,4\n"), runHere("add", "1", "broadcast_type=DVB", "name=Vier", "lcn=4"));
        assertEquals(List.of("1 Uno", "2 Due", "3 Tre", "4 Vier"), names(1));
        assertEquals(4, Layout.of(Kind.SERVICES).field("lcn").orElseThrow()
                .number(StoredLists.read(Kind.SERVICES, 1).get(3)));
        runHere("undo");
        assertEquals(List.of("1 Uno", "2 Due", "3 Tre"), names(1));
    }

    @Test
    void aCopyGetsAFreeIdAndOtherValues() {
        assertEquals(done("1,4\n"), runHere("add", "1", "--copy", "1,2"));
        byte[] list = bytes(Kind.SERVICES, 1);
        byte[] original = Arrays.copyOfRange(list, 552, 2 * 552);
        original[0] = 4;
        assertArrayEquals(original, Arrays.copyOfRange(list, 3 * 552, 4 * 552));
        assertEquals(done("1,5\n"), runHere("add", "1", "--copy", "1,2", "name=Due bis"));
        assertEquals(List.of("1 Uno", "2 Due", "3 Tre", "4 Due", "5 Due bis"), names(1));
        assertEquals(done("2,1\n"), runHere("add", "2", "--create", "--copy", "1,2"));
        assertEquals(List.of("1 Due"), names(2));
    }

    @Test
    void aCopyGetsTheLowestFreeIdIfTheHighestIsTaken() {
        Field recordId = Layout.of(Kind.SERVICES).field("record_id").orElseThrow();
        RecordList list = StoredLists.read(Kind.SERVICES, 1);
        Change.make("test", change -> {
            change.replace(RecordList.of(Kind.SERVICES, 1, list.name(),
                    List.of(list.get(0), list.get(2), list.get(1).with(recordId, "65534"))));
            return null;
        });
        assertEquals(done("1,2\n"), runHere("add", "1", "--copy", "1,65534"));
        assertEquals(List.of("1 Uno", "3 Tre", "65534 Due", "2 Due"), names(1));
    }

    @Test
    void addReportsMissingListsAndRecordsAndLeavesNothing() {
        assertEquals(failed("no service list 9 in " + Storage.directory() + "; it has service list 1"),
                runHere("add", "9", "name=x"));
        assertEquals(failed("service list 1 has no record 9"), runHere("add", "1", "--copy", "1,9"));
        assertEquals(failed("service records have no key or field 'nam'; did you mean 'name'?"),
                runHere("add", "9", "--create", "nam=x"));
        assertEquals(failed("the new service has no logical channel number: it is not of that broadcast type or "
                + "medium"), runHere("add", "1", "lcn=5"));
        assertEquals(failed("name: '" + "x".repeat(65) + "' is too long for the name: at most 64 bytes"),
                runHere("add", "1", "--copy", "1,1", "name=" + "x".repeat(65)));
        assertEquals(2, runHere("add", "1", "--copy", "1").exit());
        assertFalse(Kind.SERVICES.lists().exists(9));
        assertEquals(List.of("1 Uno", "2 Due", "3 Tre"), names(1));
        assertEquals(List.of(), undoable());
    }
}
