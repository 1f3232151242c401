package com.velotra.tv.tavro.services.channellist;

import java.util.ArrayList;
import java.util.List;
import java.util.Set;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import java.util.stream.Collectors;

/**
 * One path of a native as a reader wants to see it: middleware calls, log lines, and the JNI work between them. The log
 * lines of the handle map are left out; the ledger has them.
 *
 * @param scenario the path
 * @param lines the sequence
 * @param outcome what the native returns or throws, and what it deliberately keeps
 */
record NativeSequence(Scenario scenario, List<String> lines, List<String> outcome) {
    private static final Pattern LOG = Pattern.compile("log (\\d) (.*?): \"(.*)\"", Pattern.DOTALL);

    /** What stays on one of few paths only, unlike the handle of a list that a native opens. */
    private static final Pattern KEPT = Pattern.compile("write lock of .*|read lock of .*|second handle of .*|less .*");

    static NativeSequence of(Recorded recorded) {
        List<String> calls = recorded.recording().calls();
        List<String> lines = new ArrayList<>();
        JniWork work = new JniWork(calls);
        for (int i = 0; i < calls.size(); i++) {
            String call = calls.get(i);
            if (call.contains("Handle]: ")) {
                continue; // a log line of the handle map
            } else if (call.startsWith("log ") || call.matches("(x|fs)_(?s).*")) {
                add(lines, work.end());
                lines.add(call.startsWith("log ") ? logLine(call) : call);
            } else {
                work.add(i);
            }
        }
        add(lines, work.end());
        List<String> outcome = new ArrayList<>();
        outcome.add(Ledger.outcome(recorded.scenario(), recorded.recording()).strip());
        recorded.held().stream().filter(thing -> KEPT.matcher(thing).matches()).map(thing -> "keeps the " + thing)
                .forEach(outcome::add);
        return new NativeSequence(recorded.scenario(), List.copyOf(lines), List.copyOf(outcome));
    }

    /** Whether a JNI call is made to fail. */
    boolean lacksSomething() {
        return scenario.failing().number() > 0;
    }

    /** Whether this path differs from others in the values of a record, not in a failure. */
    boolean concernsValues() {
        return scenario.path().matches("(all|no|an|a|null|\\d) .*(values|keys?|region codes)\\b.*|more .* than fit");
    }

    /** The middleware calls and error lines without their numbers, each once. */
    Set<String> calls() {
        return lines.stream().filter(line -> line.matches("(x_|fs_|E ).*"))
                .map(line -> line.replaceAll("\\b\\d+\\b", "n")).collect(Collectors.toSet());
    }

    /** The JNI call that fails, and its exception: {@code GetMethodID("get") fails: NoSuchMethodError}. */
    String lacking() {
        return failing().replaceFirst(".*[:;] (?=\\w+\\()", "").replaceFirst("string\\d+", "string");
    }

    /** The middleware calls after the JNI call that fails. */
    List<String> after() {
        return lines.subList(lines.indexOf(failing()) + 1, lines.size()).stream()
                .filter(line -> line.matches("(x|fs)_.*")).toList();
    }

    private String failing() {
        return lines.stream().filter(line -> line.startsWith("JNI: ") && line.contains(") fails: ")).findFirst()
                .orElseThrow();
    }

    private static void add(List<String> lines, String line) {
        if (!line.isEmpty()) {
            lines.add(line);
        }
    }

    /** Priority, {@code *} for the tag of the kind's manager or {@code -} for none, and the text without line end. */
    private static String logLine(String call) {
        Matcher log = LOG.matcher(call);
        if (!log.matches()) {
            throw new AssertionError("not a log line: " + call);
        }
        return (log.group(1).equals("3") ? "D" : "E") + (log.group(2).equals("-") ? " -: " : " *: ")
                + log.group(3).replaceFirst("\\s*(\\\\n)?$", "");
    }
}
