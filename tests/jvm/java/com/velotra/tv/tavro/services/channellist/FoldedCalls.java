package com.velotra.tv.tavro.services.channellist;

import java.util.ArrayList;
import java.util.List;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/**
 * Writes the JNI calls for one value of a record object as one line. Only exactly these sequences are folded:
 *
 * <pre>
 *     NewStringUTF("Key") = STRING
 *     CallBooleanMethod(OBJECT, METHOD, OBJECT, STRING) = false
 *     DeleteLocalRef(STRING)
 * </pre>
 *
 * <p>is {@code not set: Key}, one line for all such keys that follow each other; and
 *
 * <pre>
 *     NewStringUTF("Key") = STRING
 *     CallBooleanMethod(OBJECT, METHOD, OBJECT, STRING) = true
 *     GetFieldID(CLASS, "field", "I")
 *     GetIntField(OBJECT, BASE.field) = 7
 *     DeleteLocalRef(STRING)
 * </pre>
 *
 * <p>is {@code set: Key, BASE.field I = 7}, followed by the log line that may precede DeleteLocalRef. A line before
 * names OBJECT, METHOD and STRING: {@code keys of OBJECT by METHOD, key in STRING}; another one names CLASS: {@code
 * fields of CLASS}. And
 *
 * <pre>
 *     GetMethodID(CLASS, "setter", "(I)V")
 *     CallVoidMethod(OBJECT, BASE.setter, 7)
 * </pre>
 *
 * <p>is {@code pass: BASE.setter (I)V, 7}, with a line before: {@code setters of CLASS on OBJECT}.
 */
final class FoldedCalls {
    private static final Pattern KEY = Pattern.compile("NewStringUTF\\(\"(\\w+)\"\\) = (string\\d+)");
    private static final Pattern ASKED = Pattern.compile(
            "CallBooleanMethod\\((\\w+), (\\w+\\.isContainsKey), (\\w+), (string\\d+)\\) = (true|false)");
    private static final Pattern FIELD = Pattern.compile("GetFieldID\\((class\\d+), \"(\\w+)\", \"I\"\\)");
    private static final Pattern VALUE = Pattern.compile("GetIntField\\((\\w+), (\\w+)\\.(\\w+)\\) = (-?\\d+)");
    private static final Pattern SETTER = Pattern.compile("GetMethodID\\((class\\d+), \"(\\w+)\", \"\\(I\\)V\"\\)");
    private static final Pattern PASSED =
            Pattern.compile("CallVoidMethod\\((object\\d+), (\\w+)\\.(\\w+), (-?\\d+)\\)");
    private static final int WIDTH = 110;

    private final List<String> calls;
    private final List<String> lines = new ArrayList<>();
    private final List<String> notSet = new ArrayList<>();
    private String keys = "";
    private String fields = "";
    private String setters = "";
    private int at;

    private FoldedCalls(List<String> calls) {
        this.calls = calls;
    }

    static List<String> fold(List<String> calls) {
        FoldedCalls folded = new FoldedCalls(calls);
        while (folded.at < calls.size()) {
            if (!folded.foldKey() && !folded.foldSetter()) {
                folded.add(calls.get(folded.at));
                folded.at++;
            }
        }
        folded.endNotSet();
        return folded.lines;
    }

    /** Folds the calls at the position, if they are for one key. */
    private boolean foldKey() {
        if (!call(0).startsWith("NewStringUTF(") || !call(1).startsWith("CallBooleanMethod(")) {
            return false;
        }
        Matcher key = KEY.matcher(call(0));
        Matcher asked = ASKED.matcher(call(1));
        if (!key.matches() || !asked.matches() || !asked.group(1).equals(asked.group(3))
                || !key.group(2).equals(asked.group(4))) {
            return false;
        }
        String end = "DeleteLocalRef(" + key.group(2) + ")";
        String of = "keys of " + asked.group(1) + " by " + asked.group(2) + ", key in " + key.group(2);
        if (asked.group(5).equals("false")) {
            if (!call(2).equals(end)) {
                return false;
            }
            keys = name(of, keys);
            notSet.add(key.group(1));
            at += 3;
            return true;
        }
        Matcher field = FIELD.matcher(call(2));
        Matcher value = VALUE.matcher(call(3));
        boolean logs = call(4).startsWith("log ");
        if (!field.matches() || !value.matches() || !value.group(1).equals(asked.group(1))
                || !value.group(3).equals(field.group(2)) || !call(logs ? 5 : 4).equals(end)) {
            return false;
        }
        keys = name(of, keys);
        fields = name("fields of " + field.group(1), fields);
        add("set: " + key.group(1) + ", " + value.group(2) + "." + value.group(3) + " I = " + value.group(4)
                + (logs ? ", " + call(4) : ""));
        at += logs ? 6 : 5;
        return true;
    }

    /** Folds the calls at the position, if they pass a number to a setter. */
    private boolean foldSetter() {
        if (!call(0).startsWith("GetMethodID(") || !call(1).startsWith("CallVoidMethod(")) {
            return false;
        }
        Matcher setter = SETTER.matcher(call(0));
        Matcher value = PASSED.matcher(call(1));
        if (!setter.matches() || !value.matches() || !value.group(3).equals(setter.group(2))) {
            return false;
        }
        setters = name("setters of " + setter.group(1) + " on " + value.group(1), setters);
        add("pass: " + value.group(2) + "." + value.group(3) + " (I)V, " + value.group(4));
        at += 2;
        return true;
    }

    /** Adds a line that names what the following ones have in common, unless it is the same as before. */
    private String name(String common, String before) {
        if (!common.equals(before)) {
            add(common);
        }
        return common;
    }

    private String call(int offset) {
        return at + offset < calls.size() ? calls.get(at + offset) : "";
    }

    private void add(String line) {
        endNotSet();
        lines.add(line);
    }

    private void endNotSet() {
        StringBuilder line = new StringBuilder();
        for (String key : notSet) {
            if (line.length() + key.length() > WIDTH) {
                lines.add(line.toString());
                line.setLength(0);
            }
            line.append(line.isEmpty() ? "not set: " : ", ").append(key);
        }
        if (!line.isEmpty()) {
            lines.add(line.toString());
        }
        notSet.clear();
    }
}
