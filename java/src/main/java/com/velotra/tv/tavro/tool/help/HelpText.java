package com.velotra.tv.tavro.tool.help;

import java.util.List;
import java.util.function.Predicate;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Model.OptionSpec;
import picocli.CommandLine.Model.PositionalParamSpec;

/**
 * The help text of a command that the script {@code tavro} runs itself, such as build. It has the form that picocli
 * prints: usage, description, parameters and options, footer. Read back into picocli's model, it takes part in shell
 * completion and man pages like the commands of the tool.
 */
final class HelpText {
    // "  -k, --kind=KIND   description", "      --first=N   description" or "      [PRESET]   description".
    private static final Pattern ENTRY = Pattern.compile("(?:  (-[A-Za-z]), |      )([^ ]+)(?: +(.*))?");

    private final List<String> lines;
    private int next;

    private HelpText(String text) {
        lines = text.lines().toList();
    }

    /** Reads the help text of a command. */
    static CommandSpec parse(String command, String text) {
        return new HelpText(text).read(command);
    }

    private CommandSpec read(String command) {
        CommandSpec spec = CommandSpec.create().name(command);
        take(line -> line.startsWith("Usage:") || line.startsWith(" ")); // picocli makes it from the entries
        List<String> description = take(line -> !ENTRY.matcher(line).matches());
        // The last line is the empty one before the entries.
        spec.usageMessage().description(literal(description.subList(0, Math.max(0, description.size() - 1))));
        int parameters = 0;
        while (next < lines.size() && !lines.get(next).isEmpty()) {
            Matcher entry = ENTRY.matcher(lines.get(next++));
            if (!entry.matches()) {
                throw new IllegalArgumentException("help/" + command + ".txt: not an option: " + lines.get(next - 1));
            }
            String text = entry.group(3) == null ? "" : entry.group(3);
            text = (text + " " + String.join(" ", take(line -> line.startsWith("       ")))).strip()
                    .replaceAll(" +", " ");
            if (entry.group(2).startsWith("-")) {
                spec.addOption(option(entry.group(1), entry.group(2), text));
            } else {
                spec.addPositional(parameter(parameters++, entry.group(2), text));
            }
        }
        spec.usageMessage().footer(literal(take(line -> true)));
        return spec;
    }

    private List<String> take(Predicate<String> belongs) {
        int from = next;
        while (next < lines.size() && belongs.test(lines.get(next))) {
            next++;
        }
        return lines.subList(from, next);
    }

    /** Escapes what picocli would format. */
    private static String[] literal(List<String> lines) {
        return lines.stream().map(line -> line.replace("%", "%%")).toArray(String[]::new);
    }

    private static OptionSpec option(String shortName, String words, String text) {
        String name = words.replaceFirst("=.*", "");
        OptionSpec.Builder option = shortName == null
                ? OptionSpec.builder(name)
                : OptionSpec.builder(shortName, name);
        option.description(literal(List.of(text))).usageHelp(name.equals("--help"));
        return name.equals(words)
                ? option.arity("0").type(boolean.class).build()
                : option.arity("1").type(String.class).paramLabel(words.substring(name.length() + 1)).build();
    }

    private static PositionalParamSpec parameter(int index, String words, String text) {
        boolean optional = words.startsWith("[");
        boolean several = words.contains("...");
        return PositionalParamSpec.builder()
                .index(several ? index + "..*" : String.valueOf(index))
                .arity(several ? (optional ? "0..*" : "1..*") : (optional ? "0..1" : "1"))
                .type(several ? List.class : String.class)
                .auxiliaryTypes(String.class)
                .paramLabel(words.replaceAll("[\\[\\].]", ""))
                .description(literal(List.of(text)))
                .build();
    }
}
