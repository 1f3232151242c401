package com.velotra.tv.tavro.tool.matching;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.nio.ByteBuffer;
import java.nio.ByteOrder;
import java.nio.charset.StandardCharsets;
import java.util.EnumSet;
import java.util.HashSet;
import java.util.List;
import java.util.Map;
import java.util.Random;
import java.util.Set;
import java.util.TreeSet;
import java.util.stream.Stream;
import org.junit.jupiter.api.Test;

/** A rescan in an edited list, and a list in the order of another one. */
class MergeTest {
    private static final Set<Part> NOTHING = Set.of();

    private static Merge merge(Side edited, Side rescan, Part... taken) {
        return Merge.of(edited, rescan, Set.of(taken), false);
    }

    private static String value(Record record, String field) {
        return Layout.of(record.kind()).field(field).orElseThrow().format(record);
    }

    private static List<String> values(RecordList list, String field) {
        return list.stream().map(record -> record.id() + "=" + value(record, field)).toList();
    }

    /** One list after the other, both with their companions in one storage directory. */
    private static List<Side> inOneStorage(Kind of, Sample... samples) {
        Companions all = new Companions((kind, listId) -> Stream.of(samples)
                .map(sample -> sample.list(kind)).filter(list -> list.listId() == listId).findFirst());
        return Stream.of(samples).map(sample -> new Side(sample.list(of), all)).toList();
    }

    @Test
    void theUsersValuesStayAndThoseOfTheBroadcastCome() {
        Sample edited = new Sample(1).stream(1, 474, 1, 1).service(7, "Mine", 1, 10, "lcn=3", "channel_id=0xc0001",
                "lcn_index=4", "original_lcn=1", "network_mask=0x10020b", "option_mask=0x2c2d", "service_type=1",
                "short_name=Old");
        Sample rescan = new Sample(2).stream(1, 474, 1, 1).service(1, "Theirs", 1, 10, "lcn=9", "channel_id=0x240000",
                "lcn_index=5", "original_lcn=9", "network_mask=0x904", "option_mask=0x200", "service_type=2",
                "short_name=New", "option_mask_2=0x40");
        Record merged = merge(edited.side(Kind.SERVICES), rescan.side(Kind.SERVICES)).list().get(0);
        assertEquals(List.of("7", "Mine", "3", "0x000c0001", "4"), Stream.of("record_id", "name", "lcn", "channel_id",
                "lcn_index").map(field -> value(merged, field)).toList());
        assertEquals(List.of("9", "2", "New", "0x00000040"), Stream.of("original_lcn", "service_type", "short_name",
                "option_mask_2").map(field -> value(merged, field)).toList());
        // Visible, numeric and no block stay; scrambled comes, active and broadcast service go; bit 0 has no name.
        assertEquals("0x00000a09", value(merged, "network_mask"));
        // All user flags stay, SDT comes, HD simulcast and Portugal go; bit 0 has no name.
        assertEquals("0x0000262d", value(merged, "option_mask"));
        assertEquals(List.of("1", "1"), List.of(value(merged, "tsl_id"), value(merged, "tsl_record_id")));
    }

    @Test
    void takenPartsComeUnlessTheUserEditedThem() {
        Sample edited = new Sample(1).stream(1, 474, 1, 1)
                .service(1, "A", 1, 1, "lcn=1", "network_mask=8").service(2, "B", 1, 2, "option_mask=8", "lcn=2")
                .service(3, "C", 1, 3, "option_mask=0x400", "lcn=3");
        Sample rescan = new Sample(2).stream(1, 474, 1, 1)
                .service(1, "X", 1, 1, "lcn=7").service(2, "Y", 1, 2, "lcn=8").service(3, "Z", 1, 3, "lcn=9");
        RecordList names = merge(edited.side(Kind.SERVICES), rescan.side(Kind.SERVICES), Part.NAMES).list();
        assertEquals(List.of("1=X", "2=B", "3=Z"), values(names, "name"));
        assertEquals(List.of("1=1", "2=2", "3=3"), values(names, "lcn"));
        RecordList numbers = merge(edited.side(Kind.SERVICES), rescan.side(Kind.SERVICES), Part.NUMBERS).list();
        assertEquals(List.of("1=A", "2=B", "3=C"), values(numbers, "name"));
        assertEquals(List.of("1=7", "2=8", "3=3"), values(numbers, "lcn"));
        RecordList flags = merge(edited.side(Kind.SERVICES), rescan.side(Kind.SERVICES), Part.FLAGS).list();
        assertEquals("0x00000000", value(flags.get(0), "network_mask"));
    }

    @Test
    void bytesWithoutANameStayInTheEditedRecord() {
        Sample edited = new Sample(1).service(1, "A", 1, 1);
        byte[] bytes = edited.list(Kind.SERVICES).get(0).bytes();
        bytes[110] = 5;
        Side before = new Side(
                RecordList.of(Kind.SERVICES, 1, "", List.of(Record.of(Kind.SERVICES, bytes))), Companions.none());
        RecordList merged = merge(before, new Sample(1).service(1, "A", 1, 1, "service_type=1").alone(Kind.SERVICES))
                .list();
        assertEquals(List.of("1=1"), values(merged, "service_type"));
        assertEquals("110:05", Layout.of(Kind.SERVICES).rest(merged.get(0)));
    }

    @Test
    void anotherBroadcastTypeBringsItsOwnFields() {
        Sample edited = new Sample(1).service(4, "Mine", 1, 1, "lcn=5", "channel_id=0x140000");
        Sample rescan = new Sample(1).service(1, "B", 1, 1, "broadcast_type=7", "dtmb_sdt_service_type=2");
        Record merged = merge(edited.alone(Kind.SERVICES), rescan.alone(Kind.SERVICES)).list().get(0);
        assertEquals(Sample.with(rescan.list(Kind.SERVICES).get(0), "record_id=4", "name=Mine", "channel_id=0x140000"),
                merged);
    }

    @Test
    void newRecordsFollowWithFreeIdsAndMissingOnesStay() {
        Sample edited = new Sample(1).stream(1, 474, 1, 1)
                .service(5, "A", 1, 1, "lcn=4").service(2, "B", 1, 2).service(3, "C", 1, 3);
        Sample rescan = new Sample(2).stream(1, 474, 1, 1)
                .service(2, "N", 1, 7, "lcn=4").service(9, "M", 1, 8).service(1, "C", 1, 3);
        Merge merge = merge(edited.side(Kind.SERVICES), rescan.side(Kind.SERVICES));
        assertEquals(List.of("5=A", "2=B", "3=C", "6=N", "9=M"), values(merge.list(), "name"));
        assertEquals(merge.list().subList(3, 5), merge.added());
        assertEquals(merge.list().subList(0, 2), merge.missing());
        assertEquals(List.of(merge.list().get(3)), merge.takenNumbers());
        Merge removed = Merge.of(edited.side(Kind.SERVICES), rescan.side(Kind.SERVICES), NOTHING, true);
        assertEquals(List.of("3=C", "6=N", "9=M"), values(removed.list(), "name"));
        assertEquals(merge.missing(), removed.missing());
    }

    @Test
    void aFullListRefusesNewRecords() {
        Kind kind = Kind.NETWORKS;
        ByteBuffer bytes = ByteBuffer.allocate(65_533 * kind.recordBytes()).order(ByteOrder.LITTLE_ENDIAN);
        for (int i = 0; i < 65_533; i++) { // all ids from 1 to 65534 but 3
            bytes.putShort(i * kind.recordBytes() + kind.idOffset(), (short) (i < 2 ? i + 1 : i + 2));
        }
        FreeIds ids = new FreeIds(RecordList.of(kind, 1, "", bytes.array()));
        assertEquals(3, ids.take(5));
        assertEquals("network list 1 is full: no record id is free",
                assertThrows(Failure.class, () -> ids.take(3)).getMessage());
    }

    @Test
    void servicesReferToTheStreamsOfTheEditedList() {
        Sample edited = new Sample(1).stream(1, 474, 1, 1).stream(2, 482, 1, 2).service(1, "A", 1, 1);
        Sample rescan = new Sample(2).stream(7, 482, 1, 2).stream(8, 474, 1, 1).stream(9, 490, 1, 3)
                .service(1, "A", 8, 1).service(2, "B", 7, 2).service(3, "C", 9, 3);
        List<String> known = List.of("1=1", "2=2");
        List<Side> sides = inOneStorage(Kind.SERVICES, edited, rescan);
        Merge near = merge(sides.get(0), sides.get(1));
        assertEquals(Stream.concat(known.stream(), Stream.of("3=9")).toList(), values(near.list(), "tsl_record_id"));
        assertEquals(List.of("1=1", "2=1", "3=2"), values(near.list(), "tsl_id"));
        assertEquals(Map.of(), near.cleared());
        Merge far = merge(edited.side(Kind.SERVICES), rescan.side(Kind.SERVICES));
        assertEquals(Stream.concat(known.stream(), Stream.of("3=0")).toList(), values(far.list(), "tsl_record_id"));
        assertEquals(List.of("1=1", "2=1", "3=0"), values(far.list(), "tsl_id"));
        assertEquals(Map.of(Kind.STREAMS, 1), far.cleared());
    }

    @Test
    void aListWithoutReferencesUsesTheStreamsWithItsId() {
        Sample edited = new Sample(1).stream(4, 474, 1, 1).service(1, "A", 0, 1, "tsl_id=0");
        Sample rescan = new Sample(2).stream(7, 474, 1, 1).service(2, "B", 7, 2);
        RecordList merged = merge(edited.side(Kind.SERVICES), rescan.side(Kind.SERVICES)).list();
        assertEquals(List.of("1=0", "2=1"), values(merged, "tsl_id"));
        assertEquals(List.of("1=0", "2=4"), values(merged, "tsl_record_id"));
    }

    @Test
    void aReferenceThatTheRescanDoesNotHaveStays() {
        Sample edited = new Sample(1).stream(1, 474, 1, 1).service(1, "A", 1, 1, "nwl_id=3", "nwl_record_id=4");
        Sample rescan = new Sample(2).stream(1, 474, 1, 1).service(1, "A", 1, 1);
        Merge merge = merge(edited.side(Kind.SERVICES), rescan.side(Kind.SERVICES));
        assertEquals(List.of("1=3"), values(merge.list(), "nwl_id"));
        assertEquals(List.of("1=4"), values(merge.list(), "nwl_record_id"));
    }

    @Test
    void otherKindsKeepNamesAndTheSettingsOfTheDish() {
        Sample edited = new Sample(1).satellite(1, "Mine", 192).stream(1, 474, 1, 1)
                .add(Kind.NETWORKS, 1, "network_id=1", "name=Mine", "flags=2", "version=1");
        Sample rescan = new Sample(2).stream(1, 474, 2, 2).stream(3, 482, 1, 1)
                .add(Kind.SATELLITES, 1, "orbital_position=192", "name=B", "lnb_type=3")
                .add(Kind.NETWORKS, 1, "network_id=1", "name=B", "flags=4", "version=2")
                .add(Kind.NETWORKS, 2, "network_id=2", "nwl_id=2");
        assertEquals(edited.list(Kind.SATELLITES),
                merge(edited.side(Kind.SATELLITES), rescan.side(Kind.SATELLITES)).list());
        assertEquals(new Sample(1).add(Kind.NETWORKS, 1, "network_id=1", "name=Mine", "flags=2", "version=2")
                .add(Kind.NETWORKS, 2, "network_id=2", "nwl_id=1").list(Kind.NETWORKS),
                merge(edited.side(Kind.NETWORKS), rescan.side(Kind.NETWORKS)).list());
        assertEquals(new Sample(1).stream(1, 474, 2, 2).stream(3, 482, 1, 1).list(Kind.STREAMS),
                merge(edited.side(Kind.STREAMS), rescan.side(Kind.STREAMS)).list());
    }

    @Test
    void aMergeLosesNoRecordAndASecondOneAddsNothing() {
        Random random = new Random(4);
        for (int round = 0; round < 200; round++) {
            Kind kind = Kind.values()[round % 4];
            List<Side> sides = inOneStorage(kind, Sample.random(kind, 1, random.nextInt(30), random),
                    Sample.random(kind, 2, random.nextInt(30), random));
            Side edited = sides.get(0);
            Side rescan = sides.get(1);
            Merge merge = merge(edited, rescan);
            int kept = edited.list().size();
            assertEquals(ids(edited.list()), ids(merge.list().subList(0, kept)));
            assertEquals(merge.list().size(), new HashSet<>(ids(merge.list())).size());
            assertEquals(merge.list().size() - merge.missing().size(), rescan.list().size());
            Side merged = new Side(merge.list(), edited.companions());
            assertEquals(List.of(), merge(merged, rescan).added());
        }
    }

    private static List<Integer> ids(List<Record> records) {
        return records.stream().map(Record::id).toList();
    }

    @Test
    void everyOrderIsAPermutation() {
        Random random = new Random(5);
        for (int round = 0; round < 200; round++) {
            Kind kind = Kind.values()[round % 4];
            Side list = Sample.random(kind, 1, random.nextInt(30), random).side(kind);
            Side other = Sample.random(kind, 2, random.nextInt(30), random).side(kind);
            Reorder reorder = Reorder.of(list, Guide.of(other), EnumSet.allOf(Part.class));
            assertEquals(new TreeSet<>(ids(list.list())), new TreeSet<>(ids(reorder.list())));
            assertEquals(list.list().size(), reorder.list().size());
            int matched = list.list().size() - reorder.unmatched().size();
            assertEquals(other.list().size() - reorder.unmatchedEntries().size(), matched);
            assertEquals(reorder.unmatched(), reorder.list().subList(matched, list.list().size()));
            Reorder only = Reorder.of(list, Guide.of(other), Set.of(Part.ORDER));
            assertEquals(ids(reorder.list()), ids(only.list()));
            assertTrue(list.list().containsAll(only.list()), "records as before");
        }
    }

    @Test
    void partsAreTakenFromTheMatchingRecord() {
        Sample sample = new Sample(1).stream(1, 474, 1, 1)
                .service(1, "A", 1, 1, "network_mask=0x108").service(2, "B", 1, 2).service(3, "C", 1, 3);
        Sample other = new Sample(2).stream(1, 474, 1, 1)
                .service(1, "Y", 1, 2, "lcn=7", "channel_id=0x1c0000", "service_type=9", "option_mask=0x428")
                .service(2, "Z", 1, 4).service(3, "X", 1, 1, "lcn=8", "network_mask=0x802");
        Side list = sample.side(Kind.SERVICES);
        Guide guide = Guide.of(other.side(Kind.SERVICES));
        Reorder all = Reorder.of(list, guide, EnumSet.allOf(Part.class));
        assertEquals(new Sample(1)
                .service(2, "Y", 1, 2, "lcn=7", "channel_id=0x1c0000", "option_mask=0x428")
                .service(1, "X", 1, 1, "lcn=8").service(3, "C", 1, 3).list(Kind.SERVICES), all.list());
        assertEquals(List.of(1), all.unmatchedEntries());
        assertEquals(List.of("1=X", "2=Y", "3=C"), values(Reorder.of(list, guide, Set.of(Part.NAMES)).list(), "name"));
        assertEquals(List.of("1=8", "2=7", "3=0"), values(Reorder.of(list, guide, Set.of(Part.NUMBERS)).list(), "lcn"));
        assertEquals(List.of("1=0x00000000", "2=0x00000000", "3=0x00000000"),
                values(Reorder.of(list, guide, Set.of(Part.FLAGS)).list(), "network_mask"));
    }

    private static ReferenceFile file(String text) {
        return new ReferenceFile(new Source("F", "F", text.getBytes(StandardCharsets.UTF_8)));
    }

    @Test
    void aReferenceFileNamesServicesByIdsOrByName() {
        Side list = new Sample(1).stream(1, 474, 8468, 1)
                .service(1, "A", 1, 10, "channel_id=0x30007").service(2, "B;C", 1, 11, "lcn=5")
                .service(3, "D", 1, 12).service(4, "E", 1, 13, "broadcast_type=5").side(Kind.SERVICES);
        ReferenceFile file = file("""
                # order of the house
                  # indented
                1;D one;8468-1-12

                 2 ; B;C ;
                ;;0x2114 - 0x1 - 0X0A
                3;;8468-1-99
                4;E;
                """);
        assertEquals(List.of(), file.malformed());
        Reorder reorder = Reorder.of(list, file, EnumSet.allOf(Part.class));
        assertEquals(List.of("3=D one", "2=B;C", "1=A", "4=E"), values(reorder.list(), "name"));
        assertEquals(List.of("3=0x00040000", "2=0x00080000", "1=0x00030007", "4=0x00100000"),
                values(reorder.list(), "channel_id"));
        assertEquals("1", value(reorder.list().get(0), "lcn"));
        assertEquals(List.of("F:7: 3;;8468-1-99"), reorder.unmatchedEntries().stream().map(file::text).toList());
    }

    @Test
    void badLinesOfAReferenceFileAreReportedWithTheirNumbers() {
        String longName = "x".repeat(65);
        assertEquals(List.of(
                "F:1: 'ZDF' is not number;name;network-stream-service",
                "F:2: '1;;' has neither a name nor ids",
                "F:3: '1-2' is not network-stream-service, as in 1-1101-28106",
                "F:5: channel number 'x' is not a number from 0 to 16383",
                "F:6: channel number '16384' is not a number from 0 to 16383",
                "F:7: id '65536' is not a number from 0 to 65535",
                "F:8: '" + longName + "' is too long for the name: at most 64 bytes"),
                file("ZDF\n1;;\n1;A;1-2\n1;Good;1-2-3\nx;A;\n16384;A;\n1;A;1-2-65536\n1;" + longName + ";\n")
                        .malformed().stream().map(Object::toString).toList());
    }

    @Test
    void aNumberThatDoesNotFitTheServiceIsRefused() {
        Side list = new Sample(1).service(1, "A", 1, 1, "broadcast_type=9").service(2, "B", 1, 2, "broadcast_type=5")
                .side(Kind.SERVICES);
        assertEquals("F:1: services of broadcast type 9 have no channel number that is known",
                assertThrows(IllegalArgumentException.class,
                        () -> Reorder.of(list, file("1;A;"), Set.of(Part.NUMBERS))).getMessage());
        assertEquals("F:1: channel number 256 is too large for a service of broadcast type 5",
                assertThrows(IllegalArgumentException.class,
                        () -> Reorder.of(list, file("256;B;"), Set.of(Part.NUMBERS))).getMessage());
    }
}
