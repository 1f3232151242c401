package com.velotra.tv.tavro.services.channellist;

import org.junit.jupiter.api.Test;

class ScriptedCallLedgerTest {
    @Test
    void prints() {
        for (Scenario scenario : Scenarios.all()) {
            scenario.record();
            JniCalls.Recording recording = scenario.record();
            System.out.println(scenario);
            recording.calls().forEach(line -> System.out.println("    " + line));
            System.out.println("  = " + recording.result() + " " + recording.thrown());
            recording.held().forEach(line -> System.out.println("    holds " + line));
            if (scenario.failing().number() > 0 && !recording.failed()) System.out.println("    NOT FAILED");
        }
    }
}
