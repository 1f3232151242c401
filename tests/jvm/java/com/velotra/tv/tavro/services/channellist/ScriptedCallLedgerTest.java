package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.TreeMap;
import java.util.TreeSet;
import java.util.stream.Stream;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Test;

/**
 * Compares every call of every native, on each of its paths, with the files in {@code tests/jvm/ledger/}, and what the
 * native then holds with a document. With the property {@code tavro.ledger.renew} it writes the files instead.
 */
class ScriptedCallLedgerTest {
    private static final List<Recorded> ALL = new ArrayList<>();

    /** What a test found wrong, so that one failing run shows all. */
    private final List<String> findings = new ArrayList<>();

    @BeforeAll
    static void recordEveryPath() {
        ALL.addAll(Recorded.all());
    }

    @Test
    void everyNativeMakesTheCallsInItsLedger() throws IOException {
        Path folder = Path.of(System.getProperty("tavro.ledger"));
        Map<String, String> files = new TreeMap<>();
        for (String file : fileNames(folder)) {
            files.put(file, Files.readString(folder.resolve(file)));
        }
        Map<String, String> made = ledgers();
        if (Boolean.getBoolean("tavro.ledger.renew")) {
            for (String stale : files.keySet()) {
                Files.delete(folder.resolve(stale));
            }
            for (Map.Entry<String, String> ledger : made.entrySet()) {
                Files.writeString(folder.resolve(ledger.getKey()), ledger.getValue());
            }
            return;
        }
        made.forEach((file, text) -> compare(file, files.getOrDefault(file, ""), text));
        files.keySet().stream().filter(file -> !made.containsKey(file)).forEach(
                file -> findings.add(file + ": there is no such native"));
        assertEquals("", report("If the calls are as they should be: cmake --build build/host --target renew_ledger"));
    }

    @Test
    void everyNativeHasALedger() {
        TreeSet<String> natives = new TreeSet<>();
        Arrays.stream(ListClass.values()).flatMap(kind -> kind.natives().stream())
                .forEach(method -> natives.add(Scenario.nativeName(method)));
        TreeSet<String> recorded = new TreeSet<>();
        ALL.forEach(each -> recorded.add(each.scenario().nativeName()));
        assertEquals(natives, recorded);
        assertEquals(72, natives.size());
    }

    @Test
    void everyPathReachesTheFailureThatItNames() {
        for (Recorded each : ALL) {
            boolean fails = each.scenario().failing().number() > 0;
            if (fails != each.recording().failed()) {
                findings.add(each.scenario() + ": no call to fail: " + each.scenario().failing());
            }
        }
        assertEquals("", report(""));
    }

    @Test
    void nativesHoldExactlyWhatTheDocumentLists() {
        HeldDocument document = new HeldDocument();
        for (Recorded each : ALL) {
            for (String excess : document.excess(each.scenario().nativeName(), each.held())) {
                findings.add(each.scenario() + ": holds " + excess);
            }
        }
        document.unused().forEach(row -> findings.add("no native holds this: " + row));
        assertEquals("", report("What natives may hold is in " + HeldDocument.FILE));
    }

    private static Map<String, String> ledgers() {
        Map<String, Ledger> ledgers = new LinkedHashMap<>();
        for (Recorded each : ALL) {
            ledgers.computeIfAbsent(each.scenario().nativeName(), Ledger::new)
                    .add(each.scenario(), each.recording(), each.held());
        }
        Map<String, String> files = new TreeMap<>();
        ledgers.forEach((name, ledger) ->
                files.put(name.replaceAll("[^\\w.]+", "-").replaceAll("-$", "") + ".txt", ledger.text()));
        return files;
    }

    private static List<String> fileNames(Path folder) throws IOException {
        try (Stream<Path> files = Files.list(folder)) {
            return files.map(file -> file.getFileName().toString()).sorted().toList();
        }
    }

    /** Reports the first difference, with the path that it is on. */
    private void compare(String file, String expected, String actual) {
        String[] before = expected.split("\n");
        String[] after = actual.split("\n");
        String path = "";
        for (int i = 0; i < before.length || i < after.length; i++) {
            String was = i < before.length ? before[i] : "(end)";
            String is = i < after.length ? after[i] : "(end)";
            if (!was.equals(is)) {
                findings.add(file + ":" + (i + 1) + " " + path + "\n  expected: " + was.strip() + "\n  made:     "
                        + is.strip());
                return;
            }
            path = is.startsWith("== ") ? is : path;
        }
    }

    private String report(String advice) {
        return findings.isEmpty() ? "" : String.join("\n", findings) + "\n" + advice;
    }
}
