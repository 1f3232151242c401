package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.changes.CalledCommand;
import com.velotra.tv.tavro.tool.changes.Change;
import com.velotra.tv.tavro.tool.comparing.DifferenceJson;
import com.velotra.tv.tavro.tool.comparing.DifferenceText;
import com.velotra.tv.tavro.tool.comparing.OperandReader;
import com.velotra.tv.tavro.tool.matching.Comparison;
import com.velotra.tv.tavro.tool.matching.Side;
import com.velotra.tv.tavro.tool.output.JsonOutput;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.Access;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.io.OutputStreamWriter;
import java.io.PrintWriter;
import java.nio.charset.StandardCharsets;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Optional;
import java.util.function.BiFunction;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;
import picocli.CommandLine.Spec;

/** What the commands have in common that bring something into a list: their arguments, and how they print changes. */
final class ListUpdate {
    @Spec(Spec.Target.MIXEE)
    private CommandSpec spec;

    @Parameters(paramLabel = "LIST", converter = Converters.ListId.class, description = "List id, 1 to 65535.")
    private int listId;

    @Mixin
    private KindOption of;

    @Mixin
    private DryRunOption dryRun;

    @Option(names = "--json", description = "Print JSON.")
    private boolean json;

    /**
     * What a command makes of a list.
     *
     * @param list the new records
     * @param remarks texts for people, each with its lines
     * @param values more values for JSON
     */
    record Outcome(RecordList list, Map<String, List<String>> remarks, Map<String, Object> values) {}

    private record Done(RecordList before, Outcome outcome) {}

    Kind kind() {
        return of.kind();
    }

    int listId() {
        return listId;
    }

    /** Has {@code body} make a new list of the list, and stores it. */
    int run(BiFunction<Side, OperandReader, Outcome> body) {
        if (dryRun.on()) {
            Access.readOnly();
        } else {
            Access.readWrite();
        }
        Preconditions.needList(kind(), listId);
        OperandReader reader = new OperandReader(Optional.of(kind()));
        String command = CalledCommand.of(spec);
        Done done = Preconditions.withLibrary(() -> dryRun.on()
                ? make(StoredLists.read(kind(), listId), reader, body)
                : Change.make(command, change -> {
                    Done made = make(change.read(kind(), listId), reader, body);
                    if (!made.before.equals(made.outcome.list)) {
                        change.replace(made.outcome.list);
                    }
                    return made;
                }));
        print(done);
        return ExitCode.DONE;
    }

    private static Done make(RecordList list, OperandReader reader, BiFunction<Side, OperandReader, Outcome> body) {
        return new Done(list, body.apply(reader.inUse(list), reader));
    }

    private void print(Done done) {
        if (json) {
            Map<String, Object> values = new LinkedHashMap<>();
            values.put("dry_run", dryRun.on());
            values.putAll(DifferenceJson.ofChanges(done.before, done.outcome.list));
            values.putAll(done.outcome.values);
            JsonOutput.print(values);
            return;
        }
        PrintWriter out = new PrintWriter(new OutputStreamWriter(System.out, StandardCharsets.UTF_8));
        if (dryRun.on()) {
            new DifferenceText(out, false).printChanges(done.before, done.outcome.list);
        }
        done.outcome.remarks.forEach((title, lines) -> {
            out.println(title);
            lines.forEach(line -> out.println("  " + line));
        });
        out.flush();
        dryRun.done(DifferenceText.summary(Comparison.ofStates(done.before, done.outcome.list)));
    }
}
