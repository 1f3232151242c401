package com.velotra.tv.tavro.tool.help;

import java.io.IOException;
import java.io.InputStream;
import java.io.UncheckedIOException;
import java.nio.charset.StandardCharsets;
import java.util.List;
import java.util.Map;
import java.util.TreeMap;
import java.util.regex.Pattern;
import picocli.CommandLine;
import picocli.CommandLine.Model.CommandSpec;

/** The texts in the folder help, which the build puts into tavro.jar. */
public final class HelpTexts {
    /** Name of the overview of all commands. */
    public static final String OVERVIEW = "tavro";
    private static final Pattern COMMAND = Pattern.compile("(?m)^  ([a-z][a-z-]*) .*");

    private HelpTexts() {}

    /** Returns the text of help/NAME.txt. */
    public static String of(String name) {
        try (InputStream text = HelpTexts.class.getResourceAsStream("/help/" + name + ".txt")) {
            if (text == null) {
                throw new IllegalArgumentException("no help/" + name + ".txt");
            }
            return new String(text.readAllBytes(), StandardCharsets.UTF_8);
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        }
    }

    /** Returns the commands in the order of the overview, without help. */
    public static List<String> commands() {
        return COMMAND.matcher(of(OVERVIEW)).results()
                .map(found -> found.group(1))
                .filter(name -> !name.equals("help"))
                .toList();
    }

    /**
     * Adds the commands that the script {@code tavro} runs itself to the commands of the tool. They can be described
     * and completed, but not executed.
     */
    public static CommandLine addScriptCommands(CommandLine tool) {
        for (String name : commands()) {
            CommandLine command = tool.getSubcommands().get(name);
            if (command != null && command.getCommandSpec().usageMessage().hidden()) {
                tool.getCommandSpec().removeSubcommand(name);
                command = null;
            }
            if (command == null) {
                tool.addSubcommand(name, HelpText.parse(name, of(name)));
            }
        }
        return uniform(tool);
    }

    /** Returns the man pages of the tool and of its commands, by file name. */
    public static Map<String, String> manPages(String version) {
        Map<String, String> pages = new TreeMap<>(Map.of("tavro.1", ManPage.ofTool(of(OVERVIEW), version)));
        for (String name : commands()) {
            pages.put("tavro-" + name + ".1", ManPage.of(HelpText.parse(name, of(name)), version));
        }
        return pages;
    }

    /** Puts an empty line before the parameters and options of all commands. */
    public static CommandLine uniform(CommandLine tool) {
        for (CommandLine command : tool.getSubcommands().values()) {
            CommandSpec spec = command.getCommandSpec();
            if (spec.positionalParameters().isEmpty()) {
                spec.usageMessage().optionListHeading("%n");
            } else {
                spec.usageMessage().parameterListHeading("%n");
            }
        }
        return tool;
    }
}
