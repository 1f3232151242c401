package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Map;
import java.util.LinkedHashMap;
import java.util.List;
import org.junit.jupiter.api.Test;

class ScriptedCallLedgerTest {
    @Test
    void prints() throws IOException {
        Map<String, Ledger> ledgers = new LinkedHashMap<>();
        for (Scenario scenario : Scenarios.all()) {
            scenario.record(); // loads and links classes
            scenario.begin();
            int[] before = Script.openHandles();
            JniCalls.Recording recording = scenario.record();
            int[] after = Script.openHandles();
            List<String> held = HeldThings.of(recording, before, after);
            ledgers.computeIfAbsent(scenario.nativeName(), Ledger::new).add(scenario, recording, held);
        }
        for (Map.Entry<String, Ledger> ledger : ledgers.entrySet()) {
            Files.writeString(Path.of(System.getProperty("tavro.ledger"), ledger.getKey().replaceAll("[(), ]+", "-").replaceAll("-$", "") + ".txt"), ledger.getValue().text());
        }
        assertEquals(72, ledgers.size());
    }
}
