package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.tool.changes.CalledCommand;
import com.velotra.tv.tavro.tool.editing.ListOrder;
import com.velotra.tv.tavro.tool.editing.Moves;
import com.velotra.tv.tavro.tool.editing.RecordRange;
import java.util.List;
import java.util.Optional;
import java.util.concurrent.Callable;
import picocli.CommandLine.ArgGroup;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Option;
import picocli.CommandLine.ParameterException;
import picocli.CommandLine.Parameters;
import picocli.CommandLine.Spec;

/** ./tavro move. */
@Command(
        name = "move",
        description = {
            "Moves records within a list, or changes channel numbers. The records are placed one after the "
                + "other, in the order given. The channel number of a service is its major channel number and, for "
                + "DVB, its logical channel number. Services whose number changes are marked as edited "
                + "(VoptChNumEdited)."},
        footer = {"", "Examples: ./tavro move 1,17 1,20-25 --to 5",
            "          ./tavro move 1,17 --before 1,3 --renumber 1",
            "          ./tavro move 1,17 --number 100"})
final class MoveCommand implements Callable<Integer> {
    @Spec
    private CommandSpec spec;

    @Mixin
    private HelpOption help;

    @Parameters(paramLabel = "LIST,RECORD", arity = "1..*", converter = Converters.Records.class,
            description = "Records of one list, such as 1,17 or 1,17-20.")
    private List<RecordRange> records;

    @Mixin
    private KindOption of;

    @ArgGroup(exclusive = true)
    private Where where;

    @Option(names = "--number", paramLabel = "N", converter = Converters.ChannelNumber.class,
            description = "Number the records N, N+1 and so on.")
    private Integer number;

    @Option(names = "--renumber", paramLabel = "N", converter = Converters.ChannelNumber.class,
            description = "Number the whole list in its new order, starting at N.")
    private Integer renumber;

    @Mixin
    private DryRunOption dryRun;

    /** The options of which one may be given. */
    static final class Where {
        @Option(names = "--to", paramLabel = "POSITION", converter = Converters.Position.class,
                description = "Move to this position, counted from 1.")
        private Integer position;

        @Option(names = "--before", paramLabel = "LIST,RECORD", converter = Converters.Record.class,
                description = "Move before this record.")
        private RecordId before;

        @Option(names = "--after", paramLabel = "LIST,RECORD", converter = Converters.Record.class,
                description = "Move after this record.")
        private RecordId after;

        @Option(names = "--first", description = "Move to the beginning of the list.")
        private boolean first;

        @Option(names = "--last", description = "Move to the end of the list.")
        private boolean last;

        ListOrder.Place place() {
            if (position != null) {
                return ListOrder.position(position);
            }
            if (before != null) {
                return ListOrder.before(before);
            }
            return after != null ? ListOrder.after(after) : first ? ListOrder.first() : ListOrder.last();
        }
    }

    @Override
    public Integer call() {
        if (where == null && number == null && renumber == null) {
            throw new ParameterException(spec.commandLine(),
                    "say where to: one of --to, --before, --after, --first, --last, --number and --renumber");
        }
        boolean changeNothing = dryRun.on();
        records.forEach(range -> Preconditions.needList(of.kind(), range.listId()));
        Moves moves = new Moves(Optional.ofNullable(where).map(Where::place), Optional.ofNullable(number),
                Optional.ofNullable(renumber));
        dryRun.done(moves.move(of.kind(), records, CalledCommand.of(spec), changeNothing));
        return ExitCode.DONE;
    }
}
