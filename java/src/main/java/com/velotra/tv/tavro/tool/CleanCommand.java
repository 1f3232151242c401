package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.changes.CalledCommand;
import com.velotra.tv.tavro.tool.editing.WholeLists;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Parameters;
import picocli.CommandLine.Spec;

/** ./tavro clean. */
@Command(
        name = "clean",
        description = "Removes all records of a list. The list stays.",
        footer = {"", "Example: ./tavro clean 5"})
final class CleanCommand implements Callable<Integer> {
    @Spec
    private CommandSpec spec;

    @Mixin
    private HelpOption help;

    @Parameters(paramLabel = "LIST", converter = Converters.ListId.class, description = "List id, 1 to 65535.")
    private int listId;

    @Mixin
    private KindOption of;

    @Mixin
    private DryRunOption dryRun;

    @Override
    public Integer call() {
        boolean changeNothing = dryRun.on();
        Preconditions.needList(of.kind(), listId);
        dryRun.done(WholeLists.clean(of.kind(), listId, CalledCommand.of(spec), changeNothing));
        return ExitCode.DONE;
    }
}
