package com.velotra.tv.tavro.tool.matching;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.util.Arrays;
import java.util.Collections;
import java.util.List;
import java.util.Map;
import java.util.Random;
import java.util.Set;
import java.util.stream.Collectors;
import java.util.stream.IntStream;
import java.util.stream.Stream;
import org.junit.jupiter.api.Test;

/** What differs between two lists. */
class ComparisonTest {
    private static final Set<String> NOTHING = Set.of();

    private static String text(Difference difference) {
        StringBuilder text = new StringBuilder(difference.added() ? "+" : difference.removed() ? "-" : "~");
        text.append(difference.record().id());
        if (difference.moved()) {
            text.append(" moved ").append(difference.fromPlace()).append('>').append(difference.toPlace());
        }
        difference.fields().forEach(change -> text.append(' ').append(change.name()).append(':')
                .append(change.from()).append('>').append(change.to()));
        return text.toString();
    }

    private static List<String> texts(Side from, Side to, String... ignored) {
        return Comparison.of(from, to, Set.of(ignored)).differences().stream().map(ComparisonTest::text).toList();
    }

    /** Networks by id; a letter after the id is the name. */
    private static Side networks(String... networks) {
        Sample sample = new Sample(1);
        for (String network : networks) {
            sample.add(Kind.NETWORKS, Integer.parseInt(network.substring(0, 1)), "network_id=" + network.charAt(0),
                    "name=" + network.substring(1));
        }
        return sample.side(Kind.NETWORKS);
    }

    @Test
    void listsDifferencesInTheOrderOfTheSecondList() {
        assertEquals(List.of("-2", "~3 name:C>X", "+6", "-5"),
                texts(networks("1A", "2B", "3C", "4D", "5E"), networks("1A", "3X", "6F", "4D")));
    }

    @Test
    void theFewestRecordsCountAsMoved() {
        assertEquals(List.of("~5 moved 5>1"),
                texts(networks("1", "2", "3", "4", "5"), networks("5", "1", "2", "3", "4")));
        assertEquals(List.of("~1 moved 1>5"),
                texts(networks("1", "2", "3", "4", "5"), networks("2", "3", "4", "5", "1")));
        assertEquals(List.of("~3 moved 3>1 name:>X", "-2"),
                texts(networks("1", "2", "3", "4"), networks("3X", "1", "4")));
        assertEquals(List.of(), texts(networks("1", "2", "3"), networks("3", "2", "1"), Comparison.ORDER));
    }

    @Test
    void fieldsOfOneViewOnlyHaveNoOtherValue() {
        Side dvb = new Sample(1).service(1, "A", 0, 1, "lcn=5").side(Kind.SERVICES);
        Side unknown = new Sample(1).service(1, "A", 0, 1, "lcn=5", "broadcast_type=9").side(Kind.SERVICES);
        List<FieldChange> changes = Comparison.of(dvb, unknown, NOTHING).differences().get(0).fields();
        assertEquals(new FieldChange("broadcast_type", "broadcast type", "2", "9", "2 (DVB)", "9"), changes.get(0));
        assertTrue(changes.contains(
                new FieldChange("lcn", "logical channel number", "5", null, "5", null)), changes.toString());
    }

    @Test
    void bytesWithoutANameAreCompared() {
        byte[] old = Sample.record(Kind.NETWORKS, 1).bytes();
        byte[] now = old.clone();
        now[8] = 1;
        now[100] = 2;
        now[101] = 3;
        Side from = side(old);
        Side to = side(now);
        assertEquals(List.of("~1 unnamed_bytes:8:00>8:01 unnamed_bytes:100:0000>100:0203"), texts(from, to));
        assertEquals(List.of(), texts(from, to, Comparison.UNNAMED_BYTES));
        assertEquals(Map.of("unnamed bytes", 1), Comparison.of(from, to, NOTHING).byField());
    }

    private static Side side(byte[] bytes) {
        return new Side(RecordList.of(Kind.NETWORKS, 1, "N", List.of(Record.of(Kind.NETWORKS, bytes))),
                Companions.none());
    }

    @Test
    void ignoredFieldsAreNotCompared() {
        Side from = networks("1A", "2B");
        Side to = networks("1X", "2Y");
        assertEquals(List.of("~1 name:A>X", "~2 name:B>Y"), texts(from, to));
        assertEquals(List.of(), texts(from, to, "name"));
    }

    @Test
    void twoRecordsAreComparedWhateverTheyAre() {
        Comparison comparison = Comparison.ofRecords(networks("1A"), networks("2B"), NOTHING);
        assertEquals(List.of("~1 record_id:1>2 network_id:1>2 name:A>B"),
                comparison.differences().stream().map(ComparisonTest::text).toList());
    }

    @Test
    void aListEqualsItself() {
        for (Kind kind : Kind.values()) {
            Side side = Sample.random(kind, 1, 40, new Random(1)).side(kind);
            Comparison comparison = Comparison.of(side, side, NOTHING);
            assertEquals(List.of(), comparison.differences());
            assertEquals(40, comparison.equal());
        }
    }

    @Test
    void everyRecordIsCountedOnceOnEachSide() {
        Random random = new Random(2);
        for (int round = 0; round < 200; round++) {
            Kind kind = Kind.values()[round % 4];
            Side from = Sample.random(kind, 1, random.nextInt(30), random).side(kind);
            Side to = Sample.random(kind, 2, random.nextInt(30), random).side(kind);
            Comparison comparison = Comparison.of(from, to, NOTHING);
            long both = comparison.differences().stream().filter(one -> !one.added() && !one.removed()).count();
            assertEquals(from.list().size(), comparison.removed() + both + comparison.equal());
            assertEquals(to.list().size(), comparison.added() + both + comparison.equal());
            assertEquals(from.list().stream().map(Record::id).sorted().toList(), Stream.concat(
                    comparison.differences().stream().filter(one -> !one.added()).map(one -> one.from().id()),
                    equalIds(from, comparison)).sorted().toList());
        }
    }

    private static Stream<Integer> equalIds(Side from, Comparison comparison) {
        Set<Integer> different = comparison.differences().stream().filter(one -> !one.added())
                .map(one -> one.from().id()).collect(Collectors.toSet());
        return from.list().stream().map(Record::id).filter(id -> !different.contains(id));
    }

    @Test
    void negativePlacesAreLeftOut() {
        assertArrayEquals(new boolean[] {false, true, false, true}, KeptOrder.of(new int[] {-1, 3, -1, 5}));
        assertArrayEquals(new boolean[0], KeptOrder.of(new int[0]));
        assertArrayEquals(new boolean[] {false}, KeptOrder.of(new int[] {-1}));
    }

    @Test
    void asManyAsPossibleAreKept() {
        Random random = new Random(3);
        for (int round = 0; round < 100; round++) {
            List<Integer> places = IntStream.range(0, 9).boxed().collect(Collectors.toList());
            Collections.shuffle(places, random);
            int[] numbers = places.stream().mapToInt(Integer::intValue).toArray();
            boolean[] kept = KeptOrder.of(numbers);
            int[] chosen = IntStream.range(0, 9).filter(i -> kept[i]).map(i -> numbers[i]).toArray();
            assertArrayEquals(IntStream.of(chosen).sorted().toArray(), chosen);
            assertEquals(longest(numbers), chosen.length);
        }
    }

    /** By trying all choices. */
    private static int longest(int[] numbers) {
        return IntStream.range(0, 1 << numbers.length).filter(choice -> {
            int[] chosen = IntStream.range(0, numbers.length).filter(i -> (choice >> i & 1) == 1)
                    .map(i -> numbers[i]).toArray();
            return Arrays.equals(chosen, IntStream.of(chosen).sorted().toArray());
        }).map(Integer::bitCount).max().orElseThrow();
    }
}
