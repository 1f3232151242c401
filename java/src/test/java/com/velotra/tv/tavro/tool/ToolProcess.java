package com.velotra.tv.tavro.tool;

import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.io.PrintStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Map;

/** Runs the tool, in a virtual machine of its own or in this one. */
final class ToolProcess {
    /** How a run ended, and what it printed. */
    record Result(int exit, String out, String err) {}

    private ToolProcess() {}

    /** Runs the tool with {@code environment} on top of this machine's; its output passes through {@code folder}. */
    static Result run(Path folder, Map<String, String> environment, String... arguments)
            throws IOException, InterruptedException {
        return runWithLibraryPath(System.getProperty("java.library.path"), folder, environment, arguments);
    }

    /** The same with the library to be found in {@code libraryPath}. */
    static Result runWithLibraryPath(
            String libraryPath, Path folder, Map<String, String> environment, String... arguments)
            throws IOException, InterruptedException {
        List<String> command = new ArrayList<>(List.of(
                Path.of(System.getProperty("java.home"), "bin", "java").toString(),
                "-Djava.library.path=" + libraryPath,
                "-cp", System.getProperty("java.class.path"), Main.class.getName()));
        command.addAll(List.of(arguments));
        Path out = folder.resolve("out");
        Path err = folder.resolve("err");
        ProcessBuilder builder = new ProcessBuilder(command).redirectOutput(out.toFile()).redirectError(err.toFile());
        builder.environment().putAll(environment);
        int exit = builder.start().waitFor();
        return new Result(exit, Files.readString(out), Files.readString(err));
    }

    /** Runs the tool in this virtual machine, over this one's storage directory. */
    static Result runHere(String... arguments) {
        PrintStream out = System.out;
        PrintStream err = System.err;
        ByteArrayOutputStream newOut = new ByteArrayOutputStream();
        ByteArrayOutputStream newErr = new ByteArrayOutputStream();
        System.setOut(new PrintStream(newOut, true, StandardCharsets.UTF_8));
        System.setErr(new PrintStream(newErr, true, StandardCharsets.UTF_8));
        try {
            int exit = Main.run(arguments);
            return new Result(exit, newOut.toString(StandardCharsets.UTF_8), newErr.toString(StandardCharsets.UTF_8));
        } finally {
            System.setOut(out);
            System.setErr(err);
        }
    }
}
