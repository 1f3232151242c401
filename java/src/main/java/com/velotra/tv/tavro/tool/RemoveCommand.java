package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.changes.CalledCommand;
import com.velotra.tv.tavro.tool.editing.RecordRange;
import com.velotra.tv.tavro.tool.editing.SingleRecords;
import java.util.List;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Parameters;
import picocli.CommandLine.Spec;

/** ./tavro remove. */
@Command(
        name = "remove",
        description = {
            "Removes records. If one of them does not exist, none is removed."},
        footer = {"", "Examples: ./tavro remove 1,17 1,20-25", "          ./tavro remove 1,3 --kind networks"})
final class RemoveCommand implements Callable<Integer> {
    @Spec
    private CommandSpec spec;

    @Mixin
    private HelpOption help;

    @Parameters(paramLabel = "LIST,RECORD", arity = "1..*", converter = Converters.Records.class,
            description = "A record, such as 1,17, or records, such as 1,17-20.")
    private List<RecordRange> records;

    @Mixin
    private KindOption of;

    @Mixin
    private DryRunOption dryRun;

    @Override
    public Integer call() {
        boolean changeNothing = dryRun.on();
        records.forEach(range -> Preconditions.needList(of.kind(), range.listId()));
        SingleRecords.remove(of.kind(), records, CalledCommand.of(spec), changeNothing).forEach(dryRun::done);
        return ExitCode.DONE;
    }
}
