package com.velotra.tv.tavro.tool.shell;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.help.HelpTexts;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Similar;
import java.io.BufferedReader;
import java.io.IOException;
import java.util.List;
import java.util.Map;
import java.util.TreeMap;
import java.util.stream.Collectors;
import picocli.CommandLine;

/** Runs lines as commands. */
public final class Interpreter {
    static final String PROMPT = "tavro> ";
    private static final int WRONG_USAGE = 2;
    private static final List<String> END = List.of("exit", "quit");
    private static final String HELP = "help";

    private final ToolCommands tool;
    private final Map<String, CommandLine> commands;
    private int exit;
    private boolean ended;

    public Interpreter(ToolCommands tool) {
        this.tool = tool;
        commands = new TreeMap<>(tool.describe().getSubcommands());
        commands.values().removeIf(command -> command.getCommandSpec().usageMessage().hidden());
    }

    /** Returns the exit code of the last command. */
    int exit() {
        return exit;
    }

    /** Returns whether the user has ended the shell. */
    boolean ended() {
        return ended;
    }

    /** Runs all lines, up to the first command that does not exit with 0. Returns the exit code of the last command. */
    public int runAll(BufferedReader lines) throws IOException {
        int number = 0;
        for (String line = lines.readLine(); line != null && !ended; line = lines.readLine()) {
            number++;
            run(line);
            if (exit != 0) {
                System.err.println("tavro: shell: stopped at line " + number + ", exit code " + exit);
                break;
            }
        }
        return exit;
    }

    /**
     * Prompts for lines on a terminal that cannot move its cursor, and runs them until they end. Returns the exit code
     * of the last command.
     */
    public int prompt(BufferedReader lines) throws IOException {
        while (!ended) {
            System.out.print(PROMPT);
            System.out.flush();
            String line = lines.readLine();
            if (line == null) {
                System.out.println();
                break;
            }
            run(line);
        }
        return exit;
    }

    /** Runs a line. An empty one changes nothing. */
    void run(String line) {
        try {
            List<String> words = Words.split(line);
            // A command pasted from a document begins with the tool's own name.
            if (!words.isEmpty() && words.get(0).matches("(.*/)?tavro")) {
                words = words.subList(1, words.size());
            }
            if (!words.isEmpty()) {
                run(words);
            }
        } catch (Failure wrong) {
            System.err.println("tavro: shell: " + Printable.of(wrong.getMessage()));
            exit = WRONG_USAGE;
        }
        System.out.flush();
        System.err.flush();
    }

    private void run(List<String> words) {
        String first = words.get(0);
        boolean ofScript = !commands.containsKey(first) && HelpTexts.commands().contains(first);
        if (END.contains(first)) {
            needNothing(words);
            ended = true;
        } else if (first.equals(HELP) && words.size() == 1) {
            System.out.print(overview());
            exit = 0;
        } else if (first.equals(HELP)) {
            needNothing(words.subList(1, words.size()));
            help(words.get(1));
        } else if (first.equals("shell")) {
            throw new Failure("the shell is already running");
        } else if (ofScript) {
            throw new Failure(first + " does not run in the shell; use " + tool.self() + " " + first);
        } else if (!commands.containsKey(first) && !first.startsWith("-")) {
            throw new Failure("unknown command '" + first + "'" + Similar.suggestion(first, commands.keySet()));
        } else {
            exit = tool.run(words.toArray(String[]::new));
        }
    }

    private static void needNothing(List<String> words) {
        if (words.size() > 1) {
            throw new Failure(words.get(0) + ": unexpected argument '" + words.get(1) + "'");
        }
    }

    private void help(String command) {
        if (!HelpTexts.commands().contains(command)) {
            throw new Failure("unknown command '" + command + "'" + Similar.suggestion(command, HelpTexts.commands()));
        }
        System.out.print(HelpTexts.of(command));
        exit = 0;
    }

    /** The commands of the tool, in the groups of the overview. */
    private String overview() {
        String groups = HelpTexts.of(HelpTexts.OVERVIEW).lines()
                .dropWhile(line -> !line.isEmpty()).skip(1)
                .dropWhile(line -> !line.isEmpty()).skip(1)
                .takeWhile(line -> !line.startsWith("In the terminal"))
                .collect(Collectors.joining("\n"));
        return groups + "\n  help [COMMAND]        print this text, or the help of a command\n"
                + "  exit                  end the shell, as Ctrl-D does\n";
    }

    /** Returns the commands of the tool that a line can begin with. */
    Map<String, CommandLine> commands() {
        return commands;
    }
}
