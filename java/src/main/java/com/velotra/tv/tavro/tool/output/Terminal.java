package com.velotra.tv.tavro.tool.output;

import java.io.File;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;

/** The terminal that standard output goes to, if it is one. */
public final class Terminal {
    private static final Path STANDARD_OUTPUT = Path.of("/proc/self/fd/1");

    private static Terminal current;

    private final boolean terminal;
    private final boolean colors;
    private final int columns;

    private Terminal(boolean terminal, boolean colors, int columns) {
        this.terminal = terminal;
        this.colors = colors;
        this.columns = columns;
    }

    /** Returns whether standard output is a terminal. */
    public static boolean isOutput() {
        return current().terminal;
    }

    /** Returns whether to print colors: on a terminal, unless NO_COLOR is set or TERM is "dumb". */
    public static boolean hasColors() {
        return current().colors;
    }

    /** Returns the width of a line. Files and pipes get whole lines, and so does a terminal of unknown width. */
    public static int columns() {
        return current().columns;
    }

    /** Stands in for the real terminal, for tests and for a shell that prints through a terminal of its own. */
    public static void force(boolean terminal, boolean colors, int columns) {
        current = new Terminal(terminal, colors, columns);
    }

    /** Returns to the real terminal. */
    public static void unforce() {
        current = null;
    }

    private static synchronized Terminal current() {
        if (current == null) {
            current = find();
        }
        return current;
    }

    // deliberate: not System.console(), which is null if only the output is a terminal
    private static Terminal find() {
        String device = "";
        try {
            device = Files.readSymbolicLink(STANDARD_OUTPUT).toString();
        } catch (IOException e) {
            // Without /proc, there is no terminal.
        }
        boolean terminal = device.matches("/dev/(pts/\\d+|tty.*|console)");
        return new Terminal(terminal, terminal && wantsColors(), terminal ? columns(device) : Integer.MAX_VALUE);
    }

    private static boolean wantsColors() {
        String noColor = System.getenv("NO_COLOR");
        return (noColor == null || noColor.isEmpty()) && !"dumb".equals(System.getenv("TERM"));
    }

    private static int columns(String device) {
        int columns = number(System.getenv("COLUMNS"));
        return columns > 0 ? columns : askDevice(device);
    }

    private static int askDevice(String device) {
        try {
            Process stty = new ProcessBuilder("stty", "size").redirectInput(new File(device)).start();
            String[] size = new String(stty.getInputStream().readAllBytes(), StandardCharsets.US_ASCII)
                    .strip().split(" ");
            int columns = size.length == 2 ? number(size[1]) : 0;
            return columns > 0 ? columns : Integer.MAX_VALUE;
        } catch (IOException e) {
            return Integer.MAX_VALUE;
        }
    }

    private static int number(String text) {
        boolean known = text != null && text.matches("[1-9]\\d{0,3}");
        return known ? Integer.parseInt(text) : 0;
    }
}
