package com.velotra.tv.tavro.services.channellist;

import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.Map;
import java.util.TreeMap;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/** What a native holds when it returns: JNI references and memory, list locks, and handles. */
final class HeldThings {
    private static final Pattern LOCK =
            Pattern.compile("x_(svl|tsl|nwl|satl)_(read_)?(un)?lock\\(0x([1-4])(\\w{4})\\)");

    private static final List<String> LISTS = List.of("service", "transport stream", "network", "satellite");

    private HeldThings() {}

    /** What one recorded call holds. The handles are those that were open before and after it. */
    static List<String> of(JniCalls.Recording recording, int[] handlesBefore, int[] handlesAfter) {
        List<String> held = new ArrayList<>(recording.held());
        addLocks(held, recording.calls());
        Map<Integer, Integer> before = count(handlesBefore);
        count(handlesAfter).forEach((handle, number) -> {
            for (int i = before.getOrDefault(handle, 0); i < number; i++) {
                String second = i > 0 && (handle & 0xffff) != 0 ? "second " : "";
                held.add(second + "handle of " + listText(handle >> 16, handle & 0xffff));
            }
        });
        return held;
    }

    private static Map<Integer, Integer> count(int[] handles) {
        Map<Integer, Integer> numbers = new TreeMap<>();
        Arrays.stream(handles).forEach(handle -> numbers.merge(handle, 1, Integer::sum));
        return numbers;
    }

    private static void addLocks(List<String> held, List<String> calls) {
        Map<String, Integer> locks = new TreeMap<>();
        for (String call : calls) {
            Matcher lock = LOCK.matcher(call);
            if (lock.matches()) {
                String text = (lock.group(2) == null ? "write" : "read") + " lock of "
                        + listText(Integer.parseInt(lock.group(4)), Integer.parseInt(lock.group(5), 16));
                locks.merge(text, lock.group(3) == null ? 1 : -1, Integer::sum);
            }
        }
        locks.forEach((text, number) -> {
            if (number != 0) {
                held.add((number > 0 ? "" : "less than no ") + text);
            }
        });
    }

    private static String listText(int kind, int list) {
        return LISTS.get(kind - 1) + " list " + list;
    }
}
