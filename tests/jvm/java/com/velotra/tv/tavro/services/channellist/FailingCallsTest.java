package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.util.ArrayList;
import java.util.List;
import java.util.Set;
import java.util.TreeSet;
import java.util.stream.Collectors;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;

/**
 * Every native on each of its paths on a real virtual machine, while its first, second, third... JNI call fails. A call
 * of a Java method fails with an exception; its native goes on, see docs/porting.md.
 */
class FailingCallsTest {
    /** A path makes at most so many calls that can fail. */
    private static final int MOST_CALLS = 1000;

    private static final String FAILS = ") fails: ";

    private final List<String> findings = new ArrayList<>();

    @AfterEach
    void endWithoutAScript() {
        Script.reset();
    }

    @Test
    void afterALookUpOrAllocationThatFailsNothingButReleasesFollows() {
        Set<String> natives = new TreeSet<>();
        int failures = 0;
        for (Scenario scenario : Scenarios.all()) {
            natives.add(scenario.nativeName());
            if (!scenario.failing().equals(JniCalls.Failing.NONE)) {
                continue; // a failure of its own
            }
            JniCalls.Recording good = scenario.record();
            int n = 1;
            JniCalls.Recording recording = scenario.record(JniCalls.Failing.nth(n));
            while (recording.failed() && n < MOST_CALLS) {
                check(scenario + ", call " + n, recording, good);
                recording = scenario.record(JniCalls.Failing.nth(++n));
            }
            assertTrue(n < MOST_CALLS, scenario.toString());
            failures += n - 1;
        }
        assertEquals(72, natives.size());
        assertTrue(failures > natives.size(), "too few calls failed: " + failures);
        assertEquals("", findings.stream().limit(20).collect(Collectors.joining("\n")), findings.size() + " findings");
    }

    private void check(String what, JniCalls.Recording recording, JniCalls.Recording good) {
        List<String> calls = recording.calls();
        int at = 0;
        while (!calls.get(at).contains(FAILS)) {
            at++;
        }
        String failing = calls.get(at);
        String exception = failing.substring(failing.indexOf(FAILS) + FAILS.length());
        String where = what + ", " + failing;
        if (recording.thrown() == null || !recording.thrown().getClass().getSimpleName().equals(exception)) {
            findings.add(where + ": Java sees " + recording.thrown());
        }
        List<String> rest = calls.subList(at + 1, calls.size());
        for (String each : List.of("", "read_")) {
            long locks = count(calls, "_" + each + "lock(");
            long unlocks = count(calls, "_" + each + "unlock(");
            boolean leftLocked =
                    count(good.calls(), "_" + each + "lock(") > count(good.calls(), "_" + each + "unlock(");
            if (locks > unlocks && !leftLocked) {
                findings.add(where + ": left locked");
            }
        }
        if (failing.startsWith("Call")) {
            return;
        }
        String nativeName = what.substring(0, what.indexOf('('));
        rest.stream().filter(call -> !isRelease(call) && !readsRecordZero(nativeName, call))
                .forEach(call -> findings.add(where + ": then " + call));
    }

    private static long count(List<String> calls, String part) {
        return calls.stream().filter(call -> call.startsWith("x_") && call.contains(part)).count();
    }

    /**
     * Calls that are allowed while an exception is pending, releases of the middleware, and log lines. The unlock of a
     * list that could not be opened, and of list 0, tries once more to open it.
     */
    private static boolean isRelease(String call) {
        return call.startsWith("DeleteLocalRef(") || call.startsWith("Release") || call.startsWith("log ")
                || call.matches("x_\\w+_open\\((.*\\) = -\\d+|0, 0, 0\\))")
                || List.of("_unlock(", "_read_unlock(", "_close(").stream().anyMatch(call::contains);
    }

    /** An update of services whose identifier cannot be read reads record 0, which changes nothing. */
    private static boolean readsRecordZero(String nativeName, String call) {
        return nativeName.startsWith("VltTvChannelList.native_updateInfo")
                && (call.startsWith("x_svl_open(") || call.matches("x_svl_get_rec\\(0x\\w+, 0\\).*"));
    }
}
