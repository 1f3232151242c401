package com.velotra.tv.tavro.tool.device;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.output.Ansi;
import java.io.BufferedReader;
import java.io.IOException;
import java.io.InputStream;
import java.io.InputStreamReader;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.concurrent.CountDownLatch;

/** Prints the library's lines of a log. */
public final class Log {
    private final LogFilter filter = new LogFilter(Log::print);

    /**
     * Prints the lines of a device's log.
     *
     * @param since time or number of lines to begin with, as {@code logcat -T} takes it; null for all
     * @param follow whether to wait for more lines until the device is disconnected
     * @return whether the log ended as it should
     */
    public boolean ofDevice(Adb adb, String since, boolean follow) {
        List<String> words = new ArrayList<>(List.of("logcat", "-v", "threadtime"));
        if (!follow) {
            words.add("-d");
        }
        if (since != null) {
            words.addAll(List.of("-T", since));
        }
        Process logcat = adb.stream(words.toArray(String[]::new));
        // Ctrl-C ends adb, too, and is no failure: nothing is printed after it.
        CountDownLatch stopping = new CountDownLatch(1);
        Thread stop = new Thread(() -> {
            stopping.countDown();
            logcat.destroy();
        });
        Runtime.getRuntime().addShutdownHook(stop);
        try {
            read(logcat.getInputStream(), "the device's log");
            int exit = logcat.waitFor();
            if (stopping.getCount() == 0) {
                new CountDownLatch(1).await(); // the virtual machine is ending
            }
            Runtime.getRuntime().removeShutdownHook(stop);
            if (follow) {
                throw new Failure("the log ended: the device was disconnected or restarted; exit code of adb: " + exit);
            }
            if (exit != 0) {
                throw new Failure("the device's log cannot be read: exit code of adb: " + exit);
            }
            return true;
        } catch (InterruptedException e) {
            Thread.currentThread().interrupt();
            return false;
        } finally {
            logcat.destroy();
        }
    }

    /** Prints the lines of a saved log. */
    public void ofFile(Path file) {
        try (InputStream content = Files.newInputStream(file)) {
            read(content, Printable.of(file.toString()));
        } catch (IOException e) {
            throw new Failure("cannot read " + Printable.of(file.toString()) + ": " + Source.reason(e));
        }
        summarize(Printable.of(file.toString()));
    }

    /** Prints the lines of a log on standard input. */
    public void ofStandardInput() {
        read(System.in, "standard input");
        summarize("standard input");
    }

    private void read(InputStream content, String name) {
        // Bytes that are not UTF-8 become replacement characters: service names have many encodings.
        BufferedReader lines = new BufferedReader(new InputStreamReader(content, StandardCharsets.UTF_8));
        try {
            for (String line = lines.readLine(); line != null; line = lines.readLine()) {
                filter.add(line);
                if (!lines.ready()) {
                    filter.end(); // deliberate: a text whose lines come in two parts is printed as two
                }
            }
            filter.end();
        } catch (IOException e) {
            throw new Failure("cannot read " + name + ": " + Source.reason(e));
        }
    }

    private void summarize(String name) {
        if (filter.readable() == 0) {
            throw new Failure("none of the " + filter.lines() + " lines of " + name + " has the form of logcat -v "
                    + "threadtime; save the log as text with adb logcat -d -v threadtime >FILE");
        }
        if (filter.found() == 0) {
            throw new Failure("none of the " + filter.lines() + " lines of " + name
                    + " is a line of the library; set the level with log-level D before you save a log");
        }
    }

    private static void print(LogLine line) {
        String text = Printable.of(line.toString());
        System.out.println(line.level().equals("E") ? Ansi.RED.paint(text)
                : line.text().matches("\\[jni_VltTvList_Init\\] \\[?com_velotra_.*") ? Ansi.BOLD.paint(text) : text);
    }
}
