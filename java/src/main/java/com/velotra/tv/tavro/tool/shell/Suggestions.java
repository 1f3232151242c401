package com.velotra.tv.tavro.tool.shell;

import com.velotra.tv.tavro.tool.records.Kind;
import java.util.ArrayList;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.stream.Stream;
import picocli.CommandLine;
import picocli.CommandLine.Model.ArgSpec;
import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Model.OptionSpec;

/** Finds how the last word of a line can be completed. What a word means follows from its label in the help text. */
final class Suggestions {
    private static final String KIND = "--kind";

    private final Map<String, CommandLine> commands;

    Suggestions(Map<String, CommandLine> commands) {
        this.commands = commands;
    }

    /** Returns the words that begin with the last of {@code words}. */
    List<Suggestion> complete(List<String> words) {
        String current = words.get(words.size() - 1);
        return candidates(words, current)
                .filter(suggestion -> suggestion.word().startsWith(current))
                .toList();
    }

    private Stream<Suggestion> candidates(List<String> words, String current) {
        if (words.size() == 1) {
            return Stream.concat(commands.values().stream().map(command -> Suggestion.word(
                            command.getCommandName(), firstSentence(command.getCommandSpec()))),
                    Stream.of(Suggestion.word("help", "Prints the commands, or the help of one."),
                            Suggestion.word("exit", "Ends the shell.")));
        }
        if (words.get(0).equals("help")) {
            return words.size() == 2 ? commands.keySet().stream().map(name -> Suggestion.word(name, "")) : Stream.of();
        }
        CommandLine command = commands.get(words.get(0));
        return command == null ? Stream.of() : ofCommand(command.getCommandSpec(), words, current);
    }

    private static String firstSentence(CommandSpec command) {
        String text = String.join(" ", command.usageMessage().description());
        return text.replaceFirst("(?s)(\\.|:)(\\s.*|$)", "$1");
    }

    private static Stream<Suggestion> ofCommand(CommandSpec command, List<String> words, String current) {
        int arguments = 0;
        Kind kind = Kind.SERVICES;
        OptionSpec waiting = null; // its value is the next word
        boolean options = true;
        for (String word : words.subList(1, words.size() - 1)) {
            OptionSpec option = options && waiting == null && isOption(word) ? option(command, word) : null;
            if (waiting != null) {
                kind = isKind(waiting) ? kind(word, kind) : kind;
                waiting = null;
            } else if (options && word.equals("--")) {
                options = false;
            } else if (option != null) {
                String value = valueIn(word);
                kind = isKind(option) ? kind(value, kind) : kind;
                waiting = option.arity().min() > 0 && value.isEmpty() ? option : null;
            } else if (!options || !isOption(word)) {
                arguments++;
            }
        }
        if (waiting != null) {
            return values(waiting, kind, current);
        }
        return options && isOption(current) ? ofOption(command, kind, current)
                : ofArgument(command, arguments, kind, current);
    }

    private static Stream<Suggestion> ofOption(CommandSpec command, Kind kind, String current) {
        if (!current.contains("=")) {
            return options(command);
        }
        String start = current.substring(0, current.indexOf('=') + 1);
        OptionSpec option = option(command, current);
        return option == null ? Stream.of() : values(option, kind, current.substring(start.length()))
                .map(value -> new Suggestion(start + value.word(), value.description(), value.whole()));
    }

    private static Stream<Suggestion> ofArgument(CommandSpec command, int index, Kind kind, String current) {
        return command.positionalParameters().stream()
                .filter(parameter -> parameter.index().contains(index))
                .limit(1)
                .flatMap(parameter -> values(parameter, kind, current));
    }

    private static boolean isOption(String word) {
        return word.startsWith("-") && word.length() > 1;
    }

    /** The value in "--kind=streams" or "-kstreams"; empty if there is none. */
    private static String valueIn(String word) {
        if (word.startsWith("--")) {
            return word.contains("=") ? word.substring(word.indexOf('=') + 1) : "";
        }
        return word.substring(2).replaceFirst("^=", "");
    }

    private static boolean isKind(OptionSpec option) {
        return option.longestName().equals(KIND);
    }

    private static Kind kind(String name, Kind otherwise) {
        return Stream.of(Kind.values()).filter(kind -> kind.toString().equals(name)).findFirst().orElse(otherwise);
    }

    private static OptionSpec option(CommandSpec command, String word) {
        String name = word.startsWith("--") ? word.replaceFirst("=.*", "") : word.substring(0, 2);
        return command.findOption(name);
    }

    private static Stream<Suggestion> options(CommandSpec command) {
        return command.options().stream().filter(option -> !option.hidden()).map(option -> option.arity().min() > 0
                ? Suggestion.start(option.longestName() + "=", description(option))
                : Suggestion.word(option.longestName(), description(option)));
    }

    private static String description(ArgSpec argument) {
        return String.join(" ", argument.description()).replace("%%", "%").replace("%n", " ");
    }

    /** What the label of an argument stands for. */
    private static Stream<Suggestion> values(ArgSpec argument, Kind kind, String current) {
        if (argument.completionCandidates() != null) {
            List<Suggestion> all = new ArrayList<>();
            argument.completionCandidates().forEach(value -> all.add(Suggestion.word(value, "")));
            return all.stream();
        }
        StoredWords stored = new StoredWords(kind);
        String label = argument.paramLabel();
        return switch (label.replaceFirst("(?i)[^a-z].*", "").toUpperCase(Locale.ROOT)) {
            case "KIND" -> Stream.of(Kind.values()).map(value -> Suggestion.word(value.toString(), ""));
            case "FILE", "PATH", "DIR" -> FileNames.complete(current);
            case "OTHER" -> label.contains("DIR") ? FileNames.complete(current)
                    : Stream.concat(stored.lists(), FileNames.complete(current));
            case "A", "B", "SOURCE" -> Stream.concat(current.contains(",") ? stored.records(current) : stored.lists(),
                    FileNames.complete(current));
            case "ID", "FROM", "TO" -> stored.lists();
            case "LIST" -> label.contains("RECORD") ? stored.records(current) : stored.lists();
            case "KEY" -> stored.keys(current);
            case "FIELD", "FIELDS", "COLUMN", "COLUMNS", "NAMES" -> stored.fields(current);
            default -> Stream.of();
        };
    }
}
