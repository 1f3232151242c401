package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.file.Path;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.TreeSet;
import java.util.concurrent.Callable;
import java.util.regex.Pattern;
import java.util.stream.Collectors;
import java.util.stream.Stream;
import org.junit.jupiter.api.AfterAll;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.DynamicTest;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.TestFactory;
import org.junit.jupiter.api.io.TempDir;

/** Every entry of docs/troubleshooting.md happens as it says. */
class TroubleshootingTest {
    private static final List<String> POINTS = List.of("Symptom", "Log", "Cause", "Remedy");

    @TempDir
    static Path folder;

    private static List<TroubleshootingDocument.Entry> entries;
    private static final Map<String, Callable<Observation>> PROBLEMS = new LinkedHashMap<>();

    @BeforeAll
    static void collect() throws Exception {
        entries = TroubleshootingDocument.entries(Path.of(System.getProperty("tavro.troubleshooting")));
        PROBLEMS.putAll(TroubleshootingCalls.all());
        Map<String, Observation> elsewhere = new LinkedHashMap<>(TroubleshootingChild.loads(folder));
        elsewhere.putAll(TroubleshootingChild.storage(folder));
        elsewhere.forEach((heading, seen) -> PROBLEMS.put(heading, () -> seen));
        printIfWanted();
    }

    /** Prints what happens, for new entries: {@code JAVA_TOOL_OPTIONS=-Dtavro.printed=true}. */
    private static void printIfWanted() throws Exception {
        if (Boolean.getBoolean("tavro.printed")) {
            for (Map.Entry<String, Callable<Observation>> problem : PROBLEMS.entrySet()) {
                System.out.println(problem.getKey() + ": " + problem.getValue().call());
            }
        }
    }

    @AfterAll
    static void endWithoutAScript() {
        Script.reset();
    }

    @TestFactory
    Stream<DynamicTest> anEntryIsReproduced() {
        return entries.stream().filter(entry -> PROBLEMS.containsKey(entry.heading())).map(
                entry -> DynamicTest.dynamicTest(entry.heading(), () -> {
                    Observation seen = PROBLEMS.get(entry.heading()).call();
                    List<String> symptoms = entry.literals("Symptom");
                    assertTrue(!symptoms.isEmpty(), "the symptom has no text in backticks");
                    for (String symptom : symptoms) {
                        assertTrue(matches(symptom, seen.symptom()), symptom + " is not in " + seen.symptom());
                    }
                    assertLogs(entry.literals("Log"), seen.log());
                }));
    }

    /** The lines of the entry are logged in this order, maybe with others between them; none if the entry has none. */
    private static void assertLogs(List<String> lines, List<String> log) {
        int next = 0;
        for (String line : log) {
            next += next < lines.size() && line.matches("(?s)" + expression(lines.get(next))) ? 1 : 0;
        }
        assertTrue(lines.isEmpty() ? log.isEmpty() : next == lines.size(), lines + " is not in " + log);
    }

    private static boolean matches(String part, String text) {
        return Pattern.compile(expression(part)).matcher(text).find();
    }

    /** The literal text, with any text in place of an ellipsis. */
    private static String expression(String text) {
        return Stream.of(text.split("…", -1)).map(Pattern::quote).collect(Collectors.joining(".*"));
    }

    @Test
    void everyEntryIsTestedAndEveryTestHasAnEntry() {
        assertEquals(
                new TreeSet<>(PROBLEMS.keySet()),
                entries.stream().map(TroubleshootingDocument.Entry::heading)
                        .collect(Collectors.toCollection(TreeSet::new)));
    }

    @Test
    void everyEntryHasSymptomLogCauseAndRemedy() {
        assertEquals(List.of(), entries.stream()
                .filter(entry -> !List.copyOf(entry.points().keySet()).equals(POINTS))
                .map(TroubleshootingDocument.Entry::heading).toList());
        assertTrue(entries.size() >= 20);
    }
}
