package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.help.HelpTexts;
import picocli.AutoComplete;
import picocli.CommandLine;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Model.PositionalParamSpec;

/** ./tavro completion. */
@Command(
        name = "completion",
        description = "Prints a script that lets bash complete the commands and options of ./tavro.",
        footer = {"", "Example: ./tavro completion >~/.tavro-completion && . ~/.tavro-completion"})
final class CompletionCommand implements Runnable {
    @Mixin
    private HelpOption help;

    @Override
    public void run() {
        System.out.print(script());
    }

    static String script() {
        CommandLine all = HelpTexts.addScriptCommands(Main.tool());
        all.addSubcommand("help", CommandSpec.create().addPositional(PositionalParamSpec.builder()
                .paramLabel("COMMAND").completionCandidates(HelpTexts.commands()).build()));
        return AutoComplete.bash("tavro", all);
    }
}
