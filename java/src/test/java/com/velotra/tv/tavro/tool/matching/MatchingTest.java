package com.velotra.tv.tavro.tool.matching;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.tool.records.Kind;
import java.util.List;
import java.util.stream.IntStream;
import org.junit.jupiter.api.Test;

/** Which records of two lists belong together. */
class MatchingTest {
    private static void assertPairs(Side from, Side to, String... pairs) {
        Pairing pairing = Matching.of(from, to);
        assertEquals(List.of(pairs), IntStream.range(0, from.list().size())
                .mapToObj(i -> from.list().get(i).id() + " " + (pairing.toOf(i) < 0
                        ? "-" : String.valueOf(to.list().get(pairing.toOf(i)).id())))
                .toList());
        for (int i = 0; i < to.list().size(); i++) {
            assertEquals(i, pairing.fromOf(i) < 0 ? i : pairing.toOf(pairing.fromOf(i)), "both directions");
        }
    }

    @Test
    void servicesMatchByTheIdsOfTheirStreamAndThemselves() {
        Sample old = new Sample(1).stream(1, 474, 8468, 1).stream(2, 482, 8468, 2)
                .service(1, "A", 1, 10).service(2, "B", 2, 10).service(3, "C", 1, 11);
        Sample now = new Sample(2).stream(7, 482, 8468, 2).stream(8, 490, 8468, 1)
                .service(5, "x", 7, 10).service(6, "y", 8, 10).service(7, "z", 7, 11);
        assertPairs(old.side(Kind.SERVICES), now.side(Kind.SERVICES), "1 6", "2 5", "3 -");
    }

    @Test
    void duplicateServicesPairByPlaceAndThenInListOrder() {
        Sample old = new Sample(1).stream(1, 474, 1, 1).stream(2, 482, 1, 1)
                .service(1, "A", 1, 10).service(2, "A", 2, 10).service(3, "A", 2, 10);
        Sample now = new Sample(2).stream(1, 482, 1, 1).stream(2, 474, 1, 1)
                .service(4, "A", 1, 10).service(5, "A", 1, 10).service(6, "A", 2, 10);
        assertPairs(old.side(Kind.SERVICES), now.side(Kind.SERVICES), "1 6", "2 4", "3 5");
    }

    @Test
    void servicesWithoutKnownStreamIdsMatchByFrequency() {
        Sample old = new Sample(1).stream(1, 474, 0, 0).stream(2, 482, 0, 0)
                .service(1, "", 1, 10).service(2, "", 2, 10);
        Sample now = new Sample(2).stream(1, 482, 1, 5).stream(2, 474, 1, 6)
                .service(3, "", 1, 10).service(4, "", 2, 10);
        assertPairs(old.side(Kind.SERVICES), now.side(Kind.SERVICES), "1 4", "2 3");
        assertPairs(now.side(Kind.SERVICES), old.side(Kind.SERVICES), "3 2", "4 1");
    }

    @Test
    void servicesWithOtherKnownIdsDoNotMatchByFrequency() {
        Sample old = new Sample(1).stream(1, 474, 1, 1).service(1, "", 1, 10);
        Sample now = new Sample(1).stream(1, 474, 1, 2).service(2, "", 1, 10);
        assertPairs(old.side(Kind.SERVICES), now.side(Kind.SERVICES), "1 -");
    }

    @Test
    void servicesWithoutTheirStreamsMatchByReference() {
        Sample old = new Sample(1).stream(1, 474, 1, 1).stream(2, 482, 1, 2)
                .service(1, "", 1, 10).service(2, "", 2, 10);
        Sample now = new Sample(1).service(3, "", 2, 10).service(4, "", 1, 10).service(5, "", 1, 11);
        assertPairs(old.side(Kind.SERVICES), now.alone(Kind.SERVICES), "1 4", "2 3");
        assertPairs(now.alone(Kind.SERVICES), old.side(Kind.SERVICES), "3 2", "4 1", "5 -");
        assertPairs(old.alone(Kind.SERVICES), now.alone(Kind.SERVICES), "1 4", "2 3");
    }

    @Test
    void theRestMatchesByNameUnlessItIsEmpty() {
        Sample old = new Sample(1).stream(1, 474, 1, 1)
                .service(1, "", 1, 1).service(2, "Uno", 1, 2).service(3, "Uno", 1, 3);
        Sample now = new Sample(1).stream(1, 474, 1, 1)
                .service(4, "", 1, 5).service(5, "Uno", 1, 3).service(6, "Uno", 1, 6);
        assertPairs(old.side(Kind.SERVICES), now.side(Kind.SERVICES), "1 -", "2 6", "3 5");
    }

    @Test
    void streamsMatchByFrequencyPolarizationAndPosition() {
        Sample old = new Sample(1).satellite(1, "A", 192).satellite(2, "B", 130)
                .stream(1, 11494, 0, 1, 1, 1).stream(2, 11494, 1, 1, 1, 2).stream(3, 11494, 0, 2, 1, 3)
                .stream(4, 11494, 1, 1);
        Sample now = new Sample(2).satellite(1, "B", 130).satellite(2, "A", 192)
                .stream(5, 11494, 0, 1, 9, 9).stream(7, 11494, 1, 2, 9, 9).stream(6, 11494, 0, 2, 9, 9)
                .stream(8, 11494, 9, 9);
        assertPairs(old.side(Kind.STREAMS), now.side(Kind.STREAMS), "1 6", "2 7", "3 5", "4 8");
    }

    @Test
    void streamsWithoutTheirSatellitesMatchByReference() {
        Sample old = new Sample(1).satellite(1, "A", 192).satellite(2, "B", 130)
                .stream(1, 11494, 0, 1, 1, 1).stream(2, 11494, 0, 2, 1, 1);
        Sample now = new Sample(1).stream(3, 11494, 0, 2, 1, 1).stream(4, 11494, 0, 1, 1, 1);
        assertPairs(old.side(Kind.STREAMS), now.alone(Kind.STREAMS), "1 4", "2 3");
    }

    @Test
    void streamsOnOneFrequencyPairByTheirIdsFirst() {
        Sample old = new Sample(1).stream(1, 474, 1, 1).stream(2, 474, 1, 2);
        Sample now = new Sample(1).stream(3, 474, 1, 2).stream(4, 474, 1, 9);
        assertPairs(old.side(Kind.STREAMS), now.side(Kind.STREAMS), "1 4", "2 3");
    }

    @Test
    void networksMatchByNetworkIdAndThenByName() {
        Sample old = new Sample(1).add(Kind.NETWORKS, 1, "network_id=1", "name=A")
                .add(Kind.NETWORKS, 2, "network_id=2", "name=B").add(Kind.NETWORKS, 3, "network_id=3", "name=C");
        Sample now = new Sample(1).add(Kind.NETWORKS, 4, "network_id=9", "name=A")
                .add(Kind.NETWORKS, 5, "network_id=2", "name=C").add(Kind.NETWORKS, 6, "network_id=8");
        assertPairs(old.side(Kind.NETWORKS), now.side(Kind.NETWORKS), "1 4", "2 5", "3 -");
    }

    @Test
    void satellitesMatchByPositionAndAmongEqualByName() {
        Sample old = new Sample(1).satellite(1, "A", 192).satellite(2, "B", 192).satellite(3, "C", -50);
        Sample now = new Sample(1).satellite(4, "B", 192).satellite(5, "X", 192).satellite(6, "C", 50);
        assertPairs(old.side(Kind.SATELLITES), now.side(Kind.SATELLITES), "1 5", "2 4", "3 6");
    }
}
