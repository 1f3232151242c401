package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.ListUpdate.Outcome;
import com.velotra.tv.tavro.tool.comparing.Operand.Records;
import com.velotra.tv.tavro.tool.comparing.OperandReader;
import com.velotra.tv.tavro.tool.comparing.RecordNames;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Malformed;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.input.Text;
import com.velotra.tv.tavro.tool.matching.Guide;
import com.velotra.tv.tavro.tool.matching.Part;
import com.velotra.tv.tavro.tool.matching.ReferenceFile;
import com.velotra.tv.tavro.tool.matching.Reorder;
import com.velotra.tv.tavro.tool.matching.Side;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.nio.file.Path;
import java.util.EnumSet;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.concurrent.Callable;
import java.util.function.IntFunction;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Option;
import picocli.CommandLine.Spec;

/** ./tavro order. */
@Command(
        name = "order",
        description = {
            "Takes order, channel numbers, names and flags (hidden, locked, deleted) from another list or "
                + "from a reference file. Records are matched by identity and then by name; unmatched records are "
                + "printed. No record is added or dropped: records without a match follow after the others, in "
                + "their old order.",
            "",
            "OTHER is a list id, DIR:ID (a list of another storage directory), a list file, or a reference "
                + "file (- for standard input). A reference file has one line per service: "
                + "NUMBER;NAME;NETWORK-STREAM-SERVICE. The ids are the original network id, transport stream id "
                + "and service id, in decimal or with 0x. If a number or name is empty, the service keeps its own. "
                + "Lines that begin with # are skipped."},
        footer = {"", "Examples: ./tavro order 1 --from favorites.txt --dry-run",
            "          ./tavro order 1 --from 2 --only order,numbers"})
final class OrderCommand implements Callable<Integer> {
    private static final int MOST_BAD_LINES = 20;

    @Mixin
    private HelpOption help;

    @Spec
    private CommandSpec spec;

    @Mixin
    private ListUpdate update;

    @Option(names = "--from", paramLabel = "OTHER", required = true,
            description = "The other list, or the reference file.")
    private String from;

    @Option(names = "--only", paramLabel = "PARTS", defaultValue = "",
            description = "Take only these parts, separated by commas: order, numbers, names, flags.")
    private String only;

    /** A guide and how its entries are called. */
    private record Named(Guide guide, String what, IntFunction<String> entry) {}

    @Override
    public Integer call() {
        Set<Part> named = Parts.parse(only, EnumSet.allOf(Part.class), spec.commandLine());
        Set<Part> parts = named.isEmpty() ? EnumSet.allOf(Part.class) : named;
        return update.run((list, reader) -> order(list, reader, parts));
    }

    private Outcome order(Side list, OperandReader reader, Set<Part> parts) {
        Named named = OperandReader.isText(from) ? referenceFile() : list(reader);
        Reorder reorder;
        try {
            reorder = Reorder.of(list, named.guide, parts);
        } catch (IllegalArgumentException e) {
            throw new Failure(e.getMessage() + "; nothing was changed");
        }
        List<String> unmatched =
                reorder.unmatched().stream().map(record -> RecordNames.of(list.list(), record)).toList();
        List<String> entries = reorder.unmatchedEntries().stream().map(named.entry::apply).toList();
        Map<String, List<String>> remarks = new LinkedHashMap<>();
        if (!unmatched.isEmpty()) {
            remarks.put("not in " + named.what + ", kept after the others:", unmatched);
        }
        if (!entries.isEmpty()) {
            remarks.put("not in " + update.kind().noun() + " list " + update.listId() + ":", entries);
        }
        Map<String, Object> values = new LinkedHashMap<>();
        values.put("unmatched", reorder.unmatched().stream()
                .map(record -> RecordNames.id(list.list(), record)).toList());
        values.put("unmatched_entries", entries);
        return new Outcome(reorder.list(), remarks, values);
    }

    private Named list(OperandReader reader) {
        Records other = reader.readList(from);
        RecordList records = other.side().list();
        return new Named(Guide.of(other.side()), other.description(), i -> RecordNames.of(records, records.get(i)));
    }

    private Named referenceFile() {
        if (update.kind() != Kind.SERVICES) {
            throw new Failure("a reference file names services; to order " + update.kind()
                    + ", use --from with a list");
        }
        Source source = Source.read(Path.of(from));
        ReferenceFile file = new ReferenceFile(source);
        List<Malformed> malformed = file.malformed();
        if (!malformed.isEmpty()) {
            malformed.stream().limit(MOST_BAD_LINES).forEach(line -> System.err.println("  " + line));
            throw new Failure(Text.count(malformed.size(), "bad line") + " in " + source.name()
                    + "; nothing was changed");
        }
        if (file.size() == 0) {
            throw new Failure(source.name()
                    + " does not name a service; write lines NUMBER;NAME;NETWORK-STREAM-SERVICE");
        }
        return new Named(file, source.name(), i -> Printable.of(file.text(i)));
    }
}
