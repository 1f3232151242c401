package com.velotra.tv.tavro.services.channellist;

import java.util.ArrayList;
import java.util.Arrays;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.stream.Collectors;

/** The ledger of one native: its calls on each path, as text. */
final class Ledger {
    /** A path names another one whose first lines it repeats, if these are so many. */
    private static final int LEAST_REPEATED = 6;
    private static final String REFERENCE = "reference ";

    private final Map<String, List<String>> folded = new LinkedHashMap<>();
    private final List<String> lines = new ArrayList<>();

    Ledger(String nativeName) {
        lines.add(nativeName);
    }

    /** Adds a path. */
    void add(Scenario scenario, JniCalls.Recording recording, List<String> held) {
        List<String> calls = FoldedCalls.fold(recording.calls());
        lines.add("");
        lines.add("== " + scenario.path() + ": " + callText(scenario));
        int repeated = 0;
        String most = "";
        for (Map.Entry<String, List<String>> path : folded.entrySet()) {
            int number = repeated(calls, path.getValue());
            if (number > repeated) {
                repeated = number;
                most = path.getKey();
            }
        }
        if (repeated < LEAST_REPEATED) {
            repeated = 0;
        } else {
            lines.add("    " + repeated + " lines as in: " + most);
        }
        calls.stream().skip(repeated).forEach(call -> lines.add("    " + call));
        lines.add(outcome(scenario, recording));
        String references = held.stream().filter(thing -> thing.startsWith(REFERENCE))
                .map(thing -> thing.substring(REFERENCE.length())).collect(Collectors.joining(", "));
        if (!references.isEmpty()) {
            lines.add("  refers to " + references);
        }
        held.stream().filter(thing -> !thing.startsWith(REFERENCE)).forEach(thing -> lines.add("  holds " + thing));
        if (folded.put(scenario.path(), calls) != null) {
            throw new AssertionError("two paths have one name: " + scenario);
        }
    }

    String text() {
        return String.join("\n", lines) + "\n";
    }

    /** How many lines two paths have in common at their beginning. */
    private static int repeated(List<String> calls, List<String> others) {
        int number = 0;
        while (number < calls.size() && number < others.size() && calls.get(number).equals(others.get(number))) {
            number++;
        }
        return number;
    }

    /** The call as Java writes it: {@code native_open(2, "/data/list.bin")}. */
    static String callText(Scenario scenario) {
        return scenario.method().getName() + scenario.arguments().stream().map(Ledger::valueText)
                .collect(Collectors.joining(", ", "(", ")"));
    }

    /** What the native returns or throws, indented. */
    static String outcome(Scenario scenario, JniCalls.Recording recording) {
        if (recording.thrown() != null) {
            return "  throws " + recording.thrown().getClass().getSimpleName();
        }
        boolean isAddress = scenario.method().getName().equals("nativeSetup");
        return "  returns " + (isAddress ? "an address" : valueText(recording.result()));
    }

    private static String valueText(Object value) {
        if (value == null || value instanceof Integer) {
            return String.valueOf(value);
        } else if (value instanceof String text) {
            return '"' + text + '"';
        } else if (value instanceof byte[] bytes) {
            return "byte[" + bytes.length + "]";
        } else if (value instanceof List<?> list) {
            return list.stream().map(Ledger::valueText).collect(Collectors.joining(", ", "[", "]"));
        } else if (value instanceof KeyedValues object && !object.getClass().getSimpleName().endsWith("Info")) {
            return "object" + (hasIdentifier(object) ? " " + valueText(object.identifier()) : "");
        }
        return value.getClass().getSimpleName();
    }

    /** Whether a record object's identifier is set, be it null. */
    static boolean hasIdentifier(KeyedValues object) {
        return object.keys().stream().anyMatch(key -> Arrays.stream(ListClass.values())
                .anyMatch(kind -> kind.identifierKey().equals(key)));
    }
}
