package com.velotra.tv.tavro.tool;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.velotra.tv.tavro.tool.help.HelpTexts;
import java.util.List;
import java.util.Map;
import java.util.TreeSet;
import java.util.stream.Collectors;
import java.util.stream.Stream;
import org.junit.jupiter.api.DynamicTest;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.TestFactory;
import picocli.CommandLine;
import picocli.CommandLine.Help.Ansi;

/** The texts in the folder help: ./tavro prints them, and reads from them which options a command accepts. */
class HelpTest {
    private final Map<String, CommandLine> commands = HelpTexts.addScriptCommands(Main.tool()).getSubcommands();

    @TestFactory
    Stream<DynamicTest> aHelpTextIsWhatPicocliPrints() {
        return HelpTexts.commands().stream().map(name -> DynamicTest.dynamicTest(name, () -> assertEquals(
                commands.get(name).getUsageMessage(Ansi.OFF), HelpTexts.of(name),
                "make it anew: java -cp build/host/lib/tavro.jar " + Main.class.getName() + " " + name + " --help")));
    }

    @TestFactory
    Stream<DynamicTest> aHelpTextEndsWithAnExample() {
        return HelpTexts.commands().stream().map(name -> DynamicTest.dynamicTest(name, () -> {
            List<String> end = HelpTexts.of(name).lines().dropWhile(line -> !line.startsWith("Example")).toList();
            assertTrue(!end.isEmpty(), "no line Example: or Examples:");
            assertTrue(end.stream().anyMatch(line -> line.matches(" *(Examples?:)? *\\./tavro " + name + "( .*)?")));
        }));
    }

    /** A man page has all of it under EXAMPLES. */
    @Test
    void afterTheOptionsAreOnlyExamples() {
        assertEquals(List.of(), Main.tool().getSubcommands().values().stream()
                .map(command -> String.join("\n", command.getCommandSpec().usageMessage().footer()))
                .filter(footer -> !footer.isEmpty() && !footer.matches("\nExamples?: [^\n]+(\n          [^\n]+)*"))
                .toList());
    }

    @Test
    void everyHelpTextDescribesTheHelpOption() {
        assertEquals(List.of(), HelpTexts.commands().stream()
                .filter(name -> !HelpTexts.of(name).matches("(?s).*\n  -h, --help +Print this text and exit\\.\n.*"))
                .toList());
    }

    @Test
    void theOverviewNamesTheCommandsOfTheTool() {
        assertEquals(
                Main.tool().getSubcommands().values().stream()
                        .filter(command -> !command.getCommandSpec().usageMessage().hidden())
                        .map(CommandLine::getCommandName)
                        .filter(name -> !HelpTexts.commands().contains(name))
                        .collect(Collectors.toCollection(TreeSet::new)),
                new TreeSet<String>());
    }
}
