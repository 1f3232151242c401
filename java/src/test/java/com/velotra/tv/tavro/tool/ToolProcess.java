package com.velotra.tv.tavro.tool;

import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.io.PrintStream;
import java.lang.management.ManagementFactory;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Map;

/** Runs the tool in a new virtual machine or in this one. */
public final class ToolProcess {
    /** Exit code and output of a run. */
    public record Result(int exit, String out, String err) {}

    private ToolProcess() {}

    /** Runs the tool with {@code environment} added to this machine's; {@code folder} is for temporary files. */
    public static Result run(Path folder, Map<String, String> environment, String... arguments)
            throws IOException, InterruptedException {
        return runWithLibraryPath(System.getProperty("java.library.path"), folder, environment, arguments);
    }

    /** Runs the tool with another library path. */
    public static Result runWithLibraryPath(
            String libraryPath, Path folder, Map<String, String> environment, String... arguments)
            throws IOException, InterruptedException {
        Path out = folder.resolve("out");
        Files.deleteIfExists(out);
        int exit = run(command(libraryPath, arguments), folder, out, environment);
        return new Result(exit, Files.readString(out), Files.readString(folder.resolve("err")));
    }

    /** Returns the command line that runs the tool in a new virtual machine. */
    public static List<String> command(String libraryPath, String... arguments) {
        List<String> command = new ArrayList<>(List.of(
                Path.of(System.getProperty("java.home"), "bin", "java").toString(),
                "-Djava.library.path=" + libraryPath,
                "-cp", System.getProperty("java.class.path")));
        // How to start fast: with few threads, little compilation and archived classes.
        ManagementFactory.getRuntimeMXBean().getInputArguments().stream()
                .filter(argument -> argument.startsWith("-XX:")).forEach(command::add);
        command.add(Main.class.getName());
        command.addAll(List.of(arguments));
        return command;
    }

    /**
     * Runs any command with its output to {@code out} and its errors to the file err in {@code folder}. Returns its
     * exit code.
     */
    public static int run(List<String> command, Path folder, Path out, Map<String, String> environment)
            throws IOException, InterruptedException {
        ProcessBuilder builder = new ProcessBuilder(command)
                .redirectOutput(ProcessBuilder.Redirect.appendTo(out.toFile()))
                .redirectError(folder.resolve("err").toFile());
        builder.environment().putAll(environment);
        return builder.start().waitFor();
    }

    /** Runs the tool in this virtual machine, with its storage directory. */
    public static Result runHere(String... arguments) {
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
