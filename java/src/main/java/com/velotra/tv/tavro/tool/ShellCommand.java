package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.shell.Interpreter;
import com.velotra.tv.tavro.tool.shell.Prompt;
import com.velotra.tv.tavro.tool.shell.ToolCommands;
import java.io.BufferedReader;
import java.io.IOException;
import java.io.InputStreamReader;
import java.nio.charset.StandardCharsets;
import java.util.concurrent.Callable;
import org.jline.terminal.Terminal;
import org.jline.terminal.TerminalBuilder;
import picocli.CommandLine;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;

/** ./tavro shell. */
@Command(
        name = "shell",
        description = {
            "Runs commands in one process, so that each takes a few milliseconds. A line is a command "
                + "without ./tavro, quoted as for a POSIX shell. The Tab key completes commands, options, list and "
                + "record ids, fields and file names. Ctrl-C drops the line, Ctrl-D ends the shell.",
            "",
            "If standard input is not a terminal, reads commands from it without a prompt, and stops at the "
                + "first one that does not exit with 0. Exits with the exit code of the last command."},
        footer = {"", "Examples: ./tavro shell", "          printf 'list 1\\nshow 1,17\\n' | ./tavro shell"})
final class ShellCommand implements Callable<Integer> {
    @Mixin
    private HelpOption help;

    @Override
    public Integer call() throws IOException {
        Interpreter interpreter = new Interpreter(new Commands());
        BufferedReader lines = new BufferedReader(new InputStreamReader(System.in, StandardCharsets.UTF_8));
        if (System.console() == null) {
            return interpreter.runAll(lines);
        }
        System.out.println("help prints the commands, Ctrl-D ends.");
        String type = System.getenv("TERM");
        if (type == null || type.isEmpty() || type.equals("dumb")) {
            return interpreter.prompt(lines);
        }
        try (Terminal terminal = TerminalBuilder.builder().name(Main.NAME).system(true).build()) {
            return new Prompt(terminal, interpreter, Prompt.historyFile()).run();
        }
    }

    private static final class Commands implements ToolCommands {
        @Override
        public int run(String... words) {
            return Main.run(words);
        }

        @Override
        public CommandLine describe() {
            return Main.tool();
        }

        @Override
        public String self() {
            return Shell.command();
        }
    }
}
