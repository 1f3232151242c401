package com.velotra.tv.tavro.tool.matching;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;

import java.util.Arrays;
import java.util.Collections;
import java.util.List;
import java.util.Random;
import java.util.stream.Collectors;
import java.util.stream.IntStream;
import org.junit.jupiter.api.Test;

/** The most numbers of a sequence that increase. */
class KeptOrderTest {
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
