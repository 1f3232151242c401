package com.velotra.tv.tavro.tool.device;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.input.Failure;
import java.io.IOException;
import java.io.InputStream;
import java.io.UncheckedIOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.concurrent.CompletableFuture;
import java.util.stream.Collectors;

/** Runs adb for one device. */
public final class Adb {
    /** Exit code and output of a run. */
    record Reply(int exit, String out, String err) {
        boolean succeeded() {
            return exit == 0;
        }

        /** Returns what the program said, on one line, for messages. */
        String reason() {
            String text = (err.isBlank() ? out : err).strip();
            return text.isEmpty() ? "exit code " + exit
                    : Printable.of(text.lines().map(String::strip).collect(Collectors.joining("; ")));
        }
    }

    private final String program;
    private final String serial;

    /**
     * Creates it without running it.
     *
     * @param program path or name of adb; null for $ADB or else adb
     * @param serial the device's serial number; null for $ANDROID_SERIAL, which adb itself reads, or the only device
     */
    public Adb(String program, String serial) {
        String variable = System.getenv("ADB");
        this.program = program != null ? program : variable != null && !variable.isEmpty() ? variable : "adb";
        this.serial = serial;
    }

    /** Checks that the device is there and ready. */
    public void needDevice() {
        Reply state = run("get-state");
        String out = state.out().strip();
        if (state.succeeded() && out.equals("device")) {
            return;
        }
        throw new Failure(explain(state.succeeded() ? "device " + out : state.reason()));
    }

    /** Runs adb and waits for its end. */
    Reply run(String... words) {
        try {
            Process process = start(ProcessBuilder.Redirect.PIPE, List.of(words));
            process.getOutputStream().close();
            CompletableFuture<String> err = CompletableFuture.supplyAsync(() -> text(process.getErrorStream()));
            String out = text(process.getInputStream());
            return new Reply(process.waitFor(), out, err.join());
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        } catch (InterruptedException e) {
            Thread.currentThread().interrupt();
            throw new Failure("interrupted while adb was running");
        }
    }

    /** Runs adb and passes its errors on to standard error. The caller reads its output. */
    Process stream(String... words) {
        try {
            Process process = start(ProcessBuilder.Redirect.INHERIT, List.of(words));
            process.getOutputStream().close();
            return process;
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        }
    }

    /** Runs a command of the device's shell. */
    Reply shell(String... words) {
        return run("shell", line(words));
    }

    /** Runs a command of the device's shell that must succeed. Returns its output without blanks around it. */
    String need(String problem, String... words) {
        Reply reply = shell(words);
        if (!reply.succeeded()) {
            throw failed(problem, reply);
        }
        return reply.out().strip();
    }

    /** Returns the failure of a run. A device that is no longer there explains it. */
    Failure failed(String problem, Reply reply) {
        return new Failure(problem + ": " + (reply.err().contains("error: ")
                ? explain(reply.reason()) : reply.reason()));
    }

    /** Copies a file to the device. */
    void push(Path file, String remote) {
        Reply reply = run("push", file.toString(), remote);
        if (!reply.succeeded()) {
            throw failed("cannot push " + Printable.of(file.toString()) + " to " + remote, reply);
        }
    }

    /** Copies a file of the device. */
    void pull(String remote, Path file) {
        Reply reply = run("pull", remote, file.toString());
        if (!reply.succeeded()) {
            throw failed("cannot pull " + Printable.of(remote), reply);
        }
    }

    /** Returns words as a command line for the device's shell. */
    static String line(String... words) {
        return List.of(words).stream()
                .map(word -> word.matches("[A-Za-z0-9_./:=@%+,-]+") ? word : "'" + word.replace("'", "'\\''") + "'")
                .collect(Collectors.joining(" "));
    }

    private Process start(ProcessBuilder.Redirect errors, List<String> words) {
        List<String> command = new ArrayList<>(List.of(program));
        if (serial != null) {
            command.addAll(List.of("-s", serial));
        }
        command.addAll(words);
        try {
            return new ProcessBuilder(command).redirectError(errors).start();
        } catch (IOException e) {
            String why = String.valueOf(e.getMessage()).replaceFirst(".*error=\\d+, ", "");
            throw new Failure("cannot run " + Printable.of(program) + ": " + why
                    + "; install the Debian package adb, or name the program with --adb or $ADB");
        }
    }

    private static String text(InputStream stream) {
        try (stream) {
            return new String(stream.readAllBytes(), StandardCharsets.UTF_8);
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        }
    }

    /** Returns what adb's message means and what to do. */
    private String explain(String message) {
        if (message.contains("no devices")) {
            return "no device is connected: connect one by USB and allow USB debugging in its developer options, or "
                    + "run "
                    + program + " connect ADDRESS";
        }
        if (message.contains("more than one")) {
            return "several devices are connected: choose one with -s or $ANDROID_SERIAL: " + serials();
        }
        if (message.contains("unauthorized")) {
            return "the device does not allow this computer to debug it: accept the question on its screen, or remove "
                    + "and insert the cable if there is none";
        }
        if (message.contains("offline")) {
            return "the device is offline: run " + program + " reconnect, or restart the device";
        }
        if (message.matches(".*device .*not found.*")) {
            return "the device " + (serial == null ? "" : Printable.of(serial) + " ") + "is not connected; connected: "
                    + serials();
        }
        return message.replaceFirst("^(error|adb): ", "adb reports: ");
    }

    private String serials() {
        String found = runWithoutSerial().out().lines()
                .filter(line -> line.contains("\t"))
                .map(line -> Printable.of(line.replaceFirst("\t.*", "")))
                .collect(Collectors.joining(", "));
        return found.isEmpty() ? "none" : found;
    }

    private Reply runWithoutSerial() {
        return new Adb(program, null).run("devices");
    }
}
