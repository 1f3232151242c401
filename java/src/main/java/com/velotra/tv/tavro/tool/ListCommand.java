package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.input.Text;
import com.velotra.tv.tavro.tool.output.Terminal;
import com.velotra.tv.tavro.tool.tables.Listing;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;

/** ./tavro list. */
@Command(
        name = "list",
        description = "Prints the services, transport streams, networks or satellites of a list as a table.",
        footer = {"", "Examples: ./tavro list 1", "          ./tavro list 1 --kind streams"})
final class ListCommand implements Callable<Integer> {
    @Mixin
    private HelpOption help;

    @Parameters(paramLabel = "ID", converter = Converters.ListId.class, description = "List id, 1 to 65535.")
    private int listId;

    @Mixin
    private KindOption of;

    @Option(names = "--first", paramLabel = "N", converter = Converters.Count.class,
            description = "Show at most N records.")
    private int first = Integer.MAX_VALUE;

    @Override
    public Integer call() {
        Preconditions.needList(of.kind(), listId);
        Listing listing = Listing.of(of.kind(), listId);
        if (listing.size() == 0) {
            Preconditions.needEmpty(of.kind(), listId);
        }
        System.out.print(listing.printer().table(first, Terminal.columns()));
        System.out.println(Text.count(listing.size(), of.kind().noun()));
        return ExitCode.DONE;
    }
}
