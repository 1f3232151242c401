package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.exchange.CsvWriter;
import com.velotra.tv.tavro.tool.exchange.JsonWriter;
import com.velotra.tv.tavro.tool.exchange.OutputFile;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.nio.file.Path;
import java.util.List;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Option;
import picocli.CommandLine.ParameterException;
import picocli.CommandLine.Parameters;
import picocli.CommandLine.Spec;

/** ./tavro export. */
@Command(
        name = "export",
        description = {
            "Writes a list in another format. csv and json are lossless: an import restores every byte. CSV has a row "
                + "per record and a column per field; edit it with a spreadsheet and import it again.",
            "",
            "The formats are described in docs/exporting.md."},
        footer = {"", "Examples: ./tavro export 1 -o services.csv",
            "          ./tavro export 13 --kind streams --format json",
            "          ./tavro export --all -o lists.json"})
final class ExportCommand implements Callable<Integer> {
    @Spec
    private CommandSpec spec;

    @Mixin
    private HelpOption help;

    @Parameters(paramLabel = "ID", arity = "0..1", converter = Converters.ListId.class,
            description = "List id, 1 to 65535.")
    private Integer listId;

    @Mixin
    private KindOption of;

    @Option(names = {"-f", "--format"}, paramLabel = "FORMAT", converter = ExportFormat.Converter.class,
            description = "csv (the default) or json.")
    private ExportFormat format;

    @Option(names = "--all", description = "Export all lists of all kinds into one JSON file.")
    private boolean all;

    @Option(names = {"-o", "--output"}, paramLabel = "FILE",
            description = "File to write (default: standard output).")
    private Path output;

    @Override
    public Integer call() {
        if (all == (listId != null)) {
            throw new ParameterException(spec.commandLine(), "give a list id or --all");
        }
        if (all && format == ExportFormat.CSV) {
            throw new ParameterException(spec.commandLine(), "--all needs --format json: a CSV file has one list");
        }
        List<RecordList> lists = all ? allLists() : List.of(list());
        OutputFile.write(output, out -> {
            if (all || format == ExportFormat.JSON) {
                JsonWriter.write(lists, out);
            } else {
                CsvWriter.write(lists.get(0), out);
            }
        });
        return ExitCode.DONE;
    }

    private RecordList list() {
        Preconditions.needList(of.kind(), listId);
        return StoredLists.read(of.kind(), listId);
    }

    private static List<RecordList> allLists() {
        return StoredLists.all().stream().map(list -> StoredLists.read(list.kind(), list.listId())).toList();
    }
}
