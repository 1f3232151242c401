package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.changes.CalledCommand;
import com.velotra.tv.tavro.tool.editing.WholeLists;
import java.nio.file.Path;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Parameters;
import picocli.CommandLine.Spec;

/** ./tavro load. */
@Command(
        name = "load",
        description = {
            "Replaces the records of a list with the records of a list file. The list is created if it does "
                + "not exist. If the file is damaged or of another kind, nothing is changed."},
        footer = {"", "Examples: ./tavro load 5 services.list", "          ./tavro load 5 --kind streams streams.list"})
final class LoadCommand implements Callable<Integer> {
    @Spec
    private CommandSpec spec;

    @Mixin
    private HelpOption help;

    @Parameters(index = "0", paramLabel = "LIST", converter = Converters.ListId.class,
            description = "List id, 1 to 65535.")
    private int listId;

    @Parameters(index = "1", paramLabel = "FILE", description = "List file, written by ./tavro store.")
    private Path file;

    @Mixin
    private KindOption of;

    @Mixin
    private DryRunOption dryRun;

    @Override
    public Integer call() {
        boolean changeNothing = dryRun.on();
        dryRun.done(Preconditions.withLibrary(
                () -> WholeLists.load(of.kind(), listId, file, CalledCommand.of(spec), changeNothing)));
        return ExitCode.DONE;
    }
}
