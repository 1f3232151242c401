package com.velotra.tv.tavro.tool.listing;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import java.util.Arrays;
import java.util.List;
import org.junit.jupiter.api.Test;

class OrderTest {
    private static final List<Record> SERVICES = List.of(
            Records.of(Kind.SERVICES, "record_id=1", "name=beta", "lcn=10", "service_id=5", "tsl_id=2"),
            Records.of(Kind.SERVICES, "record_id=2", "name=Älpha", "lcn=9", "service_id=5"),
            Records.of(Kind.SERVICES, "record_id=3", "name=Gamma", "lcn=100", "service_id=4"),
            Records.of(Kind.SERVICES, "record_id=4", "name=beta", "broadcast_type=7", "service_id=4"));

    private static List<Integer> sorted(String... names) {
        List<Order.Key> keys = Arrays.stream(names).map(name -> new Order.Key(
                Columns.of(Kind.SERVICES).get(name.replaceFirst("^-", "")).orElseThrow(), name.startsWith("-")))
                .toList();
        return Order.sort(SERVICES, keys, null).stream().map(Record::id).toList();
    }

    @Test
    void numbersAreSortedByValueAndTextsWithoutCaseAndAccents() {
        assertEquals(List.of(2, 1, 3, 4), sorted("lcn"));
        assertEquals(List.of(2, 1, 4, 3), sorted("name"));
        assertEquals(List.of(3, 1, 4, 2), sorted("-name"));
    }

    @Test
    void missingValuesComeLastInBothDirections() {
        assertEquals(List.of(3, 1, 2, 4), sorted("-lcn"));
        assertEquals(List.of(1, 2, 3, 4), sorted("stream_record"));
        assertEquals(List.of(1, 4, 3, 2), sorted("-stream_record", "-record"));
    }

    @Test
    void furtherColumnsSortWhatIsEqual() {
        assertEquals(List.of(3, 4, 2, 1), sorted("sid", "lcn"));
        assertEquals(List.of(2, 1, 4, 3), sorted("-sid", "name"));
        assertEquals(List.of(1, 2, 3, 4), sorted());
    }
}
