package com.velotra.tv.tavro.services.channellist;

import java.util.ArrayList;
import java.util.List;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/**
 * The JNI calls of one recording in words. Calls that follow each other are one line:
 *
 * <pre>
 *     JNI: looks up VltTvNetworkInfoBase, isContainsKey; asks for 5 keys, set: NetworkName = "Text"
 * </pre>
 *
 * <p>Releases of references and characters are not mentioned, but that characters stay is.
 */
final class JniWork {
    private static final Pattern CALL = Pattern.compile("(\\w+)\\((.*?)\\)(?: = (.*)| fails: (\\w+))?", Pattern.DOTALL);
    private static final int MOST_KEYS = 5;
    private static final int MOST_NAMES = 8;

    private final List<String> calls;
    private final List<String> phrases = new ArrayList<>();
    private final List<String> lookedUp = new ArrayList<>();
    private final List<String> passed = new ArrayList<>();
    private final List<String> set = new ArrayList<>();
    private int asked;
    private String key = ""; // the reference of the key whose value is being read
    private String value = "";

    JniWork(List<String> calls) {
        this.calls = calls;
    }

    /** Adds the call at an index of the recording. */
    void add(int index) {
        Matcher call = parsed(index);
        String name = call.group(1);
        String arguments = call.group(2);
        String result = call.group(3) == null ? "" : call.group(3);
        if (call.group(4) != null) {
            endAll();
            phrases.add(name + "(" + shortened(arguments) + ") fails: " + call.group(4));
        } else if (name.equals("DeleteLocalRef")) {
            endKey(arguments);
        } else if (name.startsWith("Release")) {
            return;
        } else if (arguments.contains("isContainsKey") && name.startsWith("Call")) {
            ask(text(index - 1), arguments.substring(arguments.lastIndexOf(' ') + 1), result);
        } else if (!key.isEmpty()) {
            readValue(name, result, index);
        } else {
            addOther(index, name, arguments, result);
        }
    }

    /** The line for the calls so far, or "" if there is nothing to mention. */
    String end() {
        if (!key.isEmpty()) { // a log line follows while the value is read
            noteValue();
        }
        endAll();
        String line = phrases.isEmpty() ? "" : "JNI: " + String.join("; ", phrases);
        phrases.clear();
        return line;
    }

    private void ask(String name, String reference, String result) {
        endNames();
        asked++;
        if (result.equals("true")) {
            key = reference;
            value = "";
            set.add(name);
        }
    }

    /** Notes what is read of the value of a key that is set. */
    private void readValue(String name, String result, int index) {
        if (value.isEmpty() && name.matches("Get\\w+Field|CallObjectMethod|CallIntMethod")) {
            value = " = " + result.replaceFirst("^(string|array|object)\\d+ ", "");
        } else if (name.matches("GetStringUTFChars|Get\\w+ArrayElements") && !isReleased(index)) {
            value += " (not released)";
        }
    }

    private void endKey(String reference) {
        if (reference.equals(key)) {
            noteValue();
            key = "";
        }
    }

    private void noteValue() {
        if (!set.isEmpty() && !value.isEmpty()) {
            set.set(set.size() - 1, set.get(set.size() - 1) + value);
            value = "";
        }
    }

    private void addOther(int index, String name, String arguments, String result) {
        if (name.equals("GetMethodID") || name.equals("GetFieldID")) {
            String member = arguments.split("\"")[1];
            if (!isUsedNext(index, member)) {
                lookUp(member.equals("<init>") ? "its constructor" : member);
            }
        } else if (name.equals("FindClass") || name.equals("GetObjectClass")) {
            lookUp(result.replaceFirst("^\\w+ ", ""));
        } else if (name.equals("CallVoidMethod")) {
            endKeys();
            endLookUps();
            passed.add(arguments.split(", ")[1].replaceFirst(".*\\.", ""));
        } else if (!(name.equals("NewStringUTF") && isAskedNext(index))) {
            String phrase = phrase(index, name, arguments, result);
            if (!phrase.isEmpty()) {
                endAll();
                phrases.add(phrase);
            }
        }
    }

    private String phrase(int index, String name, String arguments, String result) {
        return switch (name) {
            case "GetStringUTFChars" -> "reads " + (arguments.matches("string\\d+") ? "" : arguments + " ") + result
                    + (isReleased(index) ? "" : " (not released)");
            case "NewStringUTF" -> isPassedNext(index) ? "" : "makes the string " + arguments;
            case "NewByteArray" -> "makes byte[" + arguments + "]";
            case "SetByteArrayRegion" -> "fills it from byte " + arguments.split(", ")[1] + ", "
                    + arguments.split(", ")[2] + " bytes";
            case "NewObject" -> "makes a " + arguments.replaceFirst(".*, (\\w+)\\..*", "$1");
            case "CallIntMethod", "CallObjectMethod" -> arguments.replaceFirst("^\\w+, \\w+\\.(\\w+)", "$1")
                    .replaceFirst("^(\\w+), (.*)", "$1($2)") + " = " + result.replaceFirst("^\\w+\\d ", "");
            case "CallBooleanMethod" -> "calls " + arguments.split(", ")[1].replaceFirst(".*\\.", "");
            default -> name + "(" + shortened(arguments) + ")" + (result.isEmpty() ? "" : " = " + result);
        };
    }

    private void lookUp(String name) {
        endKeys();
        endPassed();
        if (!lookedUp.contains(name)) {
            lookedUp.add(name);
        }
    }

    private void endAll() {
        endKeys();
        endNames();
    }

    private void endNames() {
        endLookUps();
        endPassed();
    }

    private void endLookUps() {
        if (!lookedUp.isEmpty()) {
            phrases.add("looks up " + names(lookedUp));
            lookedUp.clear();
        }
    }

    private void endPassed() {
        if (!passed.isEmpty()) {
            phrases.add("calls " + names(passed));
            passed.clear();
        }
    }

    private void endKeys() {
        if (asked > 0) {
            String keys = asked == 1 ? "one key" : asked + " keys";
            String which = set.isEmpty() ? asked == 1 ? "not set" : "none is set"
                    : set.size() > MOST_KEYS ? set.size() + " are set" : "set: " + String.join(", ", set);
            phrases.add("asks for " + keys + ", " + which);
        }
        asked = 0;
        set.clear();
    }

    private static String names(List<String> names) {
        return names.size() <= MOST_NAMES ? String.join(", ", names)
                : names.size() + " names: " + names.get(0) + " … " + names.get(names.size() - 1);
    }

    /** Arguments without classes and signatures: the first text, or the first argument. */
    private static String shortened(String arguments) {
        String[] texts = arguments.split("\"");
        return texts.length > 1 ? '"' + texts[1] + '"' : arguments.replaceFirst("^\\w+, (\\w+\\.)", "$1");
    }

    /** The text of a key that is made before it is asked for. */
    private String text(int index) {
        return parsed(index).group(2).replace("\"", "");
    }

    private boolean isAskedNext(int index) {
        return next(index).contains(".isContainsKey, ");
    }

    private boolean isPassedNext(int index) {
        return next(index).startsWith("CallVoidMethod(");
    }

    private boolean isUsedNext(int index, String member) {
        return Pattern.compile("Call\\w+\\(.*\\." + Pattern.quote(member) + "\\b.*").matcher(next(index)).matches()
                || next(index).startsWith("NewStringUTF(") && next(index + 1).contains("." + member + ", ");
    }

    private String next(int index) {
        return index + 1 < calls.size() ? calls.get(index + 1) : "";
    }

    /** Whether the characters or elements that a call gets are released before the reference is used anew. */
    private boolean isReleased(int index) {
        String of = parsed(index).group(2).split(",")[0];
        for (String call : calls.subList(index + 1, calls.size())) {
            if (call.startsWith("Release") && call.contains("(" + of + ",")) {
                return true;
            } else if (call.contains("= " + of + " ") || call.startsWith("DeleteLocalRef(" + of + ")")) {
                return false;
            }
        }
        return false;
    }

    private Matcher parsed(int index) {
        Matcher call = CALL.matcher(calls.get(index));
        if (!call.matches()) {
            throw new AssertionError("not a call: " + calls.get(index));
        }
        return call;
    }
}
