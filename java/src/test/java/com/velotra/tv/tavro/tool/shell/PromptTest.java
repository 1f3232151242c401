package com.velotra.tv.tavro.tool.shell;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.io.BufferedReader;
import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.io.PipedInputStream;
import java.io.PipedOutputStream;
import java.io.PrintStream;
import java.io.StringReader;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Optional;
import org.jline.terminal.Terminal;
import org.jline.terminal.impl.ExternalTerminal;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;
import picocli.CommandLine;
import picocli.CommandLine.Command;

class PromptTest {
    private static final String CTRL_D = "\u0004";
    private static final String ENCODING = StandardCharsets.UTF_8.name();

    @TempDir
    Path folder;

    private final List<List<String>> called = new ArrayList<>();
    private final ByteArrayOutputStream screen = new ByteArrayOutputStream();

    @Command(name = "tool")
    static final class Tool {
        @Command(name = "get")
        void get() {}
    }

    private final ToolCommands tool = new ToolCommands() {
        @Override
        public int run(String... words) {
            called.add(List.of(words));
            return words.length;
        }

        @Override
        public CommandLine describe() {
            return new CommandLine(new Tool());
        }

        @Override
        public String self() {
            return "./tavro";
        }
    };

    private int type(String keys) throws IOException { // deliberate: the terminal has no size
        PipedOutputStream keyboard = new PipedOutputStream();
        PipedInputStream in = new PipedInputStream(keyboard);
        keyboard.write((keys + CTRL_D).getBytes(StandardCharsets.UTF_8));
        try (Terminal terminal = new ExternalTerminal("test", "ansi", in, screen, ENCODING)) {
            return run(terminal);
        }
    }

    private int run(Terminal terminal) {
        return new Prompt(terminal, new Interpreter(tool), Optional.of(folder.resolve("history"))).run();
    }

    @Test
    void linesAreRunAsCommandsUntilTheEnd() throws IOException {
        assertEquals(3, type("get\rget 1 'a b'\r"));
        assertEquals(List.of(List.of("get"), List.of("get", "1", "a b")), called);
        assertTrue(screen.toString(StandardCharsets.UTF_8).contains("tavro> "));
    }

    @Test
    void tabCompletesTheWordAtTheCursor() throws IOException {
        Files.createFile(folder.resolve("a b"));
        assertEquals(2, type("ge\t1\rex\t\rget\r"));
        assertEquals(List.of(List.of("get", "1")), called);
    }

    @Test
    void linesAreRememberedForTheNextTime() throws IOException {
        type("get 1\rget !2\r");
        called.clear();
        type("\u001b[A\u001b[A\r");
        assertEquals(List.of(List.of("get", "1")), called);
    }

    @Test
    void aTerminalOfUnknownSizeIsEnough() throws IOException {
        assertEquals(2, type("g\t1\r"));
    }

    @Test
    void aDumbTerminalIsPromptedLineByLine() throws IOException {
        PrintStream out = System.out;
        System.setOut(new PrintStream(screen, true, StandardCharsets.UTF_8));
        try {
            assertEquals(2, new Interpreter(tool).prompt(new BufferedReader(new StringReader("get\nget 1\n"))));
        } finally {
            System.setOut(out);
        }
        assertEquals("tavro> tavro> tavro> \n", screen.toString(StandardCharsets.UTF_8));
        assertEquals(List.of(List.of("get"), List.of("get", "1")), called);
    }
}
