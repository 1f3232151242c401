package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.editing.WholeLists;
import com.velotra.tv.tavro.tool.input.Text;
import java.nio.file.Path;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Parameters;

/** ./tavro store. */
@Command(
        name = "store",
        description = {
            "Stores a list in a list file. An existing list file is replaced completely or not at all. A "
                + "file that is not a list file is never replaced."},
        footer = {"", "Examples: ./tavro store 1 services.list",
            "          ./tavro store 1 --kind streams streams.list"})
final class StoreCommand implements Callable<Integer> {
    @Mixin
    private HelpOption help;

    @Parameters(index = "0", paramLabel = "LIST", converter = Converters.ListId.class,
            description = "List id, 1 to 65535.")
    private int listId;

    @Parameters(index = "1", paramLabel = "FILE", description = "File to write.")
    private Path file;

    @Mixin
    private KindOption of;

    @Mixin
    private DryRunOption dryRun;

    @Override
    public Integer call() {
        boolean changeNothing = dryRun.on();
        Preconditions.needList(of.kind(), listId);
        int records = WholeLists.store(of.kind(), listId, file, changeNothing);
        dryRun.done(Text.count(records, of.kind().noun()) + " of list " + listId + " stored in "
                + Printable.of(file.toString()));
        return ExitCode.DONE;
    }
}
