package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.changes.CalledCommand;
import com.velotra.tv.tavro.tool.editing.RecordRange;
import com.velotra.tv.tavro.tool.editing.SingleRecords;
import com.velotra.tv.tavro.tool.editing.WholeLists;
import java.util.List;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Option;
import picocli.CommandLine.ParameterException;
import picocli.CommandLine.Parameters;
import picocli.CommandLine.Spec;
import picocli.CommandLine.TypeConversionException;

/** ./tavro copy. */
@Command(
        name = "copy",
        description = {
            "Copies a list, or records, to the list TO. A copied list replaces the records of TO, and TO is "
                + "created if it does not exist. Records keep their ids; if TO already has one of these ids, "
                + "nothing is copied unless --replace is given."},
        footer = {"", "Examples: ./tavro copy 1 5", "          ./tavro copy 1,17 1,20-25 5"})
final class CopyCommand implements Callable<Integer> {
    @Spec
    private CommandSpec spec;

    @Mixin
    private HelpOption help;

    @Parameters(paramLabel = "FROM... TO", hideParamSyntax = true, arity = "2..*",
            description = "The list to copy, such as 1, or the records, such as 1,17 or 1,20-25; then the list "
                    + "id TO.")
    private List<String> words;

    @Mixin
    private KindOption of;

    @Option(names = {"-r", "--replace"}, description = "Replace records of TO that have the same ids.")
    private boolean replace;

    @Mixin
    private DryRunOption dryRun;

    @Override
    public Integer call() {
        boolean changeNothing = dryRun.on();
        List<String> from = words.subList(0, words.size() - 1);
        try {
            int to = new Converters.ListId().convert(words.get(words.size() - 1));
            if (from.size() == 1 && !from.get(0).contains(",")) {
                int list = new Converters.ListId().convert(from.get(0));
                Preconditions.needList(of.kind(), list);
                dryRun.done(WholeLists.copy(of.kind(), list, to, CalledCommand.of(spec), changeNothing));
            } else {
                List<RecordRange> records = from.stream().map(new Converters.Records()::convert).toList();
                records.forEach(range -> Preconditions.needList(of.kind(), range.listId()));
                Preconditions.needList(of.kind(), to);
                dryRun.done(SingleRecords.copy(of.kind(), records, to, replace, CalledCommand.of(spec), changeNothing));
            }
        } catch (TypeConversionException e) {
            throw new ParameterException(spec.commandLine(), e.getMessage());
        }
        return ExitCode.DONE;
    }
}
