package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.TreeSet;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import java.util.stream.Collectors;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Test;

/**
 * Compares {@code docs/natives.md} with what the natives do on each of their paths. With the property {@code
 * tavro.natives.renew} it writes the document instead.
 */
class NativesDocumentTest {
    private static final Path DOCUMENTS = Path.of(System.getProperty("tavro.documents", "docs"));
    private static final Path FILE = DOCUMENTS.resolve("natives.md");

    private static List<Recorded> all;
    private static List<String> lines;

    @BeforeAll
    static void makeTheDocument() throws IOException {
        all = Recorded.all();
        List<String> introduction = Files.readAllLines(DOCUMENTS.resolve("generate/natives-introduction.md"));
        String text = new NativesDocument(all, effects()).text(new NativesIntroduction(introduction));
        if (Boolean.getBoolean("tavro.natives.renew")) {
            Files.writeString(FILE, text);
        }
        lines = text.lines().toList();
    }

    /** What docs/java-contract.md says that each native does, by its name. */
    private static Map<String, String> effects() throws IOException {
        Map<String, String> effects = new HashMap<>();
        Pattern row = Pattern.compile("\\| `\\S+ (native\\w+)\\((.*?)\\)` \\| (.*?) \\|.*");
        String cls = "";
        for (String line : Files.readAllLines(DOCUMENTS.resolve("java-contract.md"))) {
            if (line.startsWith("### ")) {
                cls = line.substring(line.lastIndexOf('/') + 1);
            }
            Matcher effect = row.matcher(line);
            if (effect.matches()) {
                String types = Arrays.stream(effect.group(2).split(", ")).map(each -> each.replaceFirst(" \\w+$", ""))
                        .collect(Collectors.joining(", "));
                effects.put(cls + "." + effect.group(1) + "(" + types + ")", effect.group(3));
            }
        }
        return effects;
    }

    @Test
    void theDocumentIsUpToDate() throws IOException {
        List<String> is = Files.exists(FILE) ? Files.readAllLines(FILE) : List.of();
        for (int i = 0; i < is.size() || i < lines.size(); i++) {
            String found = i < is.size() ? is.get(i) : "(end)";
            String made = i < lines.size() ? lines.get(i) : "(end)";
            assertEquals(made, found, FILE + ":" + (i + 1)
                    + " is out of date; if the calls are as they should be: cmake --build build/host --target"
                    + " renew_natives");
        }
    }

    @Test
    void everyNativeHasItsHeading() {
        TreeSet<String> natives = new TreeSet<>();
        Arrays.stream(ListClass.values()).flatMap(kind -> kind.natives().stream())
                .forEach(method -> natives.add(Scenario.nativeName(method)));
        assertEquals(72, natives.size());
        assertEquals(natives, lines.stream().filter(line -> line.startsWith("### VltTv"))
                .map(line -> line.substring("### ".length())).collect(Collectors.toCollection(TreeSet::new)));
    }

    @Test
    void everyPathOfEveryNativeHasItsBlock() {
        List<String> missing = new ArrayList<>();
        Map<NativeOperation, String> sections = sections();
        for (Recorded each : all) {
            Scenario scenario = each.scenario();
            String section = sections.get(NativeOperation.of(scenario.method()));
            String path = Pattern.quote(scenario.path());
            String kind = "( \\([a-z, ]*" + NativesDocument.label(scenario) + "[a-z, ]*\\))?";
            String places = "@@ " + path + kind + " @@|\\| " + path + kind + " \\||[*]" + path + "[*]";
            if (!Pattern.compile(places).matcher(section).find()) {
                missing.add(scenario.toString());
            }
        }
        assertEquals(List.of(), missing);
        assertEquals(72, all.stream().map(each -> each.scenario().nativeName()).distinct().count());
    }

    /** The sections of the document, by the operations that they describe. */
    private static Map<NativeOperation, String> sections() {
        String text = "\n" + String.join("\n", lines);
        Map<NativeOperation, String> sections = new HashMap<>();
        for (NativeOperation operation : NativeOperation.values()) {
            String rest = text.substring(text.indexOf("\n## " + operation.title() + "\n") + 1);
            int end = rest.indexOf("\n## ");
            sections.put(operation, end < 0 ? rest : rest.substring(0, end));
        }
        return sections;
    }
}
