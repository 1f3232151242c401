package com.velotra.tv.tavro.tool;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Map;

/** Runs the tool in a virtual machine of its own. */
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
}
