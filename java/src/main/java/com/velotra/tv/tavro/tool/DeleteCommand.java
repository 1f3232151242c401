package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.changes.CalledCommand;
import com.velotra.tv.tavro.tool.editing.WholeLists;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Text;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.io.Console;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;
import picocli.CommandLine.Spec;

/** ./tavro delete. */
@Command(
        name = "delete",
        description = {
            "Deletes a list and its records. On a terminal, asks for confirmation; elsewhere, requires --yes."},
        footer = {"", "Examples: ./tavro delete 5", "          ./tavro delete 5 --kind streams --yes"})
final class DeleteCommand implements Callable<Integer> {
    @Spec
    private CommandSpec spec;

    @Mixin
    private HelpOption help;

    @Parameters(paramLabel = "LIST", converter = Converters.ListId.class, description = "List id, 1 to 65535.")
    private int listId;

    @Mixin
    private KindOption of;

    @Option(names = {"-y", "--yes"}, description = "Do not ask for confirmation.")
    private boolean yes;

    @Mixin
    private DryRunOption dryRun;

    @Override
    public Integer call() {
        boolean changeNothing = dryRun.on();
        Preconditions.needList(of.kind(), listId);
        if (!yes && !changeNothing) {
            confirm();
        }
        dryRun.done(WholeLists.delete(of.kind(), listId, CalledCommand.of(spec), changeNothing));
        return ExitCode.DONE;
    }

    private void confirm() {
        String list = of.kind().noun() + " list " + listId;
        Console console = System.console();
        if (console == null) {
            throw new Failure("not deleted: " + list + "; there is no terminal to ask on: use --yes");
        }
        int records = StoredLists.read(of.kind(), listId).size();
        String reply = console.readLine("Delete %s with %s? [y/N] ", list, Text.count(records, of.kind().noun()));
        if (reply == null || !reply.strip().matches("(?i)y(es)?")) {
            throw new Failure("not deleted: " + list);
        }
    }
}
