package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.storage.Access;
import com.velotra.tv.tavro.tool.tables.Listing;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;

/** ./tavro show. */
@Command(
        name = "show",
        description = "Prints one service, transport stream, network or satellite, decoded field by field.",
        footer = {"", "Examples: ./tavro show 1,17 --hex", "          ./tavro show 1,3 --kind streams"})
final class ShowCommand implements Callable<Integer> {
    @Mixin
    private HelpOption help;

    @Parameters(paramLabel = "LIST,RECORD", converter = Converters.Record.class,
            description = "Record to show, as LIST,RECORD (for example 3,17).")
    private RecordId id;

    @Mixin
    private KindOption of;

    @Option(names = "--hex", description = "Also print the record's bytes (services and transport streams).")
    private boolean hex;

    @Override
    public Integer call() {
        Access.readOnly();
        Preconditions.needList(of.kind(), id.listId());
        String record = Listing.show(of.kind(), id, hex).orElseThrow(() -> {
            Preconditions.needReadable(of.kind(), id.listId());
            return new Failure(of.kind().noun() + " list " + id.listId() + " has no record " + id.recordId());
        });
        record.lines().map(Printable::of).forEach(System.out::println);
        return ExitCode.DONE;
    }
}
