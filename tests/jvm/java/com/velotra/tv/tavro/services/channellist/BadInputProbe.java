package com.velotra.tv.tavro.services.channellist;

import java.lang.reflect.Method;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.Set;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/**
 * The program of a child process: makes calls that may end it, over the scripted platform, and prints one line after
 * each.
 *
 * <p>Lists 3 and 5 are open, no other list exists, and every record does.
 */
final class BadInputProbe {
    private static final List<String> PREFIXES = List.of("x_svl", "x_tsl", "x_nwl", "x_satl");
    private static final int FAILED = -1;
    static final Set<Integer> OPEN_LISTS = Set.of(3, BadInputCalls.LIST);

    private static final Pattern RECORD = Pattern.compile("x_\\w+_(?:get|del)_rec\\(0x\\w(\\w{4}), (\\d+)\\)");
    private static final Pattern ERROR = Pattern.compile("log 6 [^:]+: (.*)", Pattern.DOTALL);

    private BadInputProbe() {}

    /** Makes the calls of {@code arguments[0]} from number {@code arguments[1]} on. */
    public static void main(String[] arguments) {
        NativeLibrary.load();
        int first = Integer.parseInt(arguments[1]);
        if (!arguments[0].endsWith("before set-up")) {
            BadInputCalls.lists().forEach(TvList::nativeSetup);
        }
        switch (arguments[0]) {
            case "identifiers" -> callWithEveryIdentifier();
            case "elements of another class" -> callWithForeignElements();
            case "natives", "natives before set-up" -> callEveryNative(first, "/data/list", () -> scriptCounts(1));
            case "natives on nothing before set-up" -> callEveryNative(first, "", () -> scriptCounts(0));
            case "natives with failing locks" -> callEveryNative(first, "/data/list", () -> {
                scriptCounts(1);
                failLocks();
            });
            default -> throw new IllegalArgumentException(arguments[0]);
        }
    }

    private static void callWithEveryIdentifier() {
        List<String> identifiers = BadInputDocument.identifiers();
        for (BadInputCalls.Call call : BadInputCalls.all()) {
            Copies.outcomes(identifiers.size(), i -> outcome(call, identifiers.get(i))).forEach(System.out::println);
        }
    }

    private static void callWithForeignElements() {
        for (BadInputCalls.ForeignElement call : BadInputCalls.foreignElements()) {
            Copies.outcomes(1, i -> foreignOutcome(call)).forEach(System.out::println);
        }
    }

    /** Result or exception, and the locks that are left. */
    private static String foreignOutcome(BadInputCalls.ForeignElement call) {
        prepare(call.list());
        scriptCounts(1);
        String result;
        try {
            result = text(call.make());
        } catch (IllegalStateException e) {
            result = "throws " + e.getCause().getClass().getSimpleName();
        }
        int locks = Script.linesWith("_lock(").size() - Script.linesWith("_unlock(").size();
        return result + (locks == 0 ? "" : ", " + locks + " locks");
    }

    /**
     * Result, record asked for last, hash of the record written last, whether the list stays locked, lines at error
     * level.
     */
    private static String outcome(BadInputCalls.Call call, String identifier) {
        prepare(call.list());
        Script.logLevel("e");
        String result = text(call.with(identifier));
        String record = "";
        String written = "";
        List<String> errors = new ArrayList<>();
        int locks = 0;
        String[] lines = Script.lines();
        for (int i = 0; i < lines.length; i++) {
            Matcher asked = RECORD.matcher(lines[i]);
            Matcher error = ERROR.matcher(lines[i]);
            if (asked.matches()) {
                record = Integer.parseInt(asked.group(1), 16) + "," + asked.group(2);
            } else if (error.matches()) {
                errors.add(error.group(1).strip());
            } else if (lines[i].contains(", record")) {
                written = Integer.toHexString(Arrays.hashCode(Script.record(i)));
            } else if (lines[i].contains("_lock(")) {
                locks++;
            } else if (lines[i].contains("_unlock(")) {
                locks--;
            }
        }
        return String.join("\t", result, record, written, String.valueOf(locks != 0), String.join(" ", errors));
    }

    /** Calls every native but nativeSetup, and prints its result and all that it asked of the platform. */
    private static void callEveryNative(int first, String path, Runnable script) {
        int number = 0;
        for (TvList list : BadInputCalls.lists()) {
            for (Method method : BadInputCalls.natives(list)) {
                if (method.getName().equals("nativeSetup") || number++ < first) {
                    continue;
                }
                prepare(list);
                Script.answer("x_svl_open", 0, 0x10000 | BadInputCalls.LIST); // the walks' temporary handle
                script.run();
                Script.logLevel("d");
                Object result = BadInputCalls.invoke(list, method, BadInputCalls.workingArguments(list, method, path));
                String journal = String.join(" ", Script.lines()).replaceAll("\\s+", " ");
                System.out.println(text(result) + "\t" + journal);
            }
        }
    }

    private static void prepare(TvList list) {
        Script.reset();
        for (int id = 1; id <= 9; id++) {
            list.native_close(id);
        }
        OPEN_LISTS.forEach(list::native_open);
        Script.reset();
        for (String prefix : PREFIXES) {
            Script.always(prefix + "_open", FAILED, 0);
        }
    }

    private static void scriptCounts(int records) {
        for (String count : List.of(
                "x_svl_get_num_rec_by_brdcst_type", "x_svl_get_num_rec_by_ts", "x_tsl_get_num_recs",
                "x_tsl_get_num_rec_by_sat",
                "x_nwl_get_num_rec", "x_satl_get_num_recs")) {
            Script.always(count, 0, records);
        }
    }

    private static void failLocks() {
        for (String prefix : PREFIXES) {
            for (String call : List.of("_lock", "_unlock", "_read_lock", "_read_unlock")) {
                Script.always(prefix + call, FAILED, 0);
            }
        }
    }

    private static String text(Object result) {
        if (result == null || result instanceof Integer) {
            return String.valueOf(result);
        }
        return result instanceof String ? '"' + result.toString() + '"' : "object";
    }
}
