package com.velotra.tv.tavro.services.channellist;

import java.util.ArrayList;
import java.util.List;
import java.util.function.IntFunction;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/**
 * Makes calls that may end the process in copies of it. A copy makes one call after the other; when one has ended it,
 * the next copy goes on with the call after that. A copy starts in milliseconds, a virtual machine in hundreds of them.
 */
final class Copies {
    private static final Pattern EXCEPTION =
            Pattern.compile("terminate called after throwing an instance of '([^']+)'");
    private static final String MARK = "outcome: ";
    private static final int ATTEMPTS = 5;

    private Copies() {}

    /**
     * The outcomes of the calls with the numbers 0 to {@code count - 1}: the line that a call returned, or {@code ends}
     * with the C++ exception that nobody caught, or with the signal.
     */
    static List<String> outcomes(int count, IntFunction<String> call) {
        List<String> outcomes = new ArrayList<>();
        int stuck = 0;
        while (outcomes.size() < count) {
            int first = outcomes.size();
            String output = Script.inACopy(() -> {
                for (int i = first; i < count; i++) {
                    System.out.println(MARK + call.apply(i));
                    System.out.flush();
                }
            });
            output.lines().filter(line -> line.startsWith(MARK)).map(line -> line.substring(MARK.length()))
                    .forEach(outcomes::add);
            String end = output.substring(output.lastIndexOf('\n') + 1);
            stuck = outcomes.size() > first ? 0 : stuck + 1;
            if (end.equals("signal 14") && stuck < ATTEMPTS) {
                continue; // the copy waited for a thread that it does not have
            } else if (end.matches("signal (6|11)")) {
                Matcher exception = EXCEPTION.matcher(output);
                outcomes.add(exception.find() ? "ends: " + exception.group(1) : "ends: " + end);
            } else if (!end.equals("exit 0") || outcomes.size() != count) {
                throw new IllegalStateException("after " + outcomes.size() + " of " + count + " calls: " + output);
            }
        }
        return outcomes;
    }
}
