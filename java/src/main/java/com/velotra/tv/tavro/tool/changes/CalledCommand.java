package com.velotra.tv.tavro.tool.changes;

import java.util.List;
import java.util.stream.Collectors;
import picocli.CommandLine.Model.CommandSpec;

/** What the user called, for the list of changes. */
public final class CalledCommand {
    private CalledCommand() {}

    /** Returns the words that the user called a command with, quoted for a shell where needed. */
    public static String of(CommandSpec command) {
        List<String> words = command.root().commandLine().getParseResult().originalArgs();
        return words.stream().filter(word -> !word.equals("--")).map(CalledCommand::quoted)
                .collect(Collectors.joining(" "));
    }

    /** Returns the word for a POSIX shell, in single quotes if it needs them. */
    public static String quoted(String word) {
        return word.matches("[A-Za-z0-9_./:=@%+,-]+") ? word : "'" + word.replace("'", "'\\''") + "'";
    }
}
