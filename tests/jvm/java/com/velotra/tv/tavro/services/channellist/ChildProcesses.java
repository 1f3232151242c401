package com.velotra.tv.tavro.services.channellist;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/** Runs {@link BadInputProbe} in virtual machines of their own, a new one after each call that ended the last. */
final class ChildProcesses {
    private static final Pattern EXCEPTION =
            Pattern.compile("terminate called after throwing an instance of '([^']+)'");
    private static final int ABORTED = 128 + 6;

    private ChildProcesses() {}

    /**
     * The outcomes of {@code count} calls: the lines that the program printed, and for a call that ended the process
     * {@code ends} with the C++ exception that nobody caught, if there was one.
     */
    static List<String> outcomes(Path folder, String calls, int count) throws IOException, InterruptedException {
        return outcomes(folder, calls, count, "-XX:+UseSerialGC");
    }

    /** The same, with an option for the virtual machines. */
    static List<String> outcomes(Path folder, String calls, int count, String option)
            throws IOException, InterruptedException {
        Path errors = folder.resolve("errors");
        List<String> outcomes = new ArrayList<>();
        while (outcomes.size() < count) {
            Process process = new ProcessBuilder(
                    "sh", "-c", "ulimit -c 0; exec \"$0\" \"$@\"", // no core files
                    Path.of(System.getProperty("java.home"), "bin", "java").toString(),
                    // Without compiled code, no call waits for another thread, which Copies do not have.
                    "-Xint", "-XX:+UseSerialGC", "-XX:+SuppressFatalErrorMessage", option,
                    "-Djava.library.path=" + System.getProperty("java.library.path"),
                    "-Dtavro.document=" + System.getProperty("tavro.document"),
                    "-cp", System.getProperty("java.class.path"),
                    BadInputProbe.class.getName(), calls, String.valueOf(outcomes.size()))
                    .redirectError(errors.toFile()).start();
            outcomes.addAll(process.inputReader().lines().toList());
            int exit = process.waitFor();
            String message = Files.readString(errors);
            if (exit == ABORTED) {
                Matcher matcher = EXCEPTION.matcher(message);
                outcomes.add(matcher.find() ? "ends: " + matcher.group(1) : "ends");
            } else if (exit != 0 || outcomes.size() != count) {
                throw new IllegalStateException(
                        "exit code " + exit + " after " + outcomes.size() + " of " + count + " calls: " + message);
            }
        }
        return outcomes;
    }
}
