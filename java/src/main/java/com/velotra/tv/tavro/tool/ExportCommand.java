package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.exchange.CsvWriter;
import com.velotra.tv.tavro.tool.exchange.ForeignExport;
import com.velotra.tv.tavro.tool.exchange.JsonWriter;
import com.velotra.tv.tavro.tool.exchange.OutputFile;
import com.velotra.tv.tavro.tool.exchange.StreamLookup;
import com.velotra.tv.tavro.tool.exchange.TvInputChannels;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.Access;
import com.velotra.tv.tavro.tool.storage.Storage;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.io.IOException;
import java.io.Writer;
import java.nio.file.Path;
import java.util.List;
import java.util.Optional;
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
                + "per record and a column per field; edit it with a spreadsheet and import it again. The other "
                + "formats cannot hold all fields; standard error lists what vdr and dvbv5 lose.",
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
            description = "csv (the default), json, vdr (channels.conf of services), dvbv5 (channel list of "
                    + "services, or scan table of streams), tif or tif-json (services as rows of Android's "
                    + "TvContract.Channels).")
    private ExportFormat format;

    @Option(names = "--all", description = "Export all lists of all kinds into one JSON file.")
    private boolean all;

    @Option(names = {"-o", "--output"}, paramLabel = "FILE",
            description = "File to write (default: standard output).")
    private Path output;

    private final StreamLookup lookup = new StreamLookup(ExportCommand::find);

    @Override
    public Integer call() {
        if (all == (listId != null)) {
            throw wrongUsage("give a list id or --all");
        }
        format = format != null ? format : all ? ExportFormat.JSON : ExportFormat.CSV;
        if (all && format != ExportFormat.JSON) {
            throw wrongUsage("--all needs --format json: other files have one list");
        }
        if (!format.has(of.kind())) {
            throw wrongUsage("the format " + format + " has no " + of.kind() + ": export "
                    + (format.has(Kind.STREAMS) ? "services or streams" : "services"));
        }
        Preconditions.needDirectory(Storage.directory());
        Access.readOnly();
        List<RecordList> lists = all ? allLists() : List.of(list());
        ForeignExport foreign = new ForeignExport(lookup);
        OutputFile.write(output, out -> write(lists, foreign, out));
        foreign.printLosses(System.err);
        return ExitCode.DONE;
    }

    private ParameterException wrongUsage(String reason) {
        return new ParameterException(spec.commandLine(), reason);
    }

    private RecordList list() {
        Preconditions.needList(of.kind(), listId);
        return StoredLists.read(of.kind(), listId);
    }

    private static List<RecordList> allLists() {
        return StoredLists.all().stream().map(list -> StoredLists.read(list.kind(), list.listId())).toList();
    }

    private void write(List<RecordList> lists, ForeignExport foreign, Writer out) throws IOException {
        if (format == ExportFormat.JSON) { // perhaps no list
            JsonWriter.write(lists, out);
            return;
        }
        RecordList list = lists.get(0);
        switch (format) {
            case CSV -> CsvWriter.write(list, out);
            case VDR -> foreign.vdr(list, out);
            case DVBV5 -> foreign.dvbV5(list, out);
            case TIF -> TvInputChannels.csv(list, lookup, out);
            default -> TvInputChannels.json(list, lookup, out);
        }
    }

    private static Optional<RecordList> find(Kind kind, int listId) {
        boolean exists = StoredLists.all().stream().anyMatch(list -> list.kind() == kind && list.listId() == listId);
        return exists ? Optional.of(StoredLists.read(kind, listId)) : Optional.empty();
    }
}
