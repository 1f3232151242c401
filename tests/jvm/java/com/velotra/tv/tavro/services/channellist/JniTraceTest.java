package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.regex.Pattern;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** The tracer shows the JNI calls of natives, and these work as without it. */
class JniTraceTest {
    @TempDir
    Path folder;

    /** Runs the probe with an argument or none, and returns what it prints and traces. */
    private List<String> trace(String format, String option, String... arguments)
            throws IOException, InterruptedException {
        Path file = folder.resolve(format);
        List<String> command = new ArrayList<>(List.of(
                Path.of(System.getProperty("java.home"), "bin", "java").toString(), "-XX:TieredStopAtLevel=1",
                "-XX:+UseSerialGC", option, "-Djava.library.path=" + System.getProperty("java.library.path"),
                "-agentpath:" + System.getProperty("tavro.traceLibrary"), "-cp",
                System.getProperty("java.class.path"), JniTraceProbe.class.getName()));
        command.addAll(List.of(arguments));
        ProcessBuilder builder = new ProcessBuilder(command).redirectErrorStream(true);
        builder.environment().put("TAVRO_HOME", folder.resolve("home " + format).toString());
        builder.environment().put("TAVRO_TRACE", file.toString());
        builder.environment().put("TAVRO_TRACE_FORMAT", format);
        builder.environment().put("TAVRO_TRACE_JNI", "1");
        Process process = builder.start();
        String printed = new String(process.getInputStream().readAllBytes());
        assertEquals(0, process.waitFor(), printed);
        return List.of(printed, Files.readString(file));
    }

    /** A trace without times, addresses and the first line. */
    private static String withoutTimes(String trace) {
        return trace.replaceAll("(?m)^ *\\d+ main ", "").replaceAll("(?m) ?<\\d+ us>$", "")
                .replaceAll("(?m)^= -?\\d{4,}$", "= ADDRESS").replaceFirst("#.*\n", "");
    }

    @Test
    void jniCallsAreBetweenTheOtherCallsOfTheirNative() throws IOException, InterruptedException {
        List<String> run = trace("text", "-Xshare:auto");
        assertEquals("0\n1,1\n11\nthrew isContainsKey of NetworkVersion\nnull\n", run.get(0));
        assertEquals(Files.readString(Path.of(System.getProperty("tavro.expectedTrace"))), withoutTimes(run.get(1)));
    }

    @Test
    void theMachineFindsNoFaultInATracedProgram() throws IOException, InterruptedException {
        List<String> run = trace("json", "-Xcheck:jni", "nothing throws");
        assertEquals("0\n1,1\n11\n0\nnull\n", run.get(0));
        assertEquals(List.of("NewStringUTF", "GetObjectClass", "GetMethodID", "CallBooleanMethod"),
                Pattern.compile("\"cat\":\"jni\",\"name\":\"(\\w+)\"").matcher(run.get(1)).results()
                        .map(event -> event.group(1)).distinct().limit(4).toList());
    }
}
