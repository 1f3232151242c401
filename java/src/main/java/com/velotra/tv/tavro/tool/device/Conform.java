package com.velotra.tv.tavro.tool.device;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.input.Failure;
import java.io.IOException;
import java.io.UncheckedIOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;

/** Runs the conformance checks on a device. */
public final class Conform {
    private static final int WRONG_USAGE = 2;

    /** Where the middleware's libraries are: the loader does not look there for programs of other folders. */
    private static final String LIBRARIES = "LD_LIBRARY_PATH=/vendor/lib";

    private final Adb adb;
    private final String directory;

    public Conform(Adb adb, String directory) {
        this.adb = adb;
        this.directory = directory;
    }

    /**
     * Runs the checks with the given arguments, and prints their output as it comes.
     *
     * @param junit file for the results as JUnit XML, or null
     * @return the exit code of the checks: 0 all passed, 1 one failed
     */
    public int run(List<String> arguments, Path junit) {
        Path folder = junit == null ? null : junit.toAbsolutePath().getParent();
        if (folder != null && !Files.isDirectory(folder)) {
            throw new Failure("cannot write " + Printable.of(junit.toString()) + ": there is no folder "
                    + Printable.of(folder.toString()));
        }
        adb.needDevice();
        String program = directory + "/" + Push.PROGRAM;
        if (!new DeviceFiles(adb).exists(program)) {
            throw new Failure(program + " is not on the device: run device push first");
        }
        String results = directory + "/conform.xml";
        List<String> words = new ArrayList<>(List.of(LIBRARIES, "./" + Push.PROGRAM));
        if (junit != null) {
            words.addAll(List.of("--format=tap", "--format=junit", "--output=" + results));
            adb.need("cannot remove the results of an earlier run", "rm", "-f", results);
        }
        words.addAll(arguments);
        int exit = print(adb.stream("shell", "cd " + Adb.line(directory) + " && "
                + Adb.line(words.toArray(String[]::new))));
        if (exit > WRONG_USAGE) {
            throw new Failure(Push.PROGRAM + " did not run to its end: exit code " + exit
                    + "; look at the last check above and at adb logcat");
        }
        if (junit != null && exit < WRONG_USAGE) {
            if (!new DeviceFiles(adb).exists(results)) {
                throw new Failure(Push.PROGRAM + " wrote no results to " + results
                        + "; look at its messages above, and leave --junit out if it was not to run the checks");
            }
            adb.pull(results, junit);
            System.err.println("Results: " + Printable.of(junit.toString()));
        }
        return exit;
    }

    private static int print(Process process) {
        try (var lines = process.inputReader(StandardCharsets.UTF_8)) {
            for (String line = lines.readLine(); line != null; line = lines.readLine()) {
                System.out.println(Printable.of(line));
            }
            return process.waitFor();
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        } catch (InterruptedException e) {
            Thread.currentThread().interrupt();
            throw new Failure("interrupted while the checks were running");
        } finally {
            process.destroy();
        }
    }
}
