package com.velotra.tv.tavro.services.channellist;

import java.io.File;
import java.io.IOException;
import java.io.ObjectInputStream;
import java.io.ObjectOutputStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Map;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/** Virtual machines over the workstation's platform, for problems that the scripted platform cannot have. */
final class TroubleshootingChild {
    private static final Pattern LINE = Pattern.compile("(?m)^(\\w)/(.*?) *\\( *\\d+\\): (.*?)\\s*$");

    private TroubleshootingChild() {}

    /** The problems of {@link TroubleshootingLoads}. Functions are bound when a library is loaded, as on Android. */
    static Map<String, Observation> loads(Path folder) throws IOException, InterruptedException {
        Files.writeString(folder.resolve("a-file"), "");
        return run(TroubleshootingLoads.class, folder, Files.createDirectory(folder.resolve("loads")),
                Map.of("LD_BIND_NOW", "1", "TAVRO_HOME", folder.resolve("a-file/home").toString()));
    }

    /** The problems of {@link TroubleshootingStorage}. */
    static Map<String, Observation> storage(Path folder) throws IOException, InterruptedException {
        return run(TroubleshootingStorage.class, Path.of(libraries()), Files.createDirectory(folder.resolve("storage")),
                Map.of("TAVRO_LOCK_TIMEOUT_MS", "50", "TAVRO_HOME", folder.resolve("home").toString()));
    }

    /** The folder with the library and the workstation's platform. */
    static String libraries() {
        return System.getProperty("java.library.path").split(File.pathSeparator)[0];
    }

    @SuppressWarnings("unchecked")
    private static Map<String, Observation> run(
            Class<?> program, Path libraryPath, Path work, Map<String, String> variables)
            throws IOException, InterruptedException {
        ProcessBuilder builder = new ProcessBuilder(
                Path.of(System.getProperty("java.home"), "bin", "java").toString(), "-XX:+UseSerialGC",
                "-XX:TieredStopAtLevel=1", "-Djava.library.path=" + libraryPath,
                "-cp", System.getProperty("java.class.path"), program.getName(), work.toString(), libraries());
        builder.environment().remove("LD_LIBRARY_PATH");
        builder.environment().put("TAVRO_LOG_FILE", work.resolve("log").toString());
        builder.environment().put("TAVRO_PROP_vendor_vlt_broadcast_log_level", "E");
        builder.environment().putAll(variables);
        Process process = builder.redirectErrorStream(true).start();
        String printed = new String(process.getInputStream().readAllBytes());
        if (process.waitFor() != 0) {
            throw new IllegalStateException(program.getSimpleName() + ": " + printed);
        }
        try (ObjectInputStream stream = new ObjectInputStream(Files.newInputStream(work.resolve("seen")))) {
            return (Map<String, Observation>) stream.readObject();
        } catch (ClassNotFoundException e) {
            throw new IllegalStateException(e);
        }
    }

    // What the programs share.

    /** Passes what was seen on to the test. */
    static void pass(Path work, Map<String, Observation> seen) throws IOException {
        try (ObjectOutputStream stream = new ObjectOutputStream(Files.newOutputStream(work.resolve("seen")))) {
            stream.writeObject(seen);
        }
    }

    /** The log lines since the last call. */
    static List<String> newLines(Path work) throws IOException {
        Path log = work.resolve("log");
        List<String> lines = new ArrayList<>();
        if (Files.exists(log)) {
            Matcher line = LINE.matcher(Files.readString(log));
            while (line.find()) {
                lines.add(line.group(1) + " " + line.group(2).strip() + ": " + line.group(3));
            }
            Files.writeString(log, "");
        }
        return lines;
    }
}
