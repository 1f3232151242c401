package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.comparing.DifferenceJson;
import com.velotra.tv.tavro.tool.comparing.DifferenceText;
import com.velotra.tv.tavro.tool.comparing.Differences;
import com.velotra.tv.tavro.tool.comparing.Operand;
import com.velotra.tv.tavro.tool.comparing.OperandReader;
import com.velotra.tv.tavro.tool.listing.Column;
import com.velotra.tv.tavro.tool.listing.Columns;
import com.velotra.tv.tavro.tool.matching.Comparison;
import com.velotra.tv.tavro.tool.output.JsonOutput;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.storage.Access;
import java.io.OutputStreamWriter;
import java.io.PrintWriter;
import java.nio.charset.StandardCharsets;
import java.util.Arrays;
import java.util.HashSet;
import java.util.Optional;
import java.util.Set;
import java.util.concurrent.Callable;
import java.util.stream.Collectors;
import java.util.stream.Stream;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Option;
import picocli.CommandLine.ParameterException;
import picocli.CommandLine.Parameters;
import picocli.CommandLine.Spec;

/** ./tavro diff. */
@Command(
        name = "diff",
        description = {
            "Compares two lists, two list files, two records or two storage directories: prints the records that were "
                + "removed (-), added (+) and changed (~), with each value that differs.",
            "",
            "A and B are each a list id (1), a record (1,17), a list or record of another storage directory (DIR:1, "
                + "DIR:1,17), or the path of a list file, of a file of raw records or of a storage directory. Records "
                + "are matched by identity and then by name, so their ids and order may differ.",
            "",
            "Exit codes: 0 equal, 1 different or failed, 2 wrong usage."},
        footer = {"", "Examples: ./tavro diff 1 2",
            "          ./tavro diff 1 backup.list --ignore lcn,order --stat",
            "          ./tavro diff ~/old-home ~/new-home"})
final class DiffCommand implements Callable<Integer> {
    @Mixin
    private HelpOption help;

    @Spec
    private CommandSpec spec;

    @Parameters(index = "0", paramLabel = "A", description = "The first side.")
    private String from;

    @Parameters(index = "1", paramLabel = "B", description = "The second side.")
    private String to;

    @Option(names = {"-k", "--kind"}, paramLabel = "KIND", converter = Converters.KindName.class,
            description = "Kind of list: services (the default), streams, networks or satellites. A list file "
                    + "has its own kind. Storage directories are compared in all kinds by default.")
    private Kind kind;

    @Option(names = "--ignore", paramLabel = "FIELDS", defaultValue = "",
            description = "Do not compare these fields, separated by commas, such as lcn,name. Also accepted: "
                    + "unnamed_bytes (bytes without a field) and order.")
    private String ignore;

    @Option(names = "--stat", description = "Print only how many records differ, and in which fields.")
    private boolean counts;

    @Option(names = "--json", description = "Print JSON.")
    private boolean json;

    @Override
    public Integer call() {
        Set<String> ignored = ignored();
        Access.readOnly();
        OperandReader reader = new OperandReader(Optional.ofNullable(kind));
        Differences differences = Preconditions.withLibrary(() -> {
            Operand one = reader.read(from);
            return Differences.between(one, reader.read(to), reader, Optional.ofNullable(kind), ignored);
        });
        if (json) {
            JsonOutput.print(DifferenceJson.of(differences, counts));
        } else {
            // deliberate: buffered, because there may be many lines
            PrintWriter out = new PrintWriter(new OutputStreamWriter(System.out, StandardCharsets.UTF_8));
            new DifferenceText(out, counts).print(differences);
            out.flush();
        }
        return differences.isEmpty() ? ExitCode.DONE : ExitCode.DIFFERENT;
    }

    private Set<String> ignored() {
        Set<String> ignored = new HashSet<>();
        for (String name : ignore.isEmpty() ? new String[0] : ignore.split(",", -1)) {
            ignored.addAll(fields(name.strip()));
        }
        return ignored;
    }

    /** The fields with that name or short name, in all kinds that may be compared. */
    private Set<String> fields(String name) {
        if (name.equals(Comparison.ORDER) || name.equals(Comparison.UNNAMED_BYTES)) {
            return Set.of(name);
        }
        Set<String> fields = (kind == null ? Arrays.stream(Kind.values()) : Stream.of(kind))
                .flatMap(of -> Columns.of(of).get(name).stream()
                        .filter(column -> Layout.of(of).field(column.name()).isPresent()))
                .map(Column::name).collect(Collectors.toSet());
        if (fields.isEmpty()) {
            throw new ParameterException(spec.commandLine(), "unknown field '" + name + "' in --ignore: use a constant "
                    + "of docs/record-layouts.md, as in service_id, or order or unnamed_bytes");
        }
        return fields;
    }
}
