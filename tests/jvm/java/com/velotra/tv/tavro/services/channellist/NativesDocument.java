package com.velotra.tv.tavro.services.channellist;

import java.util.ArrayList;
import java.util.IdentityHashMap;
import java.util.LinkedHashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.function.Function;
import java.util.regex.Pattern;
import java.util.stream.Collectors;

/** Makes {@code docs/natives.md} from recordings: an introduction, and a section for each operation. */
final class NativesDocument {
    static final String OTHER_PATHS = "Other paths: ";

    private static final int WIDTH = 116;
    private static final int MOST_LINES = 12;
    private static final int MOST_LINES_OF_VALUES = 3;

    private static final Pattern SHARED =
            Pattern.compile("[+!] (E|x_|fs_|JNI: .*fails:).*|  ((…|as: .*) )?=>.*|\\w.*|`.*");

    /** A path is compared with another one than the success path if so many fewer lines differ. */
    private static final int LEAST_SAVED = 4;

    /** The names of the kinds in the document. */
    private static final Map<ListClass, String> KINDS = Map.of(ListClass.SERVICES, "services", ListClass.STREAMS,
            "transport streams", ListClass.NETWORKS, "networks", ListClass.SATELLITES, "satellites");

    private final Map<String, String> effects;
    private final Map<NativeOperation, Map<String, List<NativeSequence>>> operations = new LinkedHashMap<>();
    private final List<String> text = new ArrayList<>();

    // What was made of a sequence before: its lines without ids, and its block.
    private final Map<NativeSequence, List<String>> keys = new IdentityHashMap<>();
    private final Map<NativeSequence, List<String>> made = new IdentityHashMap<>();

    /** The effects are one sentence per native, by its name. */
    NativesDocument(List<Recorded> all, Map<String, String> effects) {
        this.effects = effects;
        for (NativeOperation operation : NativeOperation.values()) {
            operations.put(operation, new LinkedHashMap<>());
        }
        for (Recorded recorded : all) {
            operations.get(NativeOperation.of(recorded.scenario().method()))
                    .computeIfAbsent(recorded.scenario().nativeName(), name -> new ArrayList<>())
                    .add(NativeSequence.of(recorded));
        }
    }

    /** The whole document; the introduction may refer to recorded sequences. */
    String text(NativesIntroduction introduction) {
        text.clear();
        Map<String, NativeSequence> sequences = new LinkedHashMap<>();
        operations.values().forEach(natives -> natives.values().forEach(paths -> paths.forEach(
                path -> sequences.put(path.scenario().toString(), path))));
        text.addAll(introduction.lines(sequences));
        addContents();
        operations.forEach(this::addOperation);
        return String.join("\n", text) + "\n";
    }

    private void addContents() {
        text.add("## The natives by class");
        text.add("");
        text.add("| Operation | Services | Transport streams | Networks | Satellites |");
        text.add("|---|---|---|---|---|");
        operations.forEach((operation, natives) -> {
            StringBuilder row = new StringBuilder("| [" + operation.title() + "](#" + anchor(operation.title()) + ")");
            for (ListClass kind : ListClass.values()) {
                row.append(" | ").append(natives.keySet().stream().filter(name -> of(natives, name) == kind)
                        .map(name -> "[`" + shortName(name) + "`](#" + anchor(name) + ")")
                        .collect(Collectors.joining("<br>")));
            }
            text.add(row + " |");
        });
        text.add("");
    }

    private static ListClass of(Map<String, List<NativeSequence>> natives, String name) {
        return natives.get(name).get(0).scenario().kind();
    }

    private static String shortName(String name) {
        return name.replaceFirst("\\w+\\.", "").replaceAll("VltTv\\w+InfoBase", "object");
    }

    private static String anchor(String heading) {
        return heading.toLowerCase().replace(' ', '-').replaceAll("[^a-z0-9_-]", "");
    }

    private void addOperation(NativeOperation operation, Map<String, List<NativeSequence>> natives) {
        text.add("## " + operation.title());
        text.add("");
        List<NativeSequence> shown = new ArrayList<>();
        natives.forEach((name, paths) -> {
            NativeSequence success = operation.success(paths);
            text.add("### " + name);
            addSuccess(success, shown, effects.get(name) + " ");
            shown.add(success);
        });
        addOtherPaths(operation, natives);
    }

    /** Adds a sequence, or what distinguishes it from that of another kind, whichever is shorter. */
    private void addSuccess(NativeSequence success, List<NativeSequence> shown, String effect) {
        String call = effect + "`" + Ledger.callText(success.scenario()) + "`, *" + success.scenario().path() + "*";
        SequenceDifference least = null;
        NativeSequence like = null;
        for (NativeSequence other : shown) {
            SequenceDifference difference = new SequenceDifference(other.lines(), KindWords.neutral(other.lines()),
                    success.lines(), KindWords.neutral(success.lines()), MOST_LINES);
            if (least == null || difference.different() < least.different()) {
                least = difference;
                like = other;
            }
        }
        if (least != null && least.different() == 0) {
            text.add(call + ": as for " + label(like.scenario()) + ".");
            text.add("");
        } else if (least != null && least.different() * 2 <= success.lines().size()) {
            text.add(call + ": as for " + label(like.scenario()) + ", but:");
            addBlock("diff", least.text(), success.outcome());
        } else {
            text.add(call + ":");
            addBlock("text", success.lines().stream().map(line -> "  " + line).toList(), success.outcome());
        }
    }

    private void addBlock(String language, List<String> lines, List<String> outcome) {
        text.add("```" + language); // right below the paragraph, to keep the document short
        withOutcome(lines, outcome).forEach(this::addWrapped);
        text.add("```");
        text.add("");
    }

    /** Adds a line of a block, which goes on in further lines where it is too long. */
    private void addWrapped(String line) {
        String rest = line;
        while (rest.length() > WIDTH && rest.lastIndexOf(' ', WIDTH) > WIDTH / 2) {
            int end = rest.lastIndexOf(' ', WIDTH);
            text.add(rest.substring(0, end));
            rest = line.charAt(0) + "      " + rest.substring(end + 1);
        }
        text.add(rest);
    }

    /** Adds a block for each path that is not the success path; kinds with the same difference share one. */
    private void addOtherPaths(NativeOperation operation, Map<String, List<NativeSequence>> natives) {
        Set<String> paths = new LinkedHashSet<>();
        Set<String> lacking = new LinkedHashSet<>();
        Set<String> alike = new LinkedHashSet<>();
        natives.values().forEach(all -> all.stream().filter(path -> path != operation.success(all)).forEach(path ->
                (path.lacksSomething() ? lacking : isAlike(operation, natives, path) ? alike : paths)
                        .add(path.scenario().path())));
        if (!paths.isEmpty()) {
            text.add("### " + OTHER_PATHS + operation.title());
            text.add("```diff");
            Map<List<String>, List<String>> blocks = new LinkedHashMap<>();
            Map<List<String>, List<String>> titles = new LinkedHashMap<>();
            paths.forEach(path -> addPath(operation, natives, path, blocks, titles));
            blocks.forEach((key, block) -> {
                text.addAll(titles.get(key));
                boolean isAs = block.get(0).matches("  as: ((?!=>).)*");
                if (isAs) {
                    text.set(text.size() - 1, text.get(text.size() - 1) + block.get(0));
                }
                block.stream().skip(isAs ? 1 : 0).forEach(this::addWrapped);
            });
            text.add("```");
            text.add("");
        }
        if (!alike.isEmpty()) {
            text.add("With other values, only JNI work and debug lines differ: *" + String.join("*, *", alike) + "*.");
            text.add("");
        }
        if (!lacking.isEmpty()) {
            text.add("| What Java lacks | JNI call | Middleware calls after it |");
            text.add("|---|---|---|");
            lacking.forEach(path -> addLacking(natives, path));
            text.add("");
        }
    }

    /** Whether all natives make the calls of success on a path that differs in values. */
    private static boolean isAlike(NativeOperation operation, Map<String, List<NativeSequence>> natives,
            NativeSequence path) {
        return path.concernsValues() && natives.values().stream().allMatch(all -> all.stream()
                .filter(each -> each.scenario().path().equals(path.scenario().path()))
                .allMatch(each -> each.calls().equals(operation.success(all).calls())));
    }

    private void addLacking(Map<String, List<NativeSequence>> natives, String path) {
        Function<NativeSequence, List<String>> reads = each -> List.of(each.lacking().replace("fails: ", ""),
                each.after().isEmpty() ? "none" : "`" + String.join("`, `", each.after()) + "`");
        share(natives, path, reads, (kinds, sequence, cells) -> text.add("| " + path + kinds + " | `"
                + cells.get(0).replace(") ", ")` ") + " | " + cells.get(1) + " |"));
    }

    private void addPath(NativeOperation operation, Map<String, List<NativeSequence>> natives, String path,
            Map<List<String>, List<String>> blocks, Map<List<String>, List<String>> titles) {
        Function<NativeSequence, List<String>> reads = each -> {
            List<NativeSequence> all = natives.get(each.scenario().nativeName());
            return made.computeIfAbsent(each, key -> block(operation.success(all), all, each));
        };
        share(natives, path, reads, (kinds, sequence, block) -> {
            List<String> key = new ArrayList<>(KindWords.neutral(block));
            key.add(kinds);
            blocks.putIfAbsent(key, block);
            titles.computeIfAbsent(key, each -> new ArrayList<>()).add("@@ " + path + kinds + " @@ "
                    + Ledger.callText(sequence.scenario()));
        });
    }

    /** What the document calls a native among those of one operation: its kind, or what it selects by. */
    static String label(Scenario scenario) {
        String name = scenario.method().getName();
        return name.endsWith("ListByTransportStream") ? "by transport stream"
                : name.endsWith("ListByNetwork") ? "by network" : KINDS.get(scenario.kind());
    }

    /** Writes one path of several kinds. */
    private interface Writer {
        void write(String kinds, NativeSequence first, List<String> block);
    }

    /** Writes a path once for all kinds for which it reads the same. */
    private void share(Map<String, List<NativeSequence>> natives, String path,
            Function<NativeSequence, List<String>> reads, Writer writer) {
        Map<List<String>, List<NativeSequence>> groups = new LinkedHashMap<>();
        natives.values().forEach(all -> all.stream().filter(each -> each.scenario().path().equals(path)).forEach(
                each -> groups.computeIfAbsent(neutral(reads.apply(each)), key -> new ArrayList<>()).add(each)));
        groups.values().forEach(same -> {
            String kinds = natives.size() == 1 || same.size() == natives.size() ? "" : same.stream()
                    .map(each -> label(each.scenario())).collect(Collectors.joining(", ", " (", ")"));
            writer.write(kinds, same.get(0), reads.apply(same.get(0)));
        });
    }

    /** What blocks have in common that are not repeated: middleware calls, error lines and the result. */
    private static List<String> neutral(List<String> block) {
        return KindWords.neutral(block).stream()
                .filter(line -> SHARED.matcher(line).matches()).toList();
    }

    /** What distinguishes a path from the success path, or from the path before it that is much more alike. */
    private List<String> block(NativeSequence success, List<NativeSequence> all, NativeSequence path) {
        SequenceDifference least = difference(success, path);
        String like = "";
        for (NativeSequence other : least.different() < LEAST_SAVED ? all.subList(0, 0)
                : all.subList(0, all.indexOf(path))) {
            SequenceDifference difference = difference(other, path);
            if (!other.lacksSomething() && difference.different() + LEAST_SAVED <= least.different()
                    && difference.text().size() < least.text().size()) {
                least = difference;
                like = other.scenario().path();
            }
        }
        List<String> block = new ArrayList<>(least.text());
        if (!like.isEmpty() && least.different() == 0) {
            block.set(0, "  as: " + like);
        } else if (!like.isEmpty()) {
            block.add(0, "  as: " + like);
        }
        return withOutcome(block, path.outcome());
    }

    /** Adds the outcome, on the same line if the sequence goes on as another one. */
    private static List<String> withOutcome(List<String> lines, List<String> outcome) {
        List<String> all = new ArrayList<>(lines);
        boolean goesOn = !all.isEmpty() && all.get(all.size() - 1).matches("  (…|as: .*)");
        for (String line : outcome) {
            all.add((goesOn ? all.remove(all.size() - 1) : " ") + " => " + line);
            goesOn = false;
        }
        return all;
    }

    private SequenceDifference difference(NativeSequence other, NativeSequence path) {
        int most = path.concernsValues() ? MOST_LINES_OF_VALUES : MOST_LINES;
        return new SequenceDifference(other.lines(), keys.computeIfAbsent(other, KindWords::withoutIds), path.lines(),
                keys.computeIfAbsent(path, KindWords::withoutIds), most);
    }
}
