package com.velotra.tv.tavro.services.channellist;

import java.util.ArrayList;
import java.util.List;

/**
 * One native as it was recorded on one of its paths.
 *
 * @param scenario the path
 * @param recording its calls and result
 * @param held what the native holds at its end
 */
record Recorded(Scenario scenario, JniCalls.Recording recording, List<String> held) {
    /** Runs and records every path of every native. */
    static List<Recorded> all() {
        List<Recorded> all = new ArrayList<>();
        for (Scenario scenario : Scenarios.all()) {
            scenario.begin();
            int[] before = Script.openHandles();
            JniCalls.Recording recording = scenario.record();
            all.add(new Recorded(scenario, recording, HeldThings.of(recording, before, Script.openHandles())));
        }
        Script.reset();
        return all;
    }
}
