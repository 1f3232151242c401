package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.google.gson.JsonElement;
import com.google.gson.JsonObject;
import com.google.gson.JsonParser;
import java.io.File;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.TreeSet;
import java.util.stream.Collectors;
import java.util.stream.Stream;
import java.util.stream.StreamSupport;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** The tracer in a Java virtual machine. */
class TraceTest {
    private static final Path TRACER = Path.of(
            System.getProperty("java.library.path").split(File.pathSeparator)[0], "libtavro_trace.so").toAbsolutePath();

    @TempDir
    private Path folder;

    /** Runs {@link TracedCalls} and returns its exit code and output. */
    private String run(List<String> flags, Map<String, String> variables, String... arguments)
            throws IOException, InterruptedException {
        List<String> command = new ArrayList<>(List.of(
                Path.of(System.getProperty("java.home"), "bin", "java").toString(),
                "-XX:TieredStopAtLevel=1", "-XX:+UseSerialGC", "-Dfile.encoding=UTF-8",
                "-Djava.library.path=" + System.getProperty("java.library.path"),
                "-cp", System.getProperty("java.class.path")));
        command.addAll(flags);
        command.add(TracedCalls.class.getName());
        command.addAll(List.of(arguments));
        Path out = folder.resolve("out");
        ProcessBuilder builder = new ProcessBuilder(command).redirectErrorStream(true).redirectOutput(out.toFile());
        builder.environment().putAll(variables);
        builder.environment().put("TAVRO_HOME", folder.resolve("home").toString());
        builder.environment().put("TAVRO_TRACE", folder.resolve("trace").toString());
        int exit = builder.start().waitFor();
        return exit + "\n" + Files.readString(out);
    }

    /** The lines of a trace without the first one, times and addresses. */
    private static List<String> lines(Stream<String> trace) {
        return trace.skip(1)
                .map(line -> line.replaceFirst("^ *[0-9]+ ", "").replaceFirst(" <[0-9]+ us>$", "")
                        .replaceFirst("= -?[0-9]{4,}$", "= ADDRESS"))
                .toList();
    }

    /** The lines of the example in the document about traces. */
    private static List<String> example() throws IOException {
        List<String> document = Files.readAllLines(Path.of(System.getProperty("tavro.tracing")));
        return lines(document.stream().map(String::strip).dropWhile(line -> !line.startsWith("# trace of process "))
                .takeWhile(line -> !line.isEmpty()));
    }

    @Test
    void nativesAreShownWithTheirCallsAndEachOfTheirArgumentsHasAName() throws Exception {
        String printed = run(List.of(), Map.of("LD_PRELOAD", TRACER.toString()));
        assertEquals("0\nthrown: deliberate\n", printed);
        List<String> lines = lines(Files.lines(folder.resolve("trace")));
        int between = lines.indexOf("main VltTvNetworkList.native_close(mwdbId=" + TracedCalls.BETWEEN + ")");
        assertTrue(between > 0, () -> String.join("\n", lines));
        assertEquals(example(), lines.subList(0, between));
        Set<String> natives = new TreeSet<>();
        for (String line : lines.subList(between + 3, lines.size())) {
            if (line.matches("main VltTv.*")) {
                assertTrue(line.matches("main VltTv\\w+\\.native\\w+\\((\\w+=[^=]+(, \\w+=[^=]+)*)?\\)"), line);
                natives.add(line);
            }
        }
        assertEquals(72, natives.size(), () -> String.join("\n", natives));
    }

    @Test
    void jsonHasTheCallsOfEachThreadInsideItsNatives() throws Exception {
        String printed = run(
                List.of("-Xcheck:jni", "-agentpath:" + TRACER), Map.of("TAVRO_TRACE_FORMAT", "json"), "on two threads");
        assertEquals("3\n", printed);
        Map<Integer, String> threads = new HashMap<>();
        Map<String, List<JsonObject>> calls = new HashMap<>();
        JsonObject trace = JsonParser.parseString(Files.readString(folder.resolve("trace"))).getAsJsonObject();
        for (JsonElement element : trace.getAsJsonArray("traceEvents")) {
            JsonObject event = element.getAsJsonObject();
            if (event.get("name").getAsString().equals("thread_name")) {
                threads.put(event.get("tid").getAsInt(), event.getAsJsonObject("args").get("name").getAsString());
            } else if (event.get("ph").getAsString().equals("X")) {
                calls.computeIfAbsent(threads.get(event.get("tid").getAsInt()), name -> new ArrayList<>()).add(event);
            }
        }
        assertEquals(Set.of("reader \"1\"", "reader \"2\""), calls.keySet());
        for (List<JsonObject> ofThread : calls.values()) {
            JsonObject whole = ofThread.get(ofThread.size() - 1);
            assertEquals("VltTvNetworkList.native_getInfoList", whole.get("name").getAsString());
            assertEquals("{\"mwdbId\":1,\"keys\":\"null\",\"result\":\"ArrayList[0]\"}", whole.get("args").toString());
            JsonObject inside = ofThread.get(ofThread.size() - 2);
            assertEquals("x_nwl_open {\"list_id\":1,\"tag\":0,\"notify\":0,\"result\":-101}",
                    inside.get("name").getAsString() + " " + inside.get("args"));
            assertTrue(start(whole) <= start(inside) && end(inside) <= end(whole), ofThread::toString);
            assertTrue(inside.get("dur").getAsDouble() >= 0);
        }
        assertEquals(Set.of("native", "platform"), calls.values().stream().flatMap(List::stream)
                .map(event -> event.get("cat").getAsString()).collect(Collectors.toSet()));
        assertEquals("java", StreamSupport.stream(trace.getAsJsonArray("traceEvents").spliterator(), false)
                .map(JsonElement::getAsJsonObject)
                .filter(event -> event.get("name").getAsString().equals("process_name"))
                .map(event -> event.getAsJsonObject("args").get("name").getAsString())
                .collect(Collectors.joining()));
    }

    private static double start(JsonObject event) {
        return event.get("ts").getAsDouble();
    }

    private static double end(JsonObject event) {
        return start(event) + event.get("dur").getAsDouble();
    }
}
