package com.velotra.tv.tavro.tool.help;

import java.util.ArrayList;
import java.util.List;
import java.util.Locale;
import picocli.CommandLine;
import picocli.CommandLine.Help.Ansi;
import picocli.CommandLine.Model.ArgSpec;
import picocli.CommandLine.Model.CommandSpec;

/** A manual page in roff, from the same model as the help. */
final class ManPage {
    private final StringBuilder page = new StringBuilder();
    private final String version;

    private ManPage(String version) {
        this.version = version;
    }

    /** Returns the page of a command. */
    static String of(CommandSpec command, String version) {
        return new ManPage(version).write(new CommandLine(command).getHelp());
    }

    /** Returns the page of the tool, with the overview of the commands. */
    static String ofTool(String overview, String version) {
        ManPage page = new ManPage(version);
        page.heading("tavro", "channel lists on a workstation");
        page.section("OVERVIEW");
        page.literal(overview.lines().toList());
        page.section("SEE ALSO");
        page.text("\\fBtavro-\\fICOMMAND\\fR(1) for each command");
        return page.page.toString();
    }

    private String write(CommandLine.Help help) {
        CommandSpec command = help.commandSpec();
        List<String> description = lines(command.usageMessage().description());
        heading("tavro-" + command.name(), String.join(" ", description).replaceFirst("[.:](\\s.*|$)", ""));
        section("SYNOPSIS");
        text("\\fBtavro " + escaped(help.synopsis(0).strip().replaceAll("\\s+", " ")) + "\\fR");
        section("DESCRIPTION");
        paragraphs(description);
        section("OPTIONS");
        command.positionalParameters().forEach(parameter -> entry("", parameter, help));
        command.options().forEach(option -> entry(String.join(", ", option.names()), option, help));
        section("EXAMPLES");
        literal(lines(command.usageMessage().footer()).stream()
                .filter(line -> !line.isBlank())
                .map(line -> line.replaceFirst("^Examples?: ", "").strip())
                .toList());
        section("EXIT STATUS");
        text("0 done, 1 failed (wholly or partly) or different, 2 wrong usage.");
        section("SEE ALSO");
        text("\\fBtavro\\fR(1)");
        return page.toString();
    }

    private static List<String> lines(String... texts) {
        List<String> lines = new ArrayList<>();
        for (String text : texts) {
            String.format(text).lines().forEach(lines::add);
            if (text.isEmpty()) {
                lines.add("");
            }
        }
        return lines;
    }

    private void heading(String name, String purpose) {
        page.append(".TH ").append(name.toUpperCase(Locale.ROOT)).append(" 1 \"\" \"tavro ").append(version)
                .append("\" \"Tavro channel list\"\n");
        section("NAME");
        text(escaped(name) + " \\- " + escaped(purpose));
    }

    private void section(String name) {
        page.append(".SH ").append(name).append('\n');
    }

    private void text(String roff) {
        page.append(roff).append('\n');
    }

    /** Paragraphs are filled, but lines that begin with blanks stay as they are. */
    private void paragraphs(List<String> lines) {
        boolean literal = false;
        for (String line : lines) {
            boolean indented = line.startsWith(" ");
            if (indented != literal) {
                text(indented ? ".nf" : ".fi");
                literal = indented;
            }
            text(line.isEmpty() ? ".PP" : escaped(line));
        }
        if (literal) {
            text(".fi");
        }
    }

    private void literal(List<String> lines) {
        text(".nf");
        lines.forEach(line -> text(escaped(line)));
        text(".fi");
    }

    private void entry(String names, ArgSpec argument, CommandLine.Help help) {
        text(".TP");
        text("\\fB" + escaped(names + help.parameterLabelRenderer().renderParameterLabel(argument, Ansi.OFF, List.of()))
                + "\\fR");
        text(escaped(String.join(" ", lines(argument.description())).strip()));
    }

    /** Escapes what roff would interpret, also at the start of a line. */
    private static String escaped(String text) {
        String safe = text.replace("\\", "\\e").replace("-", "\\-");
        return safe.startsWith(".") || safe.startsWith("'") ? "\\&" + safe : safe;
    }
}
