package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.tool.changes.CalledCommand;
import com.velotra.tv.tavro.tool.editing.Assignment;
import com.velotra.tv.tavro.tool.editing.RecordEdits;
import java.util.List;
import java.util.Optional;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;
import picocli.CommandLine.Spec;

/** ./tavro add. */
@Command(
        name = "add",
        description = {
            "Adds a record to the end of a list, and prints its identifier. KEY and VALUE are as for ./tavro "
                + "set. A service without broadcast_type, or a transport stream without medium, has only the "
                + "fields that all broadcast types or media share."},
        footer = {"", "Examples: ./tavro add 1 broadcast_type=DVB name=Test service_id=101 lcn=900",
            "          ./tavro add 1 --copy 1,17 'name=RTL again'",
            "          ./tavro add 8 --create --kind networks NwlNetworkId=1 NetworkName=Test"})
final class AddCommand implements Callable<Integer> {
    @Spec
    private CommandSpec spec;

    @Mixin
    private HelpOption help;

    @Parameters(index = "0", paramLabel = "LIST", converter = Converters.ListId.class,
            description = "List id, 1 to 65535.")
    private int listId;

    @Parameters(index = "1..*", arity = "0..*", paramLabel = "KEY=VALUE", converter = Converters.KeyAndValue.class,
            description = "A value to set.")
    private List<Assignment> values = List.of();

    @Mixin
    private KindOption of;

    @Option(names = "--copy", paramLabel = "LIST,RECORD", converter = Converters.Record.class,
            description = "Start with a copy of this record: every byte but the record id.")
    private RecordId copyOf;

    @Option(names = "--create", description = "Create the list if it does not exist.")
    private boolean create;

    @Override
    public Integer call() {
        if (copyOf != null) {
            Preconditions.needList(of.kind(), copyOf.listId());
        }
        if (!create) {
            Preconditions.needList(of.kind(), listId);
        }
        System.out.println(Preconditions.withLibrary(() -> RecordEdits.add(
                of.kind(), listId, Optional.ofNullable(copyOf), values, create, CalledCommand.of(spec))));
        return ExitCode.DONE;
    }
}
